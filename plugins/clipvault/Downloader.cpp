#include "plugins/clipvault/Downloader.h"

#include "plugins/clipvault/ClipFetch.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Log.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <set>
#include <string>
#include <vector>

namespace ClipVault {
namespace {

using Zell::Base::Error::ErrorCode;
namespace FileSystem = Zell::Base::FileSystem;

constexpr ErrorCode kNoFolder(2, 20, 3215);
constexpr ErrorCode kUnknownSite(2, ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);
constexpr int kAvi = 1;

bool IsError(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

class Downloader
{
public:
    Downloader(const ClipRequest& request, Download& download) : request_(request), download_(download) {}

    ClipOutcome Run()
    {
        ClipOutcome outcome;
        const bool has_folder = FileSystem::MakeFullDir(request_.folder.c_str()) == 0;
        for (const ClipResource& resource : request_.resources) {
            ResourceOutcome part = {resource.resource_id, resource.site_id, ClipState::NotBegun, {}};
            if (!download_.is_stopped)
                Fetch(resource, has_folder, part);
            if (IsError(part.error) && !IsError(outcome.error))
                outcome.error = part.error;
            outcome.resources.push_back(part);
        }
        outcome.state = IsError(outcome.error) ? ClipState::Failed : ClipState::Done;
        if (download_.is_stopped)
            Undo(outcome);
        return outcome;
    }

private:
    void Fetch(const ClipResource& resource, bool has_folder, ResourceOutcome& part)
    {
        ClipQuestion question;
        question.resource_id = resource.resource_id;
        question.is_avi = request_.format == kAvi;
        if (!has_folder)
            part.error = kNoFolder;
        else if (!ZellClientHost::GetSiteUrl(resource.site, question.site_url))
            part.error = kUnknownSite;
        for (const ClipTime& time : resource.times) {
            if (IsError(part.error) || download_.is_stopped)
                break;
            question.time = time;
            part.error = FetchOne(question, NewName(resource.file_name));
        }
        part.state = IsError(part.error) ? ClipState::Failed : ClipState::Done;
        if (IsError(part.error) && !download_.is_stopped)
            Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "clipvault",
                                               "Resource %s of site %s failed with (%d, %d).",
                                               resource.resource_id.c_str(), resource.site_id.c_str(),
                                               part.error.iFirstCode, part.error.iSecondCode);
    }

    // The name, with a number behind if a file of this request has it.
    std::string NewName(const std::string& wanted)
    {
        std::string name = wanted;
        for (int number = 2; !names_.insert(name).second; ++number)
            name = wanted + "-" + std::to_string(number);
        return request_.folder + name;
    }

    ErrorCode FetchOne(const ClipQuestion& question, const std::string& target)
    {
        ClipFile video(request_.is_stamped_later ? std::string() : request_.password, download_);
        ClipFile picture({}, download_);
        std::string begin;
        ErrorCode error = FetchClip(question, download_, video, begin);
        if (!IsError(error) && request_.has_snapshot)
            error = FetchFrame(question, begin.empty() ? std::to_string(question.time.begin) : begin,
                               download_, picture);
        const std::string video_path = target + request_.Extension();
        if (!IsError(error))
            error = Deliver(video, video_path);
        if (!IsError(error) && request_.has_snapshot) {
            error = Deliver(picture, target + ".jpg");
            if (IsError(error)) {
                FileSystem::DeleteFileW(video_path.c_str());
                delivered_.pop_back();
            }
        }
        if (!IsError(error) && request_.is_stamped_later && !request_.password.empty())
            Zell::MultimediaComm::ProtectStamped(video_path, request_.password);
        return error;
    }

    ErrorCode Deliver(ClipFile& file, const std::string& target)
    {
        const ErrorCode error = file.MoveTo(target);
        if (!IsError(error))
            delivered_.push_back(target);
        return error;
    }

    // A stop is no failure, and leaves nothing.
    void Undo(ClipOutcome& outcome)
    {
        for (const std::string& path : delivered_)
            FileSystem::DeleteFileW(path.c_str());
        outcome.state = ClipState::Stopped;
        outcome.error = {};
        for (ResourceOutcome& part : outcome.resources) {
            part.state = ClipState::Stopped;
            part.error = {};
        }
    }

    const ClipRequest& request_;
    Download& download_;
    std::set<std::string> names_;
    std::vector<std::string> delivered_;
};

}  // namespace

ClipOutcome CarryOut(const ClipRequest& request, Download& download)
{
    return Downloader(request, download).Run();
}

}  // namespace ClipVault
