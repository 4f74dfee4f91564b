#pragma once

#include "Clips.h"
#include "MultimediaComm/InfoOverlay.h"
#include "MultimediaComm/VideoFormatTransfer.h"
#include "unit/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

// A client with a data folder of its own, and the lines that the log got.
class VideoTest : public testing::Test
{
protected:
    VideoTest();
    ~VideoTest() override;

    std::string File(const std::string& name) const { return folder_.File(name); }
    std::string DataFolder() const { return folder_.File("data"); }
    // Everything that lies in the work folder, and in the folder of the test beside "data".
    std::vector<std::string> WorkFiles() const;
    std::vector<std::string> HiddenFiles() const;
    std::vector<std::string> LogLines();

    static Zell::MultimediaComm::InfoOverlayLineArray Line(const std::string& text, int x = 0, int y = 0,
                                                           int size = 40);
    static Zell::MultimediaComm::CWaterMarkParam Watermark(const std::string& text);
    Zell::MultimediaComm::InfoOverlayErr Stamp(const std::string& source, const std::string& target);

    std::vector<Zell::MultimediaComm::InfoOverlayLineArray> lines_;
    Zell::MultimediaComm::InfoOverLineArrayType line_array_type_ = 0;
    Zell::MultimediaComm::CWaterMarkParam watermark_;

private:
    struct Lines
    {
        std::mutex mutex;
        std::vector<std::string> lines;
    };

    TempFolder folder_;
    std::shared_ptr<Lines> log_ = std::make_shared<Lines>();
};
