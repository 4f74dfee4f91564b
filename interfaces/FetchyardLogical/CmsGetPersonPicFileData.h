#pragma once

#include "FetchyardLogical/Export.h"
#include "ZellBase/Error.h"

#include <string>
#include <vector>

namespace FetchyardLogical {

// One picture of a person.
struct PersonPicture
{
    std::string file_stem;  // of the file that the picture is to have, without folder and suffix
    std::string url;        // address of the picture, as a report names it
};

// A page of a person search with its pictures. A record is used by one thread at a time.
struct FETCHYARDLOGICAL_API CmsGetPersonPicFileData
{
    Zell::Base::Error::ErrorCode error_code;  // reason of a failed call, (0, 0) behind a good one
    std::vector<PersonPicture> picture_list;
    std::string str_method;        // HTTP method
    std::string str_quern;         // path of the interface, or a whole url; the site is the client's own
    std::string str_request;       // request text, JSON
    bool is_all_finished = false;  // this is the last page
    // How many tries the account has left, and what the number counts, as the server says when it refuses a
    // password: of type "1" wrong passwords, of type "2" minutes until the account is open again. Empty
    // behind any other answer.
    std::string remaining_login_count;
    std::string remaining_login_type;

    // Sends the request and fills picture_list, in the server's order, and is_all_finished. Blocks the
    // calling thread. False on failure, with the reason in error_code: module 21 holds a HTTP status, 22 a
    // code of libcurl, 23 says that the answer is no page (1) or the site is unknown (4); any other pair is
    // the server's own, a wrong password among them. The list is then empty, is_all_finished as it was.
    // Pictures with cacheable addresses are fetched ahead from here on. Inside a task of the engine the page
    // behind this one is on its way from here on, too, unless this is the last, as with
    // CmsGetExportFileData::GetExportFileDataList.
    static bool GetExportPicDataList(CmsGetPersonPicFileData& data);
};

}  // namespace FetchyardLogical
