#include "MultimediaComm/InfoOverlay.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "fakes/VideoFiles.h"

namespace Zell::MultimediaComm {
namespace {

std::string Shown(const CWaterMarkParam& watermark)
{
    std::string contents;
    for (const std::string& line : watermark.GetVal_water_mark_contents())
        contents += (contents.empty() ? "" : "|") + line;
    const auto number = [](int value) { return std::to_string(value); };
    return std::string(watermark.GetVal_b_enable() ? "on" : "off") +
           (watermark.GetVal_b_auto_adapt() ? " adapting" : "") + " [" + contents + "] color " +
           number(watermark.GetVal_r()) + "," + number(watermark.GetVal_g()) + "," +
           number(watermark.GetVal_b()) + " size " + number(watermark.GetVal_font_size()) + " transparency " +
           number(watermark.GetVal_transparency()) + " angle " + number(watermark.GetVal_rotation_angle()) +
           " space " + number(watermark.GetVal_space()) + " bench " + number(watermark.GetVal_bench_width()) +
           "x" + number(watermark.GetVal_bench_height());
}

}  // namespace

struct InfoOverlay::Run
{
};

void InfoOverlay::SetWaterMarkParam(const CWaterMarkParam& watermark)
{
    watermark_ = watermark;
    fakes::Call("SetWaterMarkParam", Shown(watermark));
}

void InfoOverlay::SetSrcFilePathStr(const std::string& path)
{
    source_ = path;
    fakes::Call("SetSrcFilePathStr", path);
}

void InfoOverlay::SetDstFilePathStr(const std::string& path)
{
    target_ = path;
    fakes::Call("SetDstFilePathStr", path);
}

bool InfoOverlay::IsHandleAvailable() const
{
    return fakes::Call("IsHandleAvailable", "");
}

InfoOverlayErr InfoOverlay::StartCovert()
{
    const bool succeeds = fakes::Call("StartCovert", "");
    const int scripted = fakes::NextResult(fakes::TheScript().stamp_results);
    const int result = succeeds ? scripted : InfoOverlayFailed;
    if (result == InfoOverlayDone)
        fakes::WriteVideo("stamped", source_, target_);
    return static_cast<InfoOverlayErr>(result);
}

void InfoOverlay::StopCovert()
{
    fakes::Call("StopCovert", "");
}

}  // namespace Zell::MultimediaComm
