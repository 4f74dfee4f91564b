#pragma once

#include "ZellPictureLoader/PictureLoader.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

// Fetching ahead, for whoever knows which pictures will be asked for.
namespace ZellPictureLoader {

// Fetches the pictures into the cache over several connections, in the order of the list, behind those asked
// for earlier; keys that must not be cached are passed over. Returns at once. A picture that fails here fails
// only when it is asked for, and is then tried once more. What no longer fits the cache's bounds is not begun
// until room was made. Any thread.
ZELLPICTURELOADER_API void WarmPictures(const std::vector<std::shared_ptr<CImgUrlKey>>& keys);

}  // namespace ZellPictureLoader
