#include "ScriptedPictures.h"

#include "ZellPictureLoader/PictureLoader.h"

#include <QBuffer>
#include <QImage>

#include <fstream>
#include <utility>

namespace {

std::function<void(int)> action;
int fetches = 0;

std::string GoodPicture()
{
    QImage image(200, 150, QImage::Format_RGB32);
    image.fill(0x336699);
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data().toStdString();
}

bool Load(const std::string& address, std::string& data, Zell::Base::Error::ErrorCode& error)
{
    ++fetches;
    if (action)
        action(fetches);
    error = {};
    if (address.rfind("/good", 0) == 0)
        data = GoodPicture();
    else if (address.rfind("/broken", 0) == 0)
        data = "no picture";
    else
        error = {2, 21, 404};
    return error.iFirstCode == 0;
}

}  // namespace

namespace golden {

void OnFetch(std::function<void(int)> new_action)
{
    action = std::move(new_action);
    fetches = 0;
}

}  // namespace golden

// In front of the sibling's in the linker's order.
namespace ZellPictureLoader {

CImageMultiSyncLoader::CImageMultiSyncLoader() = default;
CImageMultiSyncLoader::~CImageMultiSyncLoader() = default;

bool CImageMultiSyncLoader::SyncLoadImage(Zell::Base::Error::ErrorCode& error,
                                          const std::shared_ptr<CImageSyncParam>& param)
{
    std::string data;
    if (!Load(param->image_param->GetValstrImageUrl(), data, error))
        return false;
    std::ofstream(param->save_full_name, std::ios::binary) << data;
    return true;
}

bool CImageMultiSyncLoader::SyncLoadImage(Zell::Base::Error::ErrorCode& error, std::string& data,
                                          const std::shared_ptr<CImgUrlKey>& key)
{
    return Load(key->GetValstrImageUrl(), data, error);
}

}  // namespace ZellPictureLoader
