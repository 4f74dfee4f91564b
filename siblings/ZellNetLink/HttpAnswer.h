#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ZellNetLink {

// The head of an answer, line by line as it arrives. A new status line (after a redirect, or after a go-ahead
// for the body) starts over.
class HttpAnswerHead
{
public:
    // False if the head grows beyond what an honest server sends.
    bool TakeLine(std::string_view line);

    long Status() const { return status_; }
    bool IsSuccess() const { return status_ >= 200 && status_ <= 299; }
    // Names in lower case; a header that comes more than once has its values joined by ", ".
    std::map<std::string, std::string>& Headers() { return headers_; }
    std::optional<std::string_view> Header(const std::string& name) const;

private:
    long status_ = 0;
    std::size_t bytes_ = 0;
    std::map<std::string, std::string> headers_;
};

// "bytes 100-199/1000": the parts of a Content-Range; total is absent for "*".
struct ContentRange
{
    std::int64_t first = 0;
    std::int64_t last = 0;
    std::optional<std::int64_t> total;

    bool ReachesEnd() const { return !total || last + 1 == *total; }
};

std::optional<ContentRange> ParseContentRange(std::string_view value);

}  // namespace ZellNetLink
