#include "FetchyardBussiness/DeterminantWriteFile/Compress.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Folders.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"
#include "ZellTaskKit/ClientServices.h"

#include <array>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;

// The archive is made in the scratch folder, which the client keeps ready, and then takes the place of the
// folder's content.
bool CDeterminantWriteFileTask::DoCompressWork(const std::string& name, const std::string& path,
                                               const std::string& password)
{
    const std::string zip_tmp = ZellTaskKit::CFrameSystemConfigMgr::Instance().GetClientDataPublicPath() +
                                "Fetchyard/" + name + ".zip";
    if (Compress::CompressFolder(zip_tmp, path, password) != Compress::kDone) {
        LogInfo("compress zip failed. file_new_path =%s", zip_tmp.c_str());
        return false;
    }
    FileSystem::RemoveDirRecursively(Zell::Base::UTF8ToLocal(path).c_str());
    if (!EnsureFolder(path)) {
        Zell::Base::Error::SetLastError(OwnError(kErrorFolder));
        LogError("  DoCompressWork create file path =%s  failed.  task failed", path.c_str());
        return false;
    }
    std::string final_path = path + name + ".zip";
    if (!Zell::Base::IsUtf8(final_path))
        final_path = Zell::Base::LocalToUTF8(final_path);
    if (FileSystem::CopyFileW(zip_tmp.c_str(), final_path.c_str(), 0) != 0)
        LogError("copy zip failed. file_new_path =%s", final_path.c_str());
    FileSystem::DeleteFileW(zip_tmp.c_str());
    return false;
}

std::string CDeterminantWriteFileTask::GetPdfExePath()
{
    std::array<char, 260> buffer = {};
    if (FileSystem::GetCurExePath(buffer.data(), static_cast<int>(buffer.size())) != 0) {
        LogError("Get exe path failed. %s", buffer.data());
        return {};
    }
    return buffer.data();
}

}  // namespace FetchyardBussiness
