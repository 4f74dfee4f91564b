#include "ZellPictureLoader/PictureLoader.h"

namespace ZellPictureLoader {

CImgUrlKey::CImgUrlKey() = default;
CImgUrlKey::CImgUrlKey(const CImgUrlKey&) = default;
CImgUrlKey& CImgUrlKey::operator=(const CImgUrlKey&) = default;
CImgUrlKey::~CImgUrlKey() = default;

void CImgUrlKey::SetValstrImageUrl(const std::string& url)
{
    str_image_url_ = url;
}
std::string CImgUrlKey::GetValstrImageUrl() const
{
    return str_image_url_;
}

void CImgUrlKey::SetValstr_request(const std::string& query)
{
    str_request_ = query;
}
std::string CImgUrlKey::GetValstr_request() const
{
    return str_request_;
}

void CImgUrlKey::SetValb_save_cache(const bool& save)
{
    b_save_cache_ = save;
}
bool CImgUrlKey::GetValb_save_cache() const
{
    return b_save_cache_;
}

void CImgUrlKey::SetValidWorkStation(const unsigned int& id)
{
    id_work_station_ = id;
}
unsigned int CImgUrlKey::GetValidWorkStation() const
{
    return id_work_station_;
}

void CImgUrlKey::SetValurl_type(const Type& type)
{
    url_type_ = type;
}
CImgUrlKey::Type CImgUrlKey::GetValurl_type() const
{
    return url_type_;
}

void CImgUrlKey::SetValaccess_type(const AccessType& type)
{
    access_type_ = type;
}
CImgUrlKey::AccessType CImgUrlKey::GetValaccess_type() const
{
    return access_type_;
}

void CImgUrlKey::SetValperson_id(const unsigned int& id)
{
    person_id_ = id;
}
unsigned int CImgUrlKey::GetValperson_id() const
{
    return person_id_;
}

void CImgUrlKey::SetValdevice_id(const unsigned int& id)
{
    device_id_ = id;
}
unsigned int CImgUrlKey::GetValdevice_id() const
{
    return device_id_;
}

void CImgUrlKey::SetValis_Thumbnail_image(const bool& thumbnail)
{
    is_thumbnail_image_ = thumbnail;
}
bool CImgUrlKey::GetValis_Thumbnail_image() const
{
    return is_thumbnail_image_;
}

CImageSyncParam::CImageSyncParam() = default;
CImageSyncParam::~CImageSyncParam() = default;

}  // namespace ZellPictureLoader
