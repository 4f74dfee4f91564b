#include "FetchyardLogicalHost/TranscodingRequest.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <set>
#include <stdexcept>
#include <utility>

namespace FetchyardLogical {

namespace {

using nlohmann::json;

[[noreturn]] void Refuse(const std::string& reason)
{
    throw std::invalid_argument(reason);
}

// The member if it is there.
const json* Find(const json& node, const char* name)
{
    const auto member = node.find(name);
    return member == node.end() || member->is_null() ? nullptr : &*member;
}

std::string Text(const json& node, const char* name)
{
    const json* const member = Find(node, name);
    if (member != nullptr && !member->is_string())
        Refuse(std::string(name) + " is no text");
    return member == nullptr ? std::string() : member->get<std::string>();
}

// Strict: a number is no flag, and a flag no number.
bool Flag(const json& node, const char* name)
{
    const json* const member = Find(node, name);
    if (member != nullptr && !member->is_boolean())
        Refuse(std::string(name) + " is neither true nor false");
    return member != nullptr && member->get<bool>();
}

int Number(const json& node, const char* name)
{
    const json* const member = Find(node, name);
    if (member == nullptr)
        return 0;
    // A fraction tells the size of every whole number of JSON, of either sign.
    if (!member->is_number_integer() || member->get<double>() < std::numeric_limits<int>::min() ||
        member->get<double>() > std::numeric_limits<int>::max())
        Refuse(std::string(name) + " is no whole number of 32 bits");
    return member->get<int>();
}

std::string WithForwardSlashes(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string Path(const json& node, const char* name)
{
    std::string path = Text(node, name);
    if (path.empty())
        Refuse(std::string("a file has no ") + name);
    if (path.find('\0') != std::string::npos)
        Refuse(std::string(name) + " has a zero in it");
    return path;
}

TrasncodingFile ReadFile(const json& node)
{
    if (!node.is_object())
        Refuse("an entry of Files is no object");
    TrasncodingFile file;
    file.source_file = Path(node, "SourceFile");
    // The task looks for forward slashes on every platform.
    file.save_file = WithForwardSlashes(Path(node, "SaveFile"));
    if (file.save_file.back() == '/')
        Refuse(file.save_file + " names no file");
    file.watermark_text = Text(node, "WatermarkText");
    file.watermark_kind = Number(node, "WatermarkKind");
    file.b_delete_source = Flag(node, "DeleteSource");
    file.b_capture_image = Flag(node, "CaptureImage");
    return file;
}

// A file that is lost can't be had back, so a request that would lose one is not begun.
void RefuseLosses(const std::vector<TrasncodingFile>& files)
{
    std::set<std::string> written;
    std::set<std::string> deleted;
    for (const TrasncodingFile& file : files) {
        const std::string source = WithForwardSlashes(file.source_file);
        if (source == file.save_file)
            Refuse(file.save_file + " would be written over itself");
        if (deleted.count(source) != 0)
            Refuse(file.source_file + " would be deleted before its turn");
        if (!written.insert(file.save_file).second)
            Refuse(file.save_file + " would be written twice");
        const std::string picture = file.b_capture_image ? PictureBeside(file.save_file) : std::string();
        if (!picture.empty() && !written.insert(picture).second)
            Refuse(picture + " would be written twice");
        if (file.b_delete_source)
            deleted.insert(source);
    }
}

// Deeper than any request; a record as deep as a text is long needs more stack than there is.
json Parse(const std::string& text)
{
    constexpr int kDeepest = 100;
    return json::parse(text, [](int depth, json::parse_event_t /*event*/, const json& /*parsed*/) {
        if (depth > kDeepest)
            Refuse("it is nested too deeply");
        return true;
    });
}

std::vector<TrasncodingFile> ReadFiles(const json& list)
{
    if (!list.is_array())
        Refuse("Files is no list");
    std::vector<TrasncodingFile> files;
    for (const json& entry : list)
        files.push_back(ReadFile(entry));
    RefuseLosses(files);
    return files;
}

TranscodingRequest Read(const std::string& text)
{
    const json document = Parse(text);
    const json* const node = document.is_object() ? Find(document, "TranscodingRequest") : nullptr;
    if (node == nullptr || !node->is_object())
        Refuse("there is no TranscodingRequest");
    TranscodingRequest request;
    request.task_name = Text(*node, "TaskName");
    request.show_tip = Flag(*node, "ShowTip");
    if (const json* const list = Find(*node, "Files"))
        request.files = ReadFiles(*list);
    for (const TrasncodingFile& file : request.files)
        request.file_names.push_back(file.save_file.substr(file.save_file.rfind('/') + 1));
    if (request.task_name.empty() && !request.file_names.empty())
        request.task_name = request.file_names.front();
    return request;
}

}  // namespace

std::string PictureBeside(const std::string& save_file)
{
    const std::size_t dot = save_file.rfind('.');
    return dot == std::string::npos || dot == 0 ? std::string() : save_file.substr(0, dot + 1) + "jpg";
}

bool ReadTranscodingRequest(const std::string& text, TranscodingRequest& request, std::string& reason)
{
    try {
        request = Read(text);
        return true;
    } catch (const std::exception& refusal) {
        reason = refusal.what();
        return false;
    }
}

}  // namespace FetchyardLogical
