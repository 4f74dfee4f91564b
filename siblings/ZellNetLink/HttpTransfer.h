#pragma once

#include "HttpAnswer.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <curl/curl.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace ZellNetLink {

// Room that a body's buffer has behind its last byte; parsers that read in wide steps rely on it.
inline constexpr std::size_t kBodyHeadroom = 64;

// The url with each byte that cannot stand in one (blanks, controls, letters beyond ASCII) percent-encoded
// behind the host; all else as it is.
std::string EncodedUrl(std::string_view url);

// One request on its way, bound to an easy handle. Lives on the client's thread once it was handed over.
class HttpTransfer
{
public:
    HttpTransfer(std::uint64_t id, HttpRequest request, HttpClient::Done done, bool somebody_waits);
    HttpTransfer(const HttpTransfer&) = delete;
    HttpTransfer& operator=(const HttpTransfer&) = delete;
    ~HttpTransfer() = default;

    std::uint64_t Id() const { return id_; }
    bool SomebodyWaits() const { return somebody_waits_; }
    // Scheme, host and port.
    const std::string& Origin() const { return origin_; }

    // Describes the request to the handle. A failure is libcurl's code.
    CURLcode Prepare(CURL* easy);
    // Whether whoever waits for it may end it, and does.
    bool CanBeCancelled() const { return static_cast<bool>(request_.is_cancelled); }
    bool IsCancelled() const { return request_.is_cancelled && request_.is_cancelled(); }

    // Calls done with the outcome. Once.
    void Finish(CURLcode code);
    void FinishCancelled();

    CURL* Easy() const { return easy_; }

private:
    struct ListDeleter
    {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    static std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self);

    CURLcode PrepareMethod();
    CURLcode PrepareHeaders();
    CURLcode PrepareLimits();
    bool TakeBody(const char* data, std::size_t size);
    bool BeginBody();
    bool CheckRange();
    bool IsPartWhole() const;
    bool TakeErrorText(const char* data, std::size_t size);
    void Reserve(std::size_t more);
    bool Refuse(AnswerError reason);
    void Deliver();

    const std::uint64_t id_;
    HttpRequest request_;
    HttpClient::Done done_;
    const bool somebody_waits_;
    std::string origin_;
    CURL* easy_ = nullptr;
    std::unique_ptr<curl_slist, ListDeleter> headers_;
    HttpAnswerHead head_;
    HttpResponse response_;
    Zell::Base::Error::ErrorCode refusal_;  // why this side ended the transfer
    bool body_begun_ = false;
    std::int64_t body_start_ = 0;
    std::size_t body_bytes_ = 0;
    std::uint64_t part_bytes_ = 0;  // that a 206 announces; 0 if it is none
};

}  // namespace ZellNetLink
