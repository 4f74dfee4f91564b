#pragma once

#include "StationProcess.h"
#include "tests/unit/TempFolder.h"
#include "Tools.h"
#include "VideoLook.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

namespace SystemTest {

// The seeded minute of each camera: 2026-01-31T23:59:00Z to midnight, a key frame every two seconds.
inline constexpr std::int64_t kMinute = 1769903940;
inline constexpr std::int64_t kMidnight = kMinute + 60;

// A station with recordings, and a folder for what it answers.
class RecordingsFixture : public testing::Test
{
protected:
    std::string Recordings() const { return station_.DataFolder() + "/recordings"; }

    httplib::Result Get(const std::string& query) const
    {
        return station_.Connect()->Get("/api/v1/recordings" + query);
    }

    static std::string ClipQuery(int camera, const std::string& begin, const std::string& end,
                                 const std::string& format = "mp4")
    {
        return "/" + std::to_string(camera) + "/clip?begin=" + begin + "&end=" + end + "&format=" + format;
    }
    static std::string ClipQuery(int camera, std::int64_t begin, std::int64_t end)
    {
        return ClipQuery(camera, std::to_string(begin), std::to_string(end));
    }

    // Fetches a cut into a file and tells the path; the header with the spans goes to spans_.
    std::string Clip(const std::string& query, const std::string& name = "clip.mp4")
    {
        const auto answer = Get(query);
        if (!answer || answer->status != 200)
            throw std::runtime_error("no cut: " + (answer ? answer->body : std::string("no answer")));
        spans_ = answer->get_header_value("Fetchyard-Clip-Spans");
        headers_ = answer->headers;
        WriteBytes(folder_.File(name), answer->body);
        return folder_.File(name);
    }

    ProgramResult Import(const std::string& file, int camera, const std::string& begin) const
    {
        return RunStation({"import", QString::fromStdString(file), "--data",
                           QString::fromStdString(station_.DataFolder()), "--camera", QString::number(camera),
                           "--begin", QString::fromStdString(begin)});
    }
    void MustImport(const std::string& file, int camera, std::int64_t begin) const
    {
        const ProgramResult result = Import(file, camera, std::to_string(begin));
        ASSERT_EQ(result.exit_code, 0) << result.errors;
    }

    // The seeded file of the street, which is what camera 1 recorded.
    std::string StreetFile() const { return Recordings() + "/street-20260131-235900.mp4"; }

    StationProcess station_;
    TempFolder folder_;
    std::string spans_;
    httplib::Headers headers_;
};

}  // namespace SystemTest
