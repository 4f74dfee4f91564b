#include "ZellPictureLoader/PictureLoader.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <fstream>

namespace ZellPictureLoader {
namespace {

// All that was set on the key, in the order of its fields; what has its default is left out.
std::string Shown(const CImgUrlKey& key)
{
    std::string text = "type=" + std::to_string(key.GetValurl_type()) + " url=" + key.GetValstrImageUrl() +
                       " request=" + key.GetValstr_request() +
                       " cache=" + (key.GetValb_save_cache() ? "1" : "0") +
                       " site=" + std::to_string(static_cast<int>(key.GetValidWorkStation()));
    if (key.GetValaccess_type() != 0)
        text += " access=" + std::to_string(key.GetValaccess_type());
    if (key.GetValperson_id() != 0)
        text += " person=" + std::to_string(static_cast<int>(key.GetValperson_id()));
    if (key.GetValdevice_id() != 0)
        text += " device=" + std::to_string(key.GetValdevice_id());
    if (key.GetValis_Thumbnail_image())
        text += " thumbnail";
    return text;
}

fakes::PictureAnswer AnswerFor(const std::string& url)
{
    const auto& pictures = fakes::TheScript().pictures;
    const auto found = pictures.find(url);
    return found == pictures.end() ? fakes::PictureAnswer{{}, "picture"} : found->second;
}

bool Load(Zell::Base::Error::ErrorCode& error, std::string& data, const CImgUrlKey& key,
          const std::string& target)
{
    fakes::PictureAnswer answer = AnswerFor(key.GetValstrImageUrl());
    if (!fakes::Call("SyncLoadImage", Shown(key) + " -> " + target))
        answer.error = Zell::Base::Error::ErrorCode(2, 21, 404);
    error = answer.error;
    data = answer.bytes;
    return error.iFirstCode == 0 && error.iSecondCode == 0;
}

}  // namespace

bool InitZellPictureLoader(const std::string& cache_folder)
{
    return fakes::Call("InitZellPictureLoader", "\"" + cache_folder + "\"");
}

void UninitZellPictureLoader()
{
    fakes::Call("UninitZellPictureLoader", "");
}

CImageMultiSyncLoader::CImageMultiSyncLoader()
{
    fakes::Call("new CImageMultiSyncLoader", "");
}

CImageMultiSyncLoader::~CImageMultiSyncLoader() = default;

bool CImageMultiSyncLoader::SyncLoadImage(Zell::Base::Error::ErrorCode& error,
                                          const std::shared_ptr<CImageSyncParam>& param)
{
    std::string data;
    if (!Load(error, data, *param->image_param, param->save_full_name))
        return false;
    std::ofstream(param->save_full_name, std::ios::binary) << data;
    return true;
}

bool CImageMultiSyncLoader::SyncLoadImage(Zell::Base::Error::ErrorCode& error, std::string& data,
                                          const std::shared_ptr<CImgUrlKey>& key)
{
    return Load(error, data, *key, "memory");
}

}  // namespace ZellPictureLoader
