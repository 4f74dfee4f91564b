#include "FetchyardBussiness/TranscodingTask/TranscodingParam.h"

#include "ZellBase/Util.h"
#include "ZellNetLink/XmlProto.h"

#include <memory>

namespace FetchyardBussiness {

using ZellNetLink::XmlNode;

namespace {

constexpr char kTaskName[] = "/FileExportParams/TaskName";
constexpr char kFile[] = "/FileExportParams/TranscodeFileList/TranscodeFile";

std::shared_ptr<XmlNode> Node(const std::string& name, const std::string& value = "")
{
    return std::make_shared<XmlNode>(name, value);
}

}  // namespace

TranscodingParam::TranscodingParam() = default;
TranscodingParam::TranscodingParam(const TranscodingParam& other) = default;
TranscodingParam& TranscodingParam::operator=(const TranscodingParam& other) = default;
TranscodingParam::~TranscodingParam() = default;

std::string TranscodingParam::CreateResumeXml()
{
    const auto root = Node("FileExportParams");
    root->AddSub(Node("TaskParamType", std::to_string(kTranscodingRecord)));
    root->AddSub(Node("TaskName", GetVal_str_name()));
    const auto list = Node("TranscodeFileList");
    for (const FetchyardLogical::TrasncodingFile& file : transcode_files) {
        const auto entry = Node("TranscodeFile");
        entry->AddSub(Node("SaveFilePath", file.save_file));
        list->AddSub(entry);
    }
    root->AddSub(list);
    std::string record;
    Zell::Base::Encrypt::Base64Encode(record, root->ToString(true));
    return record;
}

bool TranscodingParam::ResumeParamFromXml()
{
    std::string text;
    Zell::Base::Encrypt::Base64Decode(text, GetVal_str_resume_xml());
    ZellNetLink::CXmlProto record;
    if (text.empty() || !record.set_str(text))
        return false;
    SetVal_str_name(record.get_v(kTaskName, ""));
    const int count = record.get_cnt(kFile);
    for (int number = 1; number <= count; ++number) {
        FetchyardLogical::TrasncodingFile file;
        file.save_file =
            record.get_v(std::string(kFile) + "[" + std::to_string(number) + "]/" + "SaveFilePath", "");
        transcode_files.push_back(file);
    }
    return true;
}

}  // namespace FetchyardBussiness
