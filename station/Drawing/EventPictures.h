#pragma once

#include "station/Data/Store.h"

#include <QImage>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <list>
#include <mutex>
#include <string>

namespace Station {

// The pictures of events: photographs from the data folder, and scenes that are drawn when they are first
// asked for and kept on disk from then on. Any thread, once Lettering has its letters.
class EventPictures
{
public:
    explicit EventPictures(const std::filesystem::path& data);

    // The bytes of the picture's file; false, with the reason in words, if a stored one can't be read.
    bool Get(const Event& event, std::string& bytes, std::string& reason);
    // One picture, kept in memory, for measurements.
    const std::string& Synthetic();

    // The drawn picture as JPEG; the same for the same event.
    std::string Draw(const Event& event);

private:
    struct EmptyScene
    {
        std::string key;
        QImage image;
    };

    // Under the drawing lock.
    const QImage& SceneOf(const Event& event);
    void Keep(const std::filesystem::path& file, const std::string& bytes);

    const std::filesystem::path stored_;
    const std::filesystem::path drawn_;
    std::atomic<std::uint64_t> kept_bytes_{0};
    std::atomic<std::uint64_t> next_name_{0};
    // One thread draws at a time: painters share caches inside of Qt. Encoding, the longer part, needs no
    // lock.
    std::mutex drawing_;
    std::list<EmptyScene> scenes_;  // the last used first
    std::once_flag synthetic_once_;
    std::string synthetic_;
};

// Folder of the drawn pictures that are kept.
std::filesystem::path DrawnPictureFolder(const std::filesystem::path& data);

}  // namespace Station
