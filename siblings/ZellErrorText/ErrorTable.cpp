#include "ErrorTable.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ZellErrorText {
namespace {

struct Entry
{
    int module;
    int code;
    const char* text;
};

constexpr bool operator<(const Entry& left, const Entry& right)
{
    return left.module != right.module ? left.module < right.module : left.code < right.code;
}

// 20: this system's own codes. 21: HTTP statuses. 22: the transfer library. 23: answers that can't be used.
// 24: the station. Sorted by module and code.
constexpr Entry kTable[] = {
    {20, 3, "The request is wrong or incomplete."},
    {20, 2316, "A picture could not be fetched from the local storage of the platform."},
    {20, 2330, "A picture could not be fetched."},
    {20, 3201, "The server could not generate the file."},
    {20, 3209, "The export was stopped."},
    {20, 3215, "A folder could not be created."},
    {20, 3219, "The export data or file could not be got from the server."},
    {20, 3605, "A file or video could not be fetched."},
    {20, 3606, "The file could not be saved, the file system refused it."},
    {21, 300, "The server offers several answers and none was chosen (HTTP 300)."},
    {21, 301, "The address has moved for good (HTTP 301)."},
    {21, 302, "The address has moved (HTTP 302)."},
    {21, 303, "The answer lies at another address (HTTP 303)."},
    {21, 304, "The server says that nothing has changed (HTTP 304)."},
    {21, 307, "The address has moved for now (HTTP 307)."},
    {21, 308, "The address has moved for good (HTTP 308)."},
    {21, 400, "The server does not understand the request (HTTP 400)."},
    {21, 401, "The server asks for a user name and a password, or refused those it got (HTTP 401)."},
    {21, 403, "The server refuses access (HTTP 403)."},
    {21, 404, "The server does not have what was asked for (HTTP 404)."},
    {21, 405, "The server does not allow this kind of request (HTTP 405)."},
    {21, 406, "The server can't answer in a format that was asked for (HTTP 406)."},
    {21, 407, "A proxy asks for a user name and a password (HTTP 407)."},
    {21, 408, "The server waited too long for the request (HTTP 408)."},
    {21, 409, "The request contradicts what the server holds (HTTP 409)."},
    {21, 410, "What was asked for is no longer on the server (HTTP 410)."},
    {21, 411, "The server wants to know the length of the request (HTTP 411)."},
    {21, 412, "A condition of the request does not hold on the server (HTTP 412)."},
    {21, 413, "The request is too large for the server (HTTP 413)."},
    {21, 414, "The address is too long for the server (HTTP 414)."},
    {21, 415, "The server does not know the format of the request (HTTP 415)."},
    {21, 416, "The server does not have the part of the file that was asked for (HTTP 416)."},
    {21, 422, "The server can't carry out the request (HTTP 422)."},
    {21, 423, "What was asked for is locked on the server (HTTP 423)."},
    {21, 429, "The server got too many requests (HTTP 429)."},
    {21, 431, "The headers of the request are too large for the server (HTTP 431)."},
    {21, 500, "The server has failed (HTTP 500)."},
    {21, 501, "The server can't do this (HTTP 501)."},
    {21, 502, "A gateway got no usable answer from the server behind it (HTTP 502)."},
    {21, 503, "The server is not available at the moment (HTTP 503)."},
    {21, 504, "A gateway got no answer in time from the server behind it (HTTP 504)."},
    {21, 505, "The server does not know this version of HTTP (HTTP 505)."},
    {21, 507, "The server has no room left (HTTP 507)."},
    {21, 511, "The network asks for a login first (HTTP 511)."},
    {22, 1, "The kind of the address is not supported."},
    {22, 2, "The network layer could not be started."},
    {22, 3, "The address is malformed."},
    {22, 5, "The name of the proxy is not known."},
    {22, 6, "The name of the server is not known."},
    {22, 7, "The server can't be reached."},
    {22, 8, "The server gave an answer that makes no sense."},
    {22, 9, "The server refuses access."},
    {22, 16, "The HTTP/2 connection to the server failed."},
    {22, 18, "The connection ended before all was transferred."},
    {22, 21, "The server refused a command."},
    {22, 22, "The server answered with an error."},
    {22, 23, "What was received could not be written."},
    {22, 25, "The upload could not be started."},
    {22, 26, "What was to be sent could not be read."},
    {22, 27, "There was not enough memory."},
    {22, 28, "The server did not answer in time."},
    {22, 33, "The server can't send a part of a file."},
    {22, 35, "The secure connection to the server could not be made."},
    {22, 36, "The transfer could not be taken up where it had ended."},
    {22, 42, "The transfer was ended."},
    {22, 43, "The network layer was used in a wrong way."},
    {22, 45, "The network interface can't be used."},
    {22, 47, "The server sent the request from address to address too often."},
    {22, 48, "An option of the network layer is not known."},
    {22, 52, "The server sent no answer."},
    {22, 53, "The cryptography engine was not found."},
    {22, 55, "Data could not be sent to the server."},
    {22, 56, "Data could not be received from the server."},
    {22, 58, "The client's own certificate can't be used."},
    {22, 59, "The cipher of the secure connection can't be used."},
    {22, 60, "The certificate of the server is not trusted."},
    {22, 61, "The coding of the answer is not understood."},
    {22, 63, "The answer is too large."},
    {22, 65, "The request could not be sent once more from its beginning."},
    {22, 67, "The server refused the login."},
    {22, 77, "The file of trusted certificates can't be read."},
    {22, 78, "What was asked for is not there."},
    {22, 80, "The secure connection could not be closed."},
    {22, 81, "The connection was not ready."},
    {22, 83, "The issuer of the server's certificate is not the expected one."},
    {22, 88, "A part of the answer could not be handled."},
    {22, 89, "No connection was free."},
    {22, 90, "The public key of the server is not the expected one."},
    {22, 91, "The state of the server's certificate is not good."},
    {22, 92, "The HTTP/2 stream to the server failed."},
    {22, 94, "A login method failed."},
    {22, 95, "The HTTP/3 connection to the server failed."},
    {22, 96, "The QUIC connection to the server failed."},
    {22, 97, "The proxy could not make the connection."},
    {22, 98, "The server asks for a certificate of the client."},
    {23, 1, "The answer of the server is not understood."},
    {23, 2, "The answer of the server is too large."},
    {23, 3, "What was received was not taken."},
    {23, 4, "The settings of the client do not name the site."},
    {23, 5, "The library that was asked is not running."},
    {23, 6, "The transfer was cancelled."},
    {24, 1, "The station does not understand the condition of the search."},
    {24, 2, "The user name or the password is wrong."},
    {24, 3, "The station does not know this report."},
    {24, 4, "The station does not have this object."},
    {24, 5, "The station could not keep or read its data."},
};

constexpr bool IsSorted()
{
    for (std::size_t at = 1; at < std::size(kTable); ++at) {
        if (!(kTable[at - 1] < kTable[at]))
            return false;
    }
    return true;
}
static_assert(IsSorted(), "the look-up needs the order, each code once");

}  // namespace

const char* FindErrorText(int module, int code)
{
    const Entry wanted = {module, code, nullptr};
    const Entry* const found = std::lower_bound(std::begin(kTable), std::end(kTable), wanted);
    if (found == std::end(kTable) || wanted < *found)
        return nullptr;
    return found->text;
}

const char* FindModuleText(int module)
{
    switch (module) {
        case 20:
            return "The export failed";
        case 21:
            return "The server answered with an error";
        case 22:
            return "The transfer failed";
        case 23:
            return "The answer can't be used";
        case 24:
            return "The station refused the request";
        default:
            return nullptr;
    }
}

}  // namespace ZellErrorText
