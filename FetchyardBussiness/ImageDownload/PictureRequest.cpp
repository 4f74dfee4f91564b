#include "FetchyardBussiness/ImageDownload/PictureRequest.h"

namespace FetchyardBussiness {

using ZellPictureLoader::CImageMultiSyncLoader;
using ZellPictureLoader::CImageSyncParam;
using ZellPictureLoader::CImgUrlKey;

namespace {

constexpr char kDeviceMark[] = "QUERN";
constexpr auto kOrdinaryAddress = static_cast<CImgUrlKey::Type>(1);
constexpr auto kDeviceAddress = static_cast<CImgUrlKey::Type>(17);

}  // namespace

std::shared_ptr<CImgUrlKey> MakePictureKey(const std::string& address)
{
    const std::size_t mark = address.find('?');
    const bool is_device = address.find(kDeviceMark) != std::string::npos;
    auto key = std::make_shared<CImgUrlKey>();
    key->SetValurl_type(is_device ? kDeviceAddress : kOrdinaryAddress);
    key->SetValstrImageUrl(is_device ? address.substr(0, mark) : address);
    // Without a "?" both parts are the whole address.
    key->SetValstr_request(mark == std::string::npos ? address : address.substr(mark + 1));
    key->SetValb_save_cache(!is_device);
    return key;
}

std::shared_ptr<CImgUrlKey> MakePictureKey(const std::string& address, unsigned int work_station)
{
    auto key = MakePictureKey(address);
    key->SetValidWorkStation(work_station);
    return key;
}

bool FetchPictureToFile(std::shared_ptr<CImageMultiSyncLoader>& loader,
                        const std::shared_ptr<CImgUrlKey>& key, const std::string& target,
                        Zell::Base::Error::ErrorCode& error)
{
    if (!loader)
        loader = std::make_shared<CImageMultiSyncLoader>();
    const auto request = std::make_shared<CImageSyncParam>();
    request->image_param = key;
    request->save_full_name = target;
    return loader->SyncLoadImage(error, request);
}

bool FetchPictureToMemory(std::shared_ptr<CImageMultiSyncLoader>& loader,
                          const std::shared_ptr<CImgUrlKey>& key, std::string& data,
                          Zell::Base::Error::ErrorCode& error)
{
    if (!loader)
        loader = std::make_shared<CImageMultiSyncLoader>();
    return loader->SyncLoadImage(error, data, key);
}

}  // namespace FetchyardBussiness
