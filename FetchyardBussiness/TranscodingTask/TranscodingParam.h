#pragma once

#include "FetchyardLogical/ProtocalFactory.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <string>
#include <vector>

namespace FetchyardBussiness {

// Record of a task that stamps videos. Its resume record keeps the name and the results alone: enough for the
// progress of a task that is shown again, not for another run.
struct TranscodingParam : public ZellTaskKit::CDownloadTaskParam
{
    TranscodingParam();
    TranscodingParam(const TranscodingParam& other);
    TranscodingParam& operator=(const TranscodingParam& other);
    ~TranscodingParam() override;

    // Fills str_name and adds the results from str_resume_xml. False, with the record as it was, if that is
    // not Base64 of an XML text.
    bool ResumeParamFromXml() override;
    std::string CreateResumeXml() override;

    std::vector<FetchyardLogical::TrasncodingFile> transcode_files;
};

}  // namespace FetchyardBussiness
