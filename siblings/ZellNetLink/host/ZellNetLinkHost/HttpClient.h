#pragma once

#include "ZellBase/Error.h"
#include "ZellNetLink/Export.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

// HTTP for the siblings: transfers that somebody waits for move on the thread that waits, all others on one
// thread; each side keeps its connections for the next. HTTP/1.1 with kept connections; at most 5 redirects,
// to http and https only, which take the account to no other host; certificates are checked; bodies arrive as
// they are sent, never compressed. The environment's proxy is used except for this machine.
namespace ZellNetLink {

// Modules of the error codes that a transfer can end with.
inline constexpr int kModuleHttp = 21;       // the code is the HTTP status
inline constexpr int kModuleTransport = 22;  // the code is libcurl's
inline constexpr int kModuleAnswer = 23;     // the answer can't be used, see AnswerError

enum AnswerError : int {
    AnswerNotUnderstood = 1,  // not the format, or not the part of the body, that was asked for
    AnswerTooLarge = 2,
    AnswerRefusedBySink = 3,  // the sink said no
    SiteUnknown = 4,          // the client's settings do not name the site
    NotStarted = 5,           // the library that was asked is not running
    Cancelled = 6,
};

struct HttpRequest
{
    std::string method = "GET";        // letters and "-", otherwise the transfer ends with libcurl's code 43
    std::string url;                   // http or https; blanks and letters beyond ASCII are percent-encoded
    std::string body;                  // sent with any method if not empty
    std::vector<std::string> headers;  // "Name: value"
    std::string user;                  // sent as HTTP Basic when not empty
    std::string password;
    // Of the whole transfer; connecting has 10 s at most. 0: no limit, but a transfer that stands still for a
    // minute ends with libcurl's code 28.
    unsigned long timeout_ms = 60000;
    std::size_t max_body = 1024u << 20;  // bytes; a larger answer ends with AnswerTooLarge
    std::int64_t range_from = 0;         // above 0: asks for the bytes from there on
    // Of Start: somebody waits for the answer, so it does not take turns with the others of that server.
    bool urgent = false;
    // Of Perform: asked on the calling thread, some 20 times a second at least; true ends the transfer with
    // Cancelled, also while the server is looked for or says nothing. May be empty.
    std::function<bool()> is_cancelled;
    // Where the body goes, if not to HttpResponse::body: called on the thread that moves the transfer, piece
    // by piece, only for a status of 200 to 299; false ends the transfer. start is the offset of the first
    // byte: 0, or range_from if the server's Content-Range confirms it. A part
    // that is not as long as its Content-Range says ends the transfer with AnswerNotUnderstood.
    std::function<bool(std::int64_t start, const char* data, std::size_t size)> sink;
};

struct HttpResponse
{
    Zell::Base::Error::ErrorCode error;  // (0, 0): status 200 to 299 and the body is whole
    long status = 0;                     // 0 if no answer came
    // With 64 bytes of capacity behind its end, for parsers that read in wide steps. Of an answer that is no
    // success, what the server said, up to 1 MiB.
    std::string body;
    std::map<std::string, std::string> headers;  // names in lower case
};

class ZELLNETLINK_API HttpClient
{
public:
    using Done = std::function<void(HttpResponse&&)>;

    static HttpClient& Instance();

    // Sends and waits, on the calling thread. On the client's own thread it ends with NotStarted.
    HttpResponse Perform(HttpRequest request);
    // Sends and returns; done is called once, on the client's thread, possibly before this returns, and must
    // not block or call Perform. Of transfers begun so, 16 run at a time for each server, in the order of
    // the calls, and the time-out of the others has not begun; those of Perform never wait behind them.
    std::uint64_t Start(HttpRequest request, Done done);
    // Ends a transfer: done is called with Cancelled unless it was called already. Returns at once.
    void Cancel(std::uint64_t id);

    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

private:
    HttpClient();
    ~HttpClient();

    struct Core;
    Core* core_;
};

}  // namespace ZellNetLink
