#include "station/Recording/CutFiles.h"

#include "station/Recording/Recordings.h"

#include <string>
#include <system_error>

namespace Station {

CutFiles::CutFiles(const std::filesystem::path& data) : folder_(CutFolder(data))
{
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
}

std::filesystem::path CutFiles::NewFile()
{
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    return folder_ / ("cut-" + std::to_string(++next_));
}

}  // namespace Station
