#pragma once

#include "FetchyardLogical/ProtocalFactory.h"

#include <string>
#include <vector>

// What a transcoding request says, for a program that hosts the library and wants to know before it hands the
// request over.
namespace FetchyardLogical {

struct TranscodingRequest
{
    std::string task_name;  // that of the first result where the request has none
    bool show_tip = false;
    std::vector<TrasncodingFile> files;
    std::vector<std::string> file_names;  // of the results, for display
};

// Path of the picture that is saved beside a result: the extension becomes "jpg". Empty if the path has no
// dot.
FETCHYARDLOGICAL_API std::string PictureBeside(const std::string& save_file);

// Reads a request, JSON as its schema in the documentation says; null counts as absent. A request without
// files gives empty lists. False, with the reason in words and request as it was, for
// - a text that is no JSON or has no TranscodingRequest, and a member of a wrong kind;
// - a file without source or target, and one that would be written over itself;
// - two files, be they videos or their pictures, of one path;
// - a source that an entry further up deletes.
// Any thread.
FETCHYARDLOGICAL_API bool ReadTranscodingRequest(const std::string& text, TranscodingRequest& request,
                                                 std::string& reason);

}  // namespace FetchyardLogical
