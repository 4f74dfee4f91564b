#pragma once

#include "ZellAssetBook/WaterMark.h"

#include <string>

// The file in which a person configures the platform's watermark: "watermark.json" in the client's data
// folder.
//
//   {
//     "enable": true,                 burn the watermark into exported videos
//     "adapt_color": false,           light or dark by the picture below, in place of the colour
//     "user_name": true,              the lines, in this order: who exports,
//     "date_time": true,              when,
//     "custom_content": "",           and a text of one's own, if "custom" is true
//     "custom": false,
//     "color": "#FFFFFF",             red, green and blue
//     "font_size": 30,                1 to 1000, height of a line
//     "transparency": 70,             0 opaque to 100 invisible
//     "rotation_angle": 20,           -360 to 360 degrees, against the clock
//     "space": 200,                   0 to 10000, between two copies
//     "bench_width": 1920,            1 to 100000, the size of picture that the sizes above are meant for
//     "bench_height": 1080
//   }
//
// A member that is left out has the value shown. A file with an unknown member or a value out of its range
// does not count at all, and the log says what is wrong with it.
namespace ZellAssetBook {

// UTF-8.
ZELLASSETBOOK_API std::string WaterMarkFilePath();
// False, with the reason in words and the defaults in watermark, if the file can't be read or is wrong. A
// file that does not exist is no failure.
ZELLASSETBOOK_API bool LoadWaterMark(const std::string& path, CWaterMark& watermark, std::string& reason);
// Writes all members, for a person to edit.
ZELLASSETBOOK_API bool SaveWaterMark(const std::string& path, const CWaterMark& watermark,
                                     std::string& reason);

}  // namespace ZellAssetBook
