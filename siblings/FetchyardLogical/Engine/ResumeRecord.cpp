#include "Engine/ResumeRecord.h"

#include "Log.h"
#include "ZellBase/Util.h"
#include "ZellNetLink/XmlProto.h"

#include <exception>

using ZellTaskKit::CDownloadTaskBase;
using ZellTaskKit::CDownloadTaskParam;

namespace FetchyardLogical::details {

namespace {

constexpr char kKindPath[] = "/FileExportParams/TaskParamType";

}  // namespace

ResumeTextPtr AskResumeText(CDownloadTaskBase& task)
{
    const auto record = task.GetDownloadTaskParam<CDownloadTaskParam>();
    if (!record)
        return nullptr;
    try {
        return std::make_shared<const std::string>(record->CreateResumeXml());
    } catch (const std::exception& error) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::AskResumeText",
                              "exception out of the record of task %s: %s", task.GetGuid().c_str(),
                              error.what());
    } catch (...) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::AskResumeText",
                              "unknown exception out of the record of task %s", task.GetGuid().c_str());
    }
    return nullptr;
}

RecordKind KindOfRecord(const std::string& resume_text)
{
    if (resume_text.empty())
        return RecordKind::None;
    std::string document;
    ZellNetLink::CXmlProto xml;
    if (!Zell::Base::Encrypt::Base64Decode(document, resume_text) || !xml.set_str(document))
        return RecordKind::Unknown;
    switch (xml.get_int_v(kKindPath, -1)) {
        case static_cast<int>(RecordKind::Export):
            return RecordKind::Export;
        case static_cast<int>(RecordKind::PersonPictures):
            return RecordKind::PersonPictures;
        case static_cast<int>(RecordKind::Transcoding):
            return RecordKind::Transcoding;
        default:
            return RecordKind::Unknown;
    }
}

}  // namespace FetchyardLogical::details
