#include "plugins/clipvault/ClipRequest.h"

#include "ZellNetLink/RapidJsonProto.h"

#include <charconv>
#include <optional>

namespace ClipVault {
namespace {

constexpr char kRoot[] = "/DownloadVideoFileRequest";
constexpr char kParam[] = "/DownloadVideoFileRequest/DownloadParam";
constexpr int kMostEntries = 1000;

// Reads members and remembers the first that is wrong.
class Reader
{
public:
    bool Parse(const std::string& json)
    {
        if (json_.set_str(json) && !Node(kRoot).empty())
            return true;
        Complain("the request is no JSON text with a DownloadVideoFileRequest");
        return false;
    }

    const std::string& Reason() const { return reason_; }

    void Complain(const std::string& reason)
    {
        if (reason_.empty())
            reason_ = reason;
    }

    bool Has(const std::string& path) { return !Node(path).empty(); }
    int Count(const std::string& path) { return json_.get_cnt(path); }

    std::string Text(const std::string& path, bool is_needed)
    {
        const std::string node = Node(path);
        if (node.empty() ? is_needed : node.front() != '"')
            Complain(path + (node.empty() ? " is missing" : " is no text"));
        std::string text = json_.get_v(path, "");
        if (is_needed && text.empty())
            Complain(path + " is empty");
        return text;
    }

    bool Flag(const std::string& path)
    {
        const std::string node = Node(path);
        if (!node.empty() && node != "true" && node != "false")
            Complain(path + " is neither true nor false");
        return node == "true";
    }

    std::optional<std::int64_t> Number(const std::string& path)
    {
        const std::string node = Node(path);
        if (node.empty())
            return std::nullopt;
        std::int64_t number = 0;
        const auto result = std::from_chars(node.data(), node.data() + node.size(), number);
        if (result.ec == std::errc() && result.ptr == node.data() + node.size())
            return number;
        Complain(path + " is no whole number");
        return std::nullopt;
    }

    std::int64_t NeededNumber(const std::string& path)
    {
        if (!Has(path))
            Complain(path + " is missing");
        return Number(path).value_or(0);
    }

private:
    std::string Node(const std::string& path) { return json_.get_node_str(path, 0); }

    ZellNetLink::CRapidJsonProto json_;
    std::string reason_;
};

bool IsDecimal(const std::string& text)
{
    return !text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string Indexed(const std::string& path, int index)
{
    return path + "[" + std::to_string(index) + "]";
}

// Exports send the low 32 bits of a time, which are below 0 from 2038 on.
std::int64_t WholeTime(std::int64_t seconds)
{
    constexpr std::int64_t kHalf = std::int64_t{1} << 31;
    return seconds < 0 && seconds >= -kHalf ? seconds + 2 * kHalf : seconds;
}

ClipTime ReadTime(Reader& reader, const std::string& path)
{
    ClipTime time;
    time.begin = WholeTime(reader.NeededNumber(path + "/StartTime"));
    time.end = WholeTime(reader.NeededNumber(path + "/EndTime"));
    if (time.begin < 0 || time.end <= time.begin)
        reader.Complain(path + " ends before it begins");
    return time;
}

ClipResource ReadResource(Reader& reader, const std::string& path)
{
    ClipResource resource;
    resource.resource_id = reader.Text(path + "/ResourceID", true);
    resource.site_id = reader.Text(path + "/SiteID", false);
    resource.is_camera_number = reader.Flag(path + "/IsCameraNO");
    resource.file_name = reader.Text(path + "/CustomFileName", true);
    if (!IsDecimal(resource.resource_id))
        reader.Complain(path + "/ResourceID is no number");
    if (resource.site_id.empty())
        resource.site_id = "0";
    if (IsDecimal(resource.site_id))
        resource.site = static_cast<unsigned int>(std::stoul(resource.site_id));
    else
        reader.Complain(path + "/SiteID is no number");
    const std::string times = path + "/DownloadTime";
    const int count = reader.Count(times);
    if (count < 1 || count > kMostEntries)
        reader.Complain(times + " is no list of times");
    for (int i = 1; i <= count && i <= kMostEntries; ++i)
        resource.times.push_back(ReadTime(reader, Indexed(times, i)));
    return resource;
}

std::string WithSeparator(std::string folder)
{
    if (!folder.empty() && folder.back() != '/' && folder.back() != '\\')
        folder += '/';
    return folder;
}

}  // namespace

const char* ClipRequest::Extension() const
{
    if (format == 2)
        return ".mp4";
    return format == 1 ? ".avi" : "";
}

bool ReadRequest(const std::string& json, ClipRequest& request, std::string& reason)
{
    Reader reader;
    const std::string root = kRoot;
    const std::string param = kParam;
    if (reader.Parse(json)) {
        request.guid = reader.Text(root + "/GUID", false);
        reader.Number(param + "/DownloadType");
        request.format = static_cast<int>(reader.Number(param + "/VideoFormat").value_or(0));
        request.password = reader.Text(param + "/Password", false);
        request.folder = WithSeparator(reader.Text(param + "/CustomFilePath", true));
        request.has_snapshot = reader.Flag(param + "/IsSnap");
        // Its presence says that the video is stamped next, its value that the stamp is not the plug-in's.
        request.is_stamped_later = reader.Has(param + "/IsNeedPlatformWatermark");
        const std::string resources = root + "/ResourceParam";
        const int count = reader.Count(resources);
        if (count < 1 || count > kMostEntries)
            reader.Complain(resources + " is no list of resources");
        for (int i = 1; i <= count && i <= kMostEntries; ++i)
            request.resources.push_back(ReadResource(reader, Indexed(resources, i)));
    }
    reason = reader.Reason();
    return reason.empty();
}

}  // namespace ClipVault
