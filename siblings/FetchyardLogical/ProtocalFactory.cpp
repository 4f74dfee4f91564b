#include "FetchyardLogical/ProtocalFactory.h"

#include "FetchyardLogicalHost/TranscodingRequest.h"
#include "Log.h"

#include <utility>

ZELL_SINGLETON_DEFINE(FetchyardLogical::CProtocalFactory)

namespace FetchyardLogical {

bool CProtocalFactory::ParseTranscodingRequest(std::vector<std::string>& file_names, bool& show_tip,
                                               std::string& task_name, std::vector<TrasncodingFile>& files,
                                               const std::string& text)
{
    TranscodingRequest request;
    std::string reason;
    if (!ReadTranscodingRequest(text, request, reason)) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::CProtocalFactory::ParseTranscodingRequest", "%s",
                              reason.c_str());
        return false;
    }
    file_names = std::move(request.file_names);
    show_tip = request.show_tip;
    task_name = std::move(request.task_name);
    files = std::move(request.files);
    return true;
}

}  // namespace FetchyardLogical
