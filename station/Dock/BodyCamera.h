#pragma once

#include <cstdint>
#include <string>

// What a camera on a person's chest records, as the bytes of files. The same seed gives the same bytes.
namespace Station {

std::string BodyCameraPicture(std::uint64_t seed);
// Motion JPEG: one picture behind the other, on which somebody comes nearer.
std::string BodyCameraVideo(std::uint64_t seed);
// A WAV file with some seconds of tones.
std::string BodyCameraSound(std::uint64_t seed);

}  // namespace Station
