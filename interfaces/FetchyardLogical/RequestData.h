#pragma once

#include <string>

namespace FetchyardLogical {

// How one call to a server is made.
struct RequstData
{
    std::string str_method;   // HTTP method
    std::string str_quern;    // path of the interface, or a whole url
    std::string str_request;  // request text, JSON
    int site_id = 0;          // site that the request goes to
    int pattern = 1;          // how the request is addressed, see ZellNetLink::NetlibWrapper::RequestPattern
    std::string task_id;      // the server's own number of the task
    int reserved = 0;
    std::string pdf_page_size = "A4";  // of a PDF that the server generates
    int pdf_page_orintation = 1;       // 0 landscape
};

}  // namespace FetchyardLogical
