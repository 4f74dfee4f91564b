#include "station/Import/PhotographTime.h"

#include "station/Clock.h"

#include <libexif/exif-data.h>

#include <array>
#include <chrono>
#include <memory>
#include <string_view>
#include <system_error>

namespace Station {
namespace {

std::optional<std::int64_t> ReadTag(ExifData* data, ExifIfd section, ExifTag tag)
{
    ExifEntry* entry = exif_content_get_entry(data->ifd[section], tag);
    if (entry == nullptr || entry->format != EXIF_FORMAT_ASCII || entry->data == nullptr)
        return std::nullopt;
    std::string_view text(reinterpret_cast<const char*>(entry->data), entry->size);
    return ParsePhotographTime(text.substr(0, text.find('\0')));
}

}  // namespace

std::optional<std::int64_t> TimeFromExif(const std::string& bytes)
{
    const std::unique_ptr<ExifData, decltype(&exif_data_unref)> data(
        exif_data_new_from_data(reinterpret_cast<const unsigned char*>(bytes.data()),
                                static_cast<unsigned>(bytes.size())),
        exif_data_unref);
    if (data == nullptr)
        return std::nullopt;
    if (const auto taken = ReadTag(data.get(), EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_ORIGINAL))
        return taken;
    return ReadTag(data.get(), EXIF_IFD_0, EXIF_TAG_DATE_TIME);
}

std::int64_t TimeFromFile(const std::filesystem::path& file)
{
    std::error_code error;
    const auto written = std::filesystem::last_write_time(file, error);
    if (error)
        return 0;
    // The two clocks have different origins; their distance is taken now.
    const auto age = std::filesystem::file_time_type::clock::now() - written;
    const auto moment = std::chrono::system_clock::now() -
                        std::chrono::duration_cast<std::chrono::system_clock::duration>(age);
    return std::chrono::duration_cast<std::chrono::seconds>(
               (moment + std::chrono::milliseconds(500)).time_since_epoch())
        .count();
}

}  // namespace Station
