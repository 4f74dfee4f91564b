#include "FetchyardBussiness/TranscodingTask/TranscodingParam.h"

#include "FetchyardBussiness/DeterminantWriteFile/ResumeDocument.h"

namespace FetchyardBussiness {

TranscodingParam::TranscodingParam() = default;
TranscodingParam::TranscodingParam(const TranscodingParam& other) = default;
TranscodingParam& TranscodingParam::operator=(const TranscodingParam& other) = default;
TranscodingParam::~TranscodingParam() = default;

std::string TranscodingParam::CreateResumeXml()
{
    ResumeElement list("TranscodeFileList");
    for (const FetchyardLogical::TrasncodingFile& file : transcode_files)
        list.Child(ResumeElement("TranscodeFile").Text("SaveFilePath", file.save_file));
    return ResumeElement(kResumeRoot)
        .Number("TaskParamType", kTranscodingRecord)
        .Text("TaskName", GetVal_str_name())
        .Child(list)
        .Record();
}

bool TranscodingParam::ResumeParamFromXml()
{
    ZellNetLink::CXmlProto document;
    if (!OpenResumeRecord(GetVal_str_resume_xml(), document))
        return false;
    const ResumeReader record(document, kResumePrefix);
    SetVal_str_name(record.Text("TaskName"));
    const std::string list = "TranscodeFileList/TranscodeFile";
    for (int number = 1; number <= record.Count(list); ++number) {
        FetchyardLogical::TrasncodingFile file;
        file.save_file = record.Entry(list, number).Text("SaveFilePath");
        transcode_files.push_back(file);
    }
    return true;
}

}  // namespace FetchyardBussiness
