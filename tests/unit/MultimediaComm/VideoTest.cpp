#include "VideoTest.h"

#include "ZellBaseHost/LogHost.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <filesystem>

namespace fs = std::filesystem;
using Zell::MultimediaComm::CWaterMarkParam;
using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayErr;
using Zell::MultimediaComm::InfoOverlayLineArray;

VideoTest::VideoTest()
{
    ZellClientHost::ClientSettings settings;
    settings.data_path = DataFolder();
    ZellClientHost::SetClientSettings(settings);
    Zell::Base::details::SetLogFile(File("log.txt"), 3);
    Zell::Base::details::SetLogListener([log = log_](int level, const std::string&, const std::string& text) {
        const std::lock_guard<std::mutex> lock(log->mutex);
        log->lines.push_back(std::to_string(level) + " " + text);
    });
}

VideoTest::~VideoTest()
{
    Zell::Base::details::SetLogListener({});
    Zell::Base::details::SetLogFile("", 5);
}

std::vector<std::string> VideoTest::LogLines()
{
    Zell::Base::details::FlushLog();
    const std::lock_guard<std::mutex> lock(log_->mutex);
    return log_->lines;
}

std::vector<std::string> VideoTest::WorkFiles() const
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(DataFolder() + "/video-work", error);
         !error && entry != fs::directory_iterator(); entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

std::vector<std::string> VideoTest::HiddenFiles() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.Path())) {
        const std::string name = entry.path().filename().string();
        if (name.front() == '.')
            names.push_back(name);
    }
    return names;
}

InfoOverlayLineArray VideoTest::Line(const std::string& text, int x, int y, int size)
{
    InfoOverlayLineArray line;
    line.SetContentStr(text);
    line.SetFontSize(size);
    line.SetColorRGB({255, 255, 255});
    line.SetPosX(x);
    line.SetPosY(y);
    return line;
}

CWaterMarkParam VideoTest::Watermark(const std::string& text)
{
    CWaterMarkParam watermark;
    watermark.SetVal_b_enable(true);
    watermark.SetVal_water_mark_contents({text});
    watermark.SetVal_bench_width(320);
    watermark.SetVal_bench_height(240);
    watermark.SetVal_font_size(20);
    watermark.SetVal_space(20);
    return watermark;
}

InfoOverlayErr VideoTest::Stamp(const std::string& source, const std::string& target)
{
    InfoOverlay overlay;
    overlay.SetInfoOverlayType(0);
    overlay.SetInfoOverlayLineArrayType(line_array_type_);
    overlay.SetInfoOverlayLineArrayVec(lines_);
    overlay.SetWaterMarkParam(watermark_);
    overlay.SetSrcFilePathStr(source);
    overlay.SetDstFilePathStr(target);
    return overlay.StartCovert();
}
