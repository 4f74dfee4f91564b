#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ClipVault {

// Seconds since 1970; the end is not part of it.
struct ClipTime
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

// One camera or device of a request.
struct ClipResource
{
    std::string resource_id;
    std::string site_id;
    unsigned int site = 0;
    bool is_camera_number = false;
    std::vector<ClipTime> times;
    std::string file_name;  // without an extension
};

// What a request asks for.
struct ClipRequest
{
    std::string guid;  // may be empty
    int format = 0;    // 2 mp4, 1 avi, others mp4 without an extension
    std::string password;
    std::string folder;  // with a final separator
    bool has_snapshot = false;
    bool is_stamped_later = false;
    std::vector<ClipResource> resources;

    const char* Extension() const;
};

// Reads the JSON of a request. False, with the reason in words, if something is missing or of the wrong kind.
bool ReadRequest(const std::string& json, ClipRequest& request, std::string& reason);

}  // namespace ClipVault
