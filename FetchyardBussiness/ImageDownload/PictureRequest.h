#pragma once

#include "ZellBase/Error.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <memory>
#include <string>

namespace FetchyardBussiness {

// The key of a picture that an export or a report names by its address. A device's address, told by "QUERN"
// in it, is cut at its "?" and never cached; any other goes out whole and is cached.
std::shared_ptr<ZellPictureLoader::CImgUrlKey> MakePictureKey(const std::string& address);
std::shared_ptr<ZellPictureLoader::CImgUrlKey> MakePictureKey(const std::string& address,
                                                              unsigned int work_station);

// Fetches into a file and waits, with a loader that is made at the first need. On false, error says why.
bool FetchPictureToFile(std::shared_ptr<ZellPictureLoader::CImageMultiSyncLoader>& loader,
                        const std::shared_ptr<ZellPictureLoader::CImgUrlKey>& key, const std::string& target,
                        Zell::Base::Error::ErrorCode& error);
// The same into memory.
bool FetchPictureToMemory(std::shared_ptr<ZellPictureLoader::CImageMultiSyncLoader>& loader,
                          const std::shared_ptr<ZellPictureLoader::CImgUrlKey>& key, std::string& data,
                          Zell::Base::Error::ErrorCode& error);

}  // namespace FetchyardBussiness
