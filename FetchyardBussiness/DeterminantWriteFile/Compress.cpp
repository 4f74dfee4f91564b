#include "FetchyardBussiness/DeterminantWriteFile/Compress.h"

#include "FetchyardBussiness/Folders.h"
#include "FetchyardBussiness/Log.h"
#include "NQX/NQX.h"
#include "ZellBase/Util.h"

namespace Compress {

using Zell::Base::StringUtil::str_fmt;

int CompressFolder(std::string zip_path, std::string folder, const std::string& password)
{
    if (NQX_AccessFile("7za.exe", 0) == -1) {
        LogError("[Compress::CompressFolder] 7Za Execute Not Exist");
        return kArchiverMissing;
    }
    if (!FetchyardBussiness::EnsureFolder(folder))
        LogError(" create file pic_down_path_dir =%s  failed.  task failed", folder.c_str());
    const std::string source = str_fmt("%s%s/%s%s", "\"", folder.c_str(), "*", "\"");
    const std::string target = str_fmt("%s%s%s", "\"", zip_path.c_str(), "\"");
    std::string command = "7za.exe a -tzip ";
    if (!password.empty())
        command += "-p\"" + password + "\" ";
    command += target + " " + source;
    // The line may hold a password, so it is not shown.
    LogInfo("Excute command:");
    if (Zell::Base::ProcessUtil::LaunchApp(Zell::Base::UTF8ToLocal(command), true, true, nullptr))
        return kDone;
    LogError("[Compress::CompressFolder] Compress Execute Fail");
    return kArchiverFailed;
}

}  // namespace Compress
