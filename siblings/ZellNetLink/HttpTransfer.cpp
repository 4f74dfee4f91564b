#include "HttpTransfer.h"

#include "ZellBase/Log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <new>
#include <utility>

namespace ZellNetLink {
namespace {

using Zell::Base::Error::ErrorCode;

constexpr long kConnectTimeoutMs = 10000;
constexpr long kStallSeconds = 60;
constexpr long kMaxRedirects = 5;
constexpr long kReceiveBuffer = 512L << 10;
constexpr std::size_t kMaxErrorText = 1U << 20;
// A length that a server announces is believed up to here; beyond, the buffer grows with what arrives.
constexpr std::size_t kMaxReserve = 64U << 20;
constexpr const char* kProtocols = "http,https";

bool IsMethod(std::string_view method)
{
    return !method.empty() && method.size() <= 32 &&
           std::all_of(method.begin(), method.end(), [](char letter) {
               return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') || letter == '-';
           });
}

bool HasLineBreak(const std::string& header)
{
    return header.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos;
}

// Where the path, query or fragment begins: behind "scheme://host:port".
std::size_t EndOfOrigin(std::string_view url)
{
    const std::size_t scheme = url.find("://");
    const std::size_t host = scheme == std::string_view::npos ? 0 : scheme + 3;
    return std::min(url.find_first_of("/?#", host), url.size());
}

// Addresses of this machine never go through a proxy, whatever else the environment excepts.
const std::string& NoProxy()
{
    static const auto* list = [] {
        const char* environment = std::getenv("no_proxy");
        if (environment == nullptr)
            environment = std::getenv("NO_PROXY");
        auto* text = new std::string(environment == nullptr ? "" : environment);
        if (*text != "*")
            *text += std::string(text->empty() ? "" : ",") + "localhost,127.0.0.1,::1";
        return text;
    }();
    return *list;
}

// Sets options one after the other and keeps the first failure.
class Options
{
public:
    explicit Options(CURL* easy) : easy_(easy) {}

    template <typename Value>
    Options& Set(CURLoption option, Value value)
    {
        if (result_ == CURLE_OK)
            result_ = curl_easy_setopt(easy_, option, value);
        return *this;
    }

    CURLcode Result() const { return result_; }

private:
    CURL* easy_;
    CURLcode result_ = CURLE_OK;
};

}  // namespace

std::string EncodedUrl(std::string_view url)
{
    constexpr std::string_view kHex = "0123456789ABCDEF";
    const std::size_t origin = EndOfOrigin(url);
    std::string encoded(url.substr(0, origin));
    encoded.reserve(url.size() + 16);
    for (const char letter : url.substr(origin)) {
        const auto code = static_cast<unsigned char>(letter);
        if (code > 0x20 && code < 0x7F && letter != '"' && letter != '<' && letter != '>') {
            encoded += letter;
            continue;
        }
        encoded += '%';
        encoded += kHex[code >> 4];
        encoded += kHex[code & 15];
    }
    return encoded;
}

HttpTransfer::HttpTransfer(std::uint64_t id, HttpRequest request, HttpClient::Done done, bool somebody_waits)
    : id_(id), request_(std::move(request)), done_(std::move(done)), somebody_waits_(somebody_waits)
{
    request_.url = EncodedUrl(request_.url);
    origin_ = request_.url.substr(0, EndOfOrigin(request_.url));
}

CURLcode HttpTransfer::Prepare(CURL* easy)
{
    easy_ = easy;
    if (easy == nullptr)
        return CURLE_FAILED_INIT;
    // Only a wish: a handle that was refused a protocol keeps its buffer, and takes no new size for it.
    static_cast<void>(curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, kReceiveBuffer));
    const CURLcode result = Options(easy)
                                .Set(CURLOPT_PRIVATE, static_cast<void*>(this))
                                .Set(CURLOPT_URL, request_.url.c_str())
                                .Set(CURLOPT_NOSIGNAL, 1L)
                                .Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1))
                                .Set(CURLOPT_PROTOCOLS_STR, kProtocols)
                                .Set(CURLOPT_REDIR_PROTOCOLS_STR, kProtocols)
                                .Set(CURLOPT_FOLLOWLOCATION, 1L)
                                .Set(CURLOPT_MAXREDIRS, kMaxRedirects)
                                .Set(CURLOPT_NOPROXY, NoProxy().c_str())
                                .Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L)
                                .Set(CURLOPT_USERAGENT, "Fetchyard")
                                .Set(CURLOPT_HEADERFUNCTION, &HttpTransfer::OnHeader)
                                .Set(CURLOPT_HEADERDATA, static_cast<void*>(this))
                                .Set(CURLOPT_WRITEFUNCTION, &HttpTransfer::OnBody)
                                .Set(CURLOPT_WRITEDATA, static_cast<void*>(this))
                                .Result();
    if (result != CURLE_OK)
        return result;
    if (const CURLcode method = PrepareMethod(); method != CURLE_OK)
        return method;
    if (const CURLcode headers = PrepareHeaders(); headers != CURLE_OK)
        return headers;
    return PrepareLimits();
}

CURLcode HttpTransfer::PrepareMethod()
{
    if (!IsMethod(request_.method))
        return CURLE_BAD_FUNCTION_ARGUMENT;
    Options options(easy_);
    const bool has_body = !request_.body.empty();
    if (request_.method == "HEAD")
        options.Set(CURLOPT_NOBODY, 1L);
    else if (has_body || request_.method == "POST")
        options.Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()))
            .Set(CURLOPT_POSTFIELDS, request_.body.data());
    // For POST and GET the library knows itself what becomes of the method on a redirect.
    const bool is_plain =
        request_.method == "POST" || request_.method == "HEAD" || (request_.method == "GET" && !has_body);
    if (!is_plain)
        options.Set(CURLOPT_CUSTOMREQUEST, request_.method.c_str());
    return options.Result();
}

CURLcode HttpTransfer::PrepareHeaders()
{
    request_.headers.emplace_back("Expect:");  // no round trip before a large body
    for (const std::string& header : request_.headers) {
        if (HasLineBreak(header))
            return CURLE_BAD_FUNCTION_ARGUMENT;
        curl_slist* longer = curl_slist_append(headers_.get(), header.c_str());
        if (longer == nullptr)
            return CURLE_OUT_OF_MEMORY;
        static_cast<void>(headers_.release());
        headers_.reset(longer);
    }
    Options options(easy_);
    options.Set(CURLOPT_HTTPHEADER, headers_.get());
    if (!request_.user.empty())
        options.Set(CURLOPT_HTTPAUTH, CURLAUTH_BASIC)
            .Set(CURLOPT_USERNAME, request_.user.c_str())
            .Set(CURLOPT_PASSWORD, request_.password.c_str());
    return options.Result();
}

CURLcode HttpTransfer::PrepareLimits()
{
    Options options(easy_);
    options.Set(CURLOPT_CONNECTTIMEOUT_MS, kConnectTimeoutMs);
    // Otherwise its end would wait until the server's name is known.
    if (CanBeCancelled())
        options.Set(CURLOPT_QUICK_EXIT, 1L);
    if (request_.timeout_ms > 0)
        options.Set(CURLOPT_TIMEOUT_MS, static_cast<long>(request_.timeout_ms));
    else
        options.Set(CURLOPT_LOW_SPEED_LIMIT, 1L).Set(CURLOPT_LOW_SPEED_TIME, kStallSeconds);
    if (request_.range_from > 0)
        options.Set(CURLOPT_RANGE, (std::to_string(request_.range_from) + "-").c_str());
    return options.Result();
}

std::size_t HttpTransfer::OnHeader(char* data, std::size_t size, std::size_t count, void* self)
{
    const std::size_t bytes = size * count;
    auto* transfer = static_cast<HttpTransfer*>(self);
    try {
        if (transfer->head_.TakeLine({data, bytes}))
            return bytes;
        transfer->Refuse(AnswerTooLarge);
    } catch (const std::exception&) {
        transfer->refusal_ = ErrorCode(0, ENOMEM);
    }
    return bytes + 1;  // anything else than the number of bytes ends the transfer
}

std::size_t HttpTransfer::OnBody(char* data, std::size_t size, std::size_t count, void* self)
{
    const std::size_t bytes = size * count;
    auto* transfer = static_cast<HttpTransfer*>(self);
    try {
        if (transfer->TakeBody(data, bytes))
            return bytes;
    } catch (const std::bad_alloc&) {
        transfer->refusal_ = ErrorCode(0, ENOMEM);
    } catch (const std::exception& failure) {
        Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "ZellNetLink",
                                           "A sink ended with an exception: %s", failure.what());
        transfer->Refuse(AnswerRefusedBySink);
    }
    return CURL_WRITEFUNC_ERROR;
}

bool HttpTransfer::Refuse(AnswerError reason)
{
    refusal_ = ErrorCode(2, kModuleAnswer, reason);
    return false;
}

bool HttpTransfer::TakeBody(const char* data, std::size_t size)
{
    if (!head_.IsSuccess())
        return TakeErrorText(data, size);
    if (!body_begun_ && !BeginBody())
        return false;
    if (size > request_.max_body - body_bytes_)
        return Refuse(AnswerTooLarge);
    body_bytes_ += size;
    if (request_.sink)
        return request_.sink(body_start_, data, size) || Refuse(AnswerRefusedBySink);
    Reserve(size);
    response_.body.append(data, size);
    return true;
}

// What a server says about its failure is kept, within reason.
bool HttpTransfer::TakeErrorText(const char* data, std::size_t size)
{
    const std::size_t room = kMaxErrorText - std::min(kMaxErrorText, response_.body.size());
    Reserve(std::min(size, room));
    response_.body.append(data, std::min(size, room));
    return true;
}

bool HttpTransfer::BeginBody()
{
    body_begun_ = true;
    if (!CheckRange())
        return Refuse(AnswerNotUnderstood);
    curl_off_t announced = -1;
    if (curl_easy_getinfo(easy_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced) != CURLE_OK ||
        announced <= 0)
        return true;
    if (static_cast<std::uint64_t>(announced) > request_.max_body)
        return Refuse(AnswerTooLarge);
    if (!request_.sink)
        Reserve(std::min(static_cast<std::size_t>(announced), kMaxReserve));
    return true;
}

// A part of a body is trusted by its Content-Range, not by its status.
bool HttpTransfer::CheckRange()
{
    if (head_.Status() != 206)
        return true;
    const std::optional<std::string_view> value = head_.Header("content-range");
    const std::optional<ContentRange> range = value ? ParseContentRange(*value) : std::nullopt;
    if (!range || range->first != request_.range_from || !range->ReachesEnd())
        return false;
    body_start_ = range->first;
    part_bytes_ = static_cast<std::uint64_t>(range->last - range->first) + 1;
    return true;
}

// As long as its Content-Range says; what a HEAD asks for has no body.
bool HttpTransfer::IsPartWhole() const
{
    return part_bytes_ == 0 || part_bytes_ == body_bytes_ || request_.method == "HEAD";
}

void HttpTransfer::Reserve(std::size_t more)
{
    std::string& body = response_.body;
    const std::size_t needed = body.size() + more + kBodyHeadroom;
    if (body.capacity() < needed)
        body.reserve(std::max(needed, std::min(2 * body.capacity(), body.capacity() + kMaxReserve)));
}

void HttpTransfer::Finish(CURLcode code)
{
    const bool has_refusal = refusal_.iFirstCode != 0 || refusal_.iSecondCode != 0;
    response_.status = head_.Status();
    // NOLINTBEGIN(bugprone-branch-clone): an order of causes, of which the first counts
    if (has_refusal)
        response_.error = refusal_;
    else if (response_.status >= 400)
        response_.error = ErrorCode(2, kModuleHttp, static_cast<int>(response_.status));
    else if (code != CURLE_OK)
        response_.error = ErrorCode(2, kModuleTransport, code);
    else if (!head_.IsSuccess())
        response_.error = ErrorCode(2, kModuleHttp, static_cast<int>(response_.status));
    else if ((!body_begun_ && !CheckRange()) || !IsPartWhole())
        response_.error = ErrorCode(2, kModuleAnswer, AnswerNotUnderstood);
    // NOLINTEND(bugprone-branch-clone)
    response_.headers = std::move(head_.Headers());
    Reserve(0);
    Deliver();
}

void HttpTransfer::FinishCancelled()
{
    response_.status = head_.Status();
    response_.error = ErrorCode(2, kModuleAnswer, Cancelled);
    Deliver();
}

void HttpTransfer::Deliver()
{
    try {
        done_(std::move(response_));
    } catch (const std::exception& failure) {
        Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "ZellNetLink",
                                           "An answer's receiver ended with an exception: %s",
                                           failure.what());
    }
}

}  // namespace ZellNetLink
