#include "FetchyardLogical/ProtocalFactory.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

ZELL_SINGLETON_DEFINE(FetchyardLogical::CProtocalFactory)

namespace FetchyardLogical {

bool CProtocalFactory::ParseTranscodingRequest(std::vector<std::string>& file_names, bool& show_tip,
                                               std::string& task_name, std::vector<TrasncodingFile>& files,
                                               const std::string& request)
{
    if (!fakes::Call("ParseTranscodingRequest", request))
        return false;
    const fakes::Script& script = fakes::TheScript();
    file_names = script.transcoding_names;
    show_tip = script.transcoding_tip;
    task_name = script.transcoding_task;
    files = script.transcoding_files;
    return true;
}

}  // namespace FetchyardLogical
