#include "ZellAssetBook/SystermConfigManager.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

ZELL_SINGLETON_DEFINE(ZellAssetBook::COXTSystermConfigManager)

namespace ZellAssetBook {

CWaterMark COXTSystermConfigManager::GetWaterMarkConfig()
{
    fakes::Call("GetWaterMarkConfig", "");
    const fakes::WatermarkConfig& script = fakes::TheScript().watermark;
    CWaterMark watermark;
    watermark.SetVal_b_enable(script.is_enabled);
    watermark.SetVal_b_enable_autoadaptcolor(script.is_adapting);
    watermark.SetVal_b_enable_username(script.has_user_name);
    watermark.SetVal_b_enable_datatime(script.has_time);
    watermark.SetVal_b_enable_custom_content(script.has_custom_content);
    watermark.SetVal_custom_content(script.custom_content);
    watermark.SetVal_color(script.red, script.green, script.blue);
    watermark.SetVal_font_size(script.font_size);
    watermark.SetVal_transparency(script.transparency);
    watermark.SetVal_rotation_angle(script.rotation_angle);
    watermark.SetVal_space(script.space);
    watermark.SetVal_bench_width(script.bench_width);
    watermark.SetVal_bench_height(script.bench_height);
    return watermark;
}

}  // namespace ZellAssetBook
