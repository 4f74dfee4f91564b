#include "FileFetch.h"

#include "NQX/NQX.h"
#include "SiteRequest.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"
#include "ZellTaskKit/ClientServices.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <mutex>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace ZellTaskKit {
namespace {

using Zell::Base::Error::ErrorCode;
namespace FileSystem = Zell::Base::FileSystem;

constexpr ErrorCode kWrongInput(2, 20, 3);
constexpr ErrorCode kUnknownSite(2, ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);
constexpr ErrorCode kOtherPart(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
constexpr int kMaxRequests = 10;
constexpr long kPartialContent = 206;
constexpr std::string_view kSuffix = ".part";
// libcurl's codes: a body that ends early, a transfer that stands still, a connection that breaks.
constexpr std::array<int, 3> kCutCodes = {18, 28, 56};
constexpr long long kStaleSeconds = 24LL * 3600;

ErrorCode SystemError()
{
    return {0, NQX_GetLastError()};
}

bool IsError(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

// The name of a TemporaryFile. The folder may be one that others use too, and theirs stays.
bool IsOurs(const std::string& path)
{
    constexpr std::size_t kGuidLetters = 36;
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    return name.size() == kGuidLetters + kSuffix.size() &&
           name.find_first_not_of("0123456789abcdef-") == kGuidLetters &&
           name.compare(kGuidLetters, kSuffix.size(), kSuffix) == 0;
}

// What a process that was killed left behind is taken away once, at the first fetch into the folder.
void RemoveStaleFiles(const std::string& folder)
{
    static auto* mutex = new std::mutex;
    static auto* seen = new std::set<std::string>;
    {
        const std::lock_guard<std::mutex> lock(*mutex);
        if (!seen->insert(folder).second)
            return;
    }
    FileSystem::SearchFileParam search;
    search.folder = folder;
    search.recursive = false;
    std::vector<FileSystem::FileInfo> files;
    if (FileSystem::GetFilesInDir(search, files) != 0)
        return;
    const long long oldest = static_cast<long long>(std::time(nullptr)) - kStaleSeconds;
    for (const FileSystem::FileInfo& file : files) {
        if (file.time < oldest && IsOurs(file.path))
            FileSystem::DeleteFileW(file.path.c_str());
    }
}

// A file under a temporary name; unless it was moved to its place, it goes with the object. The name of the
// client's data folder keeps it out of export folders, whose content is counted and packed.
class TemporaryFile
{
public:
    TemporaryFile() = default;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile()
    {
        if (handle_ != nullptr)
            FileSystem::CloseFile(handle_);
        if (!path_.empty())
            FileSystem::DeleteFileW(path_.c_str());
    }

    std::int64_t Size() const { return size_; }

    bool Open()
    {
        const std::string folder = CFrameSystemConfigMgr::Instance().GetClientDataPath() + "Downloads/";
        if (FileSystem::MakeFullDir(folder.c_str()) != 0)
            return false;
        RemoveStaleFiles(folder);
        std::string path = folder + Zell::Base::GuidUtil::CreateGuid() + std::string(kSuffix);
        void* handle =
            FileSystem::OpenFile(path.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
        if (handle == FileSystem::NoFile())
            return false;
        handle_ = handle;
        path_ = std::move(path);
        return true;
    }

    // What was written is forgotten.
    bool StartOver()
    {
        FileSystem::CloseFile(handle_);
        size_ = 0;
        handle_ =
            FileSystem::OpenFile(path_.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
        if (handle_ == FileSystem::NoFile())
            handle_ = nullptr;
        return handle_ != nullptr;
    }

    bool Write(const char* data, std::size_t size)
    {
        size_ += static_cast<std::int64_t>(size);
        constexpr std::size_t kMaxPiece = std::numeric_limits<unsigned int>::max();
        while (size > 0) {
            const std::size_t piece = std::min(size, kMaxPiece);
            // The file layer takes a plain pointer and only reads.
            if (FileSystem::WriteFile(handle_, const_cast<char*>(data), static_cast<unsigned int>(piece),
                                      nullptr) != 0)
                return false;
            data += piece;
            size -= piece;
        }
        return true;
    }

    bool MoveTo(const std::string& target)
    {
        void* handle = std::exchange(handle_, nullptr);
        if (FileSystem::CloseFile(handle) != 0)
            return false;
        if (FileSystem::RenameFile(path_.c_str(), target.c_str()) != 0)
            return false;
        path_.clear();
        return true;
    }

private:
    void* handle_ = nullptr;
    std::int64_t size_ = 0;  // bytes
    std::string path_;
};

// A version of a body that a part can be asked of: weak tags tell nothing about bytes.
std::string StrongTag(const ZellNetLink::HttpResponse& response)
{
    const auto tag = response.headers.find("etag");
    return tag != response.headers.end() && tag->second.rfind('"', 0) == 0 ? tag->second : std::string();
}

// The connection broke in the middle of a body, after what is on disk.
bool IsCut(const ErrorCode& error)
{
    return error.iFirstCode == ZellNetLink::kModuleTransport &&
           std::find(kCutCodes.begin(), kCutCodes.end(), error.iSecondCode) != kCutCodes.end();
}

// A part of another version than the one that its beginning was of: a server that knows no If-Range.
bool IsOfOtherVersion(const ZellNetLink::HttpResponse& response, const std::string& tag)
{
    const auto now = response.headers.find("etag");
    return response.status == kPartialContent && now != response.headers.end() && now->second != tag;
}

// One request: the whole body, or what is missing of the version that the tag names. A server that has
// another version by now, or knows no parts, sends the whole, and the file starts over. The error of a
// transfer whose file could not be written is that of the file.
ErrorCode TransferOnce(const std::string& url, TemporaryFile& file, std::string& tag)
{
    ErrorCode write_error;
    ZellNetLink::HttpRequest request;
    request.url = url;
    request.range_from = file.Size();
    if (request.range_from > 0)
        request.headers.push_back("If-Range: " + tag);
    request.timeout_ms = 0;  // a file may be of any size; a transfer that stands still ends all the same
    request.max_body = std::numeric_limits<std::size_t>::max();
    bool is_begun = false;
    request.sink = [&](std::int64_t start, const char* data, std::size_t size) {
        const bool is_another = !is_begun && start != file.Size();
        is_begun = true;
        if ((!is_another || file.StartOver()) && file.Write(data, size))
            return true;
        write_error = SystemError();
        return false;
    };
    AddAccount(request);
    const ZellNetLink::HttpResponse response =
        ZellNetLink::HttpClient::Instance().Perform(std::move(request));
    if (!tag.empty() && IsOfOtherVersion(response, tag))
        return kOtherPart;
    tag = StrongTag(response);
    // An empty body calls no sink, and is the whole of a version all the same.
    if (!is_begun && !IsError(response.error) && file.Size() > 0 && !file.StartOver())
        return SystemError();
    return IsError(write_error) ? write_error : response.error;
}

// A body that is cut is asked for again from where it broke, as long as each request brings something.
ErrorCode Transfer(const std::string& url, TemporaryFile& file)
{
    std::string tag;
    ErrorCode error;
    for (int requests = 0; requests < kMaxRequests; ++requests) {
        const std::int64_t before = file.Size();
        error = TransferOnce(url, file, tag);
        if (!IsCut(error) || tag.empty() || file.Size() <= before)
            break;
    }
    return error;
}

// Before anything is fetched: a file that could not be put in its place is not worth the way.
bool FolderExists(const std::string& save_path)
{
    const std::size_t separator = save_path.find_last_of("/\\");
    if (separator == std::string::npos)
        return true;
    return FileSystem::DirectoryExists(save_path.substr(0, separator + 1).c_str()) == 0;
}

}  // namespace

ErrorCode FetchFile(const std::string& url, const std::string& save_path)
{
    if (url.empty() || save_path.empty())
        return kWrongInput;
    std::string address = url;
    if (!ResolveSiteUrl(address, 0))
        return kUnknownSite;
    TemporaryFile file;
    if (!FolderExists(save_path) || !file.Open())
        return SystemError();
    const ErrorCode error = Transfer(address, file);
    if (IsError(error))
        return error;
    return file.MoveTo(save_path) ? ErrorCode() : SystemError();
}

}  // namespace ZellTaskKit
