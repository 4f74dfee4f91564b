#include "MemoryPictures.h"

#include "ZellPictureLoader/PictureLoader.h"

#include <QBuffer>
#include <QImage>

#include <fstream>

namespace FetchyardBench {

const std::string& Picture()
{
    static const auto* const picture = [] {
        QImage image(1280, 720, QImage::Format_RGB32);
        unsigned state = 1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                state = state * 1664525u + 1013904223u;
                const int noise = static_cast<int>(state >> 28);
                image.setPixel(x, y, qRgb((x / 8 + noise) & 255, (y / 4 + noise) & 255, (x + y) / 8 & 255));
            }
        }
        QBuffer buffer;
        image.save(&buffer, "JPG", 85);
        return new std::string(buffer.data().toStdString());
    }();
    return *picture;
}

void WritePicture(const std::string& path)
{
    std::ofstream(path, std::ios::binary) << Picture();
}

}  // namespace FetchyardBench

// In place of the sibling's own.
namespace ZellPictureLoader {

CImageMultiSyncLoader::CImageMultiSyncLoader() = default;
CImageMultiSyncLoader::~CImageMultiSyncLoader() = default;

bool CImageMultiSyncLoader::SyncLoadImage(Zell::Base::Error::ErrorCode& error,
                                          const std::shared_ptr<CImageSyncParam>& param)
{
    error = {};
    FetchyardBench::WritePicture(param->save_full_name);
    return true;
}

bool CImageMultiSyncLoader::SyncLoadImage(Zell::Base::Error::ErrorCode& error, std::string& data,
                                          const std::shared_ptr<CImgUrlKey>& /*key*/)
{
    error = {};
    data = FetchyardBench::Picture();
    return true;
}

}  // namespace ZellPictureLoader
