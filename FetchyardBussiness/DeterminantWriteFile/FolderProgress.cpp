#include "FetchyardBussiness/DeterminantWriteFile/FolderProgress.h"

#include "ZellBase/FileSystem.h"

#include <cmath>
#include <vector>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;

bool AddFolderProgress(const std::string& folder, ZellTaskKit::CDownloadProgress& progress,
                       const FileWeight& weight)
{
    constexpr double bytes_in_kilobyte = 1024.0;
    FileSystem::SearchFileParam search;
    search.folder = folder;
    search.recursive = true;
    search.with_folders = false;
    std::vector<FileSystem::FileInfo> files;
    if (FileSystem::GetFilesInDir(search, files) != 0)
        return false;
    unsigned long long kilobytes = progress.GetVal_finished_size();
    for (const FileSystem::FileInfo& file : files) {
        const double size = std::ceil(static_cast<double>(file.size) / bytes_in_kilobyte);
        kilobytes += static_cast<unsigned long long>(std::llround(size)) * (weight ? weight(file.path) : 1);
    }
    progress.SetVal_finished_size(kilobytes);
    return true;
}

}  // namespace FetchyardBussiness
