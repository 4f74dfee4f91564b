#pragma once

#include "FetchyardLogical/Export.h"
#include "ZellBase/Singleton.h"

#include <string>
#include <vector>

namespace FetchyardLogical {

// One video to stamp with the platform's watermark.
struct TrasncodingFile
{
    std::string source_file;       // UTF-8
    std::string save_file;         // file to write, with forward slashes; UTF-8
    std::string watermark_text;    // as ZellPlayback takes it
    int watermark_kind = 0;        // the same way
    bool b_delete_source = false;  // delete the source afterwards
    bool b_capture_image = false;  // save a picture of the result beside it
};

// Reads requests of other plug-ins. Any thread.
class FETCHYARDLOGICAL_API CProtocalFactory : public Zell::Base::CSingleton<CProtocalFactory>
{
public:
    // Reads a transcoding request, JSON as its schema in the documentation says. file_names are the names of
    // the results for display; task_name is the first of them where the request has none. A request without
    // files gives empty lists. False, with the out arguments as they were and the reason in the log, for a
    // text that is no such request and for one that would lose a file: by writing it over itself, writing
    // another over it, or deleting it before its turn.
    bool ParseTranscodingRequest(std::vector<std::string>& file_names, bool& show_tip, std::string& task_name,
                                 std::vector<TrasncodingFile>& files, const std::string& request);

private:
    friend class Zell::Base::CSingleton<CProtocalFactory>;
    CProtocalFactory() = default;
};

}  // namespace FetchyardLogical

ZELL_SINGLETON_DECLARE(FetchyardLogical::CProtocalFactory)
