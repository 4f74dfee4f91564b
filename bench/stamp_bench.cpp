// bench_stamp lines|watermark SOURCE TARGET: stamps a video with three lines of text, or with those and a
// tiled watermark, as an export does.
#include "MultimediaComm/InfoOverlay.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

using Zell::MultimediaComm::CWaterMarkParam;
using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayLineArray;

InfoOverlayLineArray Line(const std::string& text, int x_type, int y_type)
{
    InfoOverlayLineArray line;
    line.SetContentStr(text);
    line.SetFontSize(40);
    line.SetColorRGB({255, 255, 255});
    line.SetPosXType(x_type);
    line.SetPosX(20);
    line.SetPosYType(y_type);
    line.SetPosY(20);
    return line;
}

std::vector<InfoOverlayLineArray> Lines()
{
    std::vector<InfoOverlayLineArray> lines = {Line("Camera 3, main gate", 0, 0),
                                               Line("2026-01-31 23:59:59", 1, 1), Line("Alarm", 2, 2)};
    lines.back().SetBeginMilliSecond(5000);
    lines.back().SetEndMilliSecond(15000);
    return lines;
}

CWaterMarkParam Watermark()
{
    CWaterMarkParam watermark;
    watermark.SetVal_b_enable(true);
    watermark.SetVal_water_mark_contents({"operator", "2026/01/31 23:59:59"});
    watermark.SetVal_font_size(30);
    watermark.SetVal_transparency(70);
    watermark.SetVal_space(80);
    watermark.SetVal_bench_width(1280);
    watermark.SetVal_bench_height(720);
    return watermark;
}

}  // namespace

int main(int count, char** words)
{
    if (count != 4)
        return 2;
    const std::string target = words[3];
    ZellClientHost::ClientSettings settings;
    settings.data_path = target.substr(0, target.rfind('/') + 1) + "data/";
    ZellClientHost::SetClientSettings(settings);
    InfoOverlay overlay;
    overlay.SetInfoOverlayType(0);
    overlay.SetInfoOverlayLineArrayVec(Lines());
    if (words[1] == std::string("watermark"))
        overlay.SetWaterMarkParam(Watermark());
    overlay.SetSrcFilePathStr(words[2]);
    overlay.SetDstFilePathStr(target);
    return overlay.StartCovert() == Zell::MultimediaComm::InfoOverlayDone ? 0 : 1;
}
