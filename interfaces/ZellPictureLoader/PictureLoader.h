#pragma once

#include "ZellBase/Error.h"
#include "ZellPictureLoader/Export.h"

#include <memory>
#include <string>

namespace ZellPictureLoader {

// Starts and stops the library. Calls are counted; the last of as many stops as starts ends its threads and
// empties the cache, and whoever waits for a picture then gets the error (23, 6). Further stops do nothing.
// The text is the folder of the cache, empty for "PictureCache/" in the client's data folder; several clients
// may share one, and a later start of a running library keeps the folder of the first. False: the folder
// can't be made, and the call does not count. Any thread.
ZELLPICTURELOADER_API bool InitZellPictureLoader(const std::string& cache_folder);
ZELLPICTURELOADER_API void UninitZellPictureLoader();

// What to fetch.
class ZELLPICTURELOADER_API CImgUrlKey
{
public:
    // Kind of address: 0 and 1 an ordinary one, 4 a dock station's file, 17 a device's.
    enum Type : int {};
    // How the loader gets at the address: 0 by itself.
    enum AccessType : int {};

    CImgUrlKey();
    CImgUrlKey(const CImgUrlKey&);
    CImgUrlKey& operator=(const CImgUrlKey&);
    virtual ~CImgUrlKey();

    void SetValstrImageUrl(const std::string& url);
    std::string GetValstrImageUrl() const;
    void SetValstr_request(const std::string& query);  // part of the url behind its "?"
    std::string GetValstr_request() const;
    void SetValb_save_cache(const bool& save);
    bool GetValb_save_cache() const;
    void SetValidWorkStation(
        const unsigned int& id);  // site that serves the picture; -1 as 0, the client's own
    unsigned int GetValidWorkStation() const;
    void SetValurl_type(const Type& type);
    Type GetValurl_type() const;
    void SetValaccess_type(const AccessType& type);
    AccessType GetValaccess_type() const;
    void SetValperson_id(const unsigned int& id);
    unsigned int GetValperson_id() const;
    void SetValdevice_id(const unsigned int& id);
    unsigned int GetValdevice_id() const;
    void SetValis_Thumbnail_image(const bool& thumbnail);
    bool GetValis_Thumbnail_image() const;

private:
    std::string str_image_url_;
    std::string str_request_;
    bool b_save_cache_ = false;
    unsigned int id_work_station_ = 0;
    Type url_type_ = static_cast<Type>(0);
    AccessType access_type_ = static_cast<AccessType>(0);
    unsigned int person_id_ = 0;
    unsigned int device_id_ = 0;
    bool is_thumbnail_image_ = false;
};

// One fetch into a file.
class ZELLPICTURELOADER_API CImageSyncParam
{
public:
    CImageSyncParam();
    virtual ~CImageSyncParam();

    std::shared_ptr<CImgUrlKey> image_param;
    std::string save_full_name;  // path of the file to write; its folder must be there
};

// Fetches pictures one at a time for its owner. Objects share the library's cache and connections. One object
// is used by one thread at a time.
class ZELLPICTURELOADER_API CImageMultiSyncLoader
{
public:
    CImageMultiSyncLoader();
    CImageMultiSyncLoader(const CImageMultiSyncLoader&) = delete;
    CImageMultiSyncLoader& operator=(const CImageMultiSyncLoader&) = delete;
    virtual ~CImageMultiSyncLoader();

    // Fetch the picture and wait for it. True: it is in save_full_name (replaced whole, a copy of what the
    // cache holds) or in data, and error is (0, 0). False: error says why, and the target is as it was:
    // module 21 holds a HTTP status, 22 a code of libcurl (3 for an address that is empty or missing), 23
    // says that the answer was empty (1) or too large (2), the site is unknown (4), the library is not
    // started (5) or was stopped meanwhile (6), and 0 that the disk failed. Whether the answer is a picture
    // is not looked at.
    bool SyncLoadImage(Zell::Base::Error::ErrorCode& error, const std::shared_ptr<CImageSyncParam>& param);
    bool SyncLoadImage(Zell::Base::Error::ErrorCode& error, std::string& data,
                       const std::shared_ptr<CImgUrlKey>& key);
};

}  // namespace ZellPictureLoader
