#include "plugins/clipvault/ClipFetch.h"

#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ClipVault {
namespace {

using Zell::Base::Error::ErrorCode;
using ZellNetLink::HttpRequest;
using ZellNetLink::HttpResponse;

constexpr int kMostRequests = 10;
constexpr long kPartialContent = 206;
constexpr ErrorCode kOtherPart(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
// libcurl's codes: a body that ends early, a transfer that stands still, a connection that breaks.
constexpr std::array<int, 3> kCutCodes = {18, 28, 56};

bool IsError(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

bool IsCut(const ErrorCode& error)
{
    return error.iFirstCode == ZellNetLink::kModuleTransport &&
           std::find(kCutCodes.begin(), kCutCodes.end(), error.iSecondCode) != kCutCodes.end();
}

std::string Header(const HttpResponse& response, const char* name)
{
    const auto found = response.headers.find(name);
    return found == response.headers.end() ? std::string() : found->second;
}

// A site says in its own words why it refuses.
ErrorCode ErrorOf(const HttpResponse& response)
{
    ZellNetLink::CRapidJsonProto json;
    if (response.error.iFirstCode != ZellNetLink::kModuleHttp || !json.set_str(response.body))
        return response.error;
    const int module = json.get_int_v("/ErrorModule", 0);
    return module == 0 ? response.error : ErrorCode(2, module, json.get_int_v("/ErrorCode", 0));
}

HttpRequest RequestFor(const std::string& url, const Download& download)
{
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    HttpRequest request;
    request.url = url;
    request.user = settings.user_name;
    request.password = settings.password;
    request.timeout_ms = 0;  // a video may be of any size; a transfer that stands still ends all the same
    request.max_body = std::numeric_limits<std::size_t>::max();
    request.is_cancelled = [&download] { return download.is_stopped.load(); };
    return request;
}

// One request: the whole, or what is missing of the version that the tag names. The error of a transfer whose
// file could not be written is that of the file.
HttpResponse TransferOnce(const std::string& url, Download& download, ClipFile& file, const std::string& tag)
{
    ErrorCode write_error;
    HttpRequest request = RequestFor(url, download);
    request.range_from = file.Size();
    if (request.range_from > 0)
        request.headers.push_back("If-Range: " + tag);
    bool is_begun = false;
    request.sink = [&](std::int64_t start, const char* data, std::size_t size) {
        const bool is_another = !is_begun && start != file.Size();
        is_begun = true;
        if (is_another)
            write_error = file.Open();
        if (!IsError(write_error))
            write_error = file.Write(data, size);
        download.bytes += static_cast<std::int64_t>(size);
        return !IsError(write_error) && !download.is_stopped;
    };
    HttpResponse response = ZellNetLink::HttpClient::Instance().Perform(request);
    response.error = IsError(write_error) ? write_error : ErrorOf(response);
    return response;
}

// A part of another version than the one that its beginning was of: a server that knows no If-Range.
bool IsOfOtherVersion(const HttpResponse& response, const std::string& tag)
{
    const std::string now = Header(response, "etag");
    return response.status == kPartialContent && !now.empty() && now != tag;
}

// A body that is cut is asked for again from where it broke, as long as each request brings something.
HttpResponse Transfer(const std::string& url, Download& download, ClipFile& file)
{
    HttpResponse response;
    response.error = file.Open();
    std::string tag;
    for (int requests = 0; requests < kMostRequests && (requests > 0 || !IsError(response.error));
         ++requests) {
        const std::int64_t before = file.Size();
        response = TransferOnce(url, download, file, tag);
        if (!tag.empty() && IsOfOtherVersion(response, tag))
            response.error = kOtherPart;
        tag = Header(response, "etag");
        if (!IsCut(response.error) || tag.empty() || tag.front() != '"' || file.Size() <= before)
            break;
    }
    return response;
}

std::string RecordingUrl(const ClipQuestion& question)
{
    return question.site_url + "/api/v1/recordings/" + question.resource_id;
}

}  // namespace

ErrorCode FetchClip(const ClipQuestion& question, Download& download, ClipFile& file, std::string& begin)
{
    const std::string url = RecordingUrl(question) + "/clip?begin=" + std::to_string(question.time.begin) +
                            "&end=" + std::to_string(question.time.end) +
                            "&format=" + (question.is_avi ? "avi" : "mp4");
    const HttpResponse response = Transfer(url, download, file);
    const std::string spans = Header(response, "fetchyard-clip-spans");
    begin = spans.substr(0, spans.find('/'));
    return response.error;
}

ErrorCode FetchFrame(const ClipQuestion& question, const std::string& time, Download& download,
                     ClipFile& file)
{
    return Transfer(RecordingUrl(question) + "/frame?at=" + time, download, file).error;
}

}  // namespace ClipVault
