#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace FetchyardClient {

// A file that a request asks for.
struct ExpectedFile
{
    // What it must open as.
    enum class Content {
        kBySuffix,  // as its suffix says
        kPicture,   // a picture, whatever its name
        kVideo,     // a video, whatever its name; a protected one only shows that it is protected
        kAny,       // it is there
    };

    std::string path;
    bool is_report = false;  // the report or the archive, as against a file beside it
    std::string password;    // of an archive or a video
    Content content = Content::kBySuffix;
};

// The files that an export leaves when all goes well. name and folder are those of the task: name of the
// report or the archive without suffix, and export folder with its final "/". An export that is packed, as
// person pictures always are, leaves its archive alone.
std::vector<ExpectedFile> ExpectedFiles(const nlohmann::json& request, const std::string& name,
                                        const std::string& folder);

}  // namespace FetchyardClient
