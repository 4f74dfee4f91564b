#include "FetchyardLogical/ProtocalFactory.h"

#include "Log.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

ZELL_SINGLETON_DEFINE(FetchyardLogical::CProtocalFactory)

namespace FetchyardLogical {

namespace {

using nlohmann::json;

// Throws json::exception for another kind.
template <typename T>
T Member(const json& node, const char* name, T fallback)
{
    const auto member = node.find(name);
    return member == node.end() || member->is_null() ? fallback : member->get<T>();
}

// Strict: a number is no flag, and a flag no number.
bool Flag(const json& node, const char* name)
{
    return Member<json::boolean_t>(node, name, false);
}

int Number(const json& node, const char* name)
{
    const auto member = node.find(name);
    if (member == node.end() || member->is_null())
        return 0;
    if (!member->is_number_integer())
        throw std::invalid_argument(std::string(name) + " is no whole number");
    return member->get<int>();
}

TrasncodingFile ReadFile(const json& node)
{
    TrasncodingFile file;
    file.source_file = Member<std::string>(node, "SourceFile", "");
    file.save_file = Member<std::string>(node, "SaveFile", "");
    std::replace(file.save_file.begin(), file.save_file.end(), '\\', '/');
    file.watermark_text = Member<std::string>(node, "WatermarkText", "");
    file.watermark_kind = Number(node, "WatermarkKind");
    file.b_delete_source = Flag(node, "DeleteSource");
    file.b_capture_image = Flag(node, "CaptureImage");
    if (file.source_file.empty() || file.save_file.empty())
        throw std::invalid_argument("a file has no SourceFile or no SaveFile");
    if (file.source_file == file.save_file)
        throw std::invalid_argument(file.save_file + " is to be written over itself");
    return file;
}

struct Request
{
    std::string task_name;
    bool show_tip = false;
    std::vector<TrasncodingFile> files;
    std::vector<std::string> file_names;
};

Request ReadRequest(const std::string& text)
{
    const json document = json::parse(text);
    const json& node = document.at("TranscodingRequest");
    if (!node.is_object())
        throw std::invalid_argument("TranscodingRequest is no object");
    Request request;
    request.task_name = Member<std::string>(node, "TaskName", "");
    request.show_tip = Flag(node, "ShowTip");
    std::set<std::string> targets;
    for (const json& entry : Member<json::array_t>(node, "Files", {})) {
        TrasncodingFile file = ReadFile(entry);
        if (!targets.insert(file.save_file).second)
            throw std::invalid_argument(file.save_file + " is to be written twice");
        request.file_names.push_back(file.save_file.substr(file.save_file.rfind('/') + 1));
        request.files.push_back(std::move(file));
    }
    return request;
}

}  // namespace

bool CProtocalFactory::ParseTranscodingRequest(std::vector<std::string>& file_names, bool& show_tip,
                                               std::string& task_name, std::vector<TrasncodingFile>& files,
                                               const std::string& text)
{
    try {
        Request request = ReadRequest(text);
        file_names = std::move(request.file_names);
        show_tip = request.show_tip;
        task_name = std::move(request.task_name);
        files = std::move(request.files);
        return true;
    } catch (const std::exception& error) {
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::CProtocalFactory::ParseTranscodingRequest", "%s",
                              error.what());
        return false;
    }
}

}  // namespace FetchyardLogical
