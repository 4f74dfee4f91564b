#include "ReportFolder.h"

#include "ZellBaseHost/LogHost.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellOfficeKitHost/OfficeFolders.h"

#include <fstream>
#include <iterator>

namespace golden {

ReportFolder::ReportFolder()
{
    Zell::Base::details::SetLogFile(folder_.File("log"), 3);
    ZellClientHost::ClientSettings settings;
    settings.data_path = folder_.File("data/");
    settings.public_data_path = folder_.File("public/");
    ZellClientHost::SetClientSettings(settings);
    ZellOfficeKit::SetWorkFolder(folder_.File("work"));
    std::filesystem::create_directories(Path("out"));
}

std::size_t ReportFolder::Write(FetchyardBussiness::CExportReportDataToFileObject& writer, int type,
                                Report report) const
{
    std::size_t taken = 0;
    for (FetchyardLogical::ExportDataNode& node : report) {
        node.export_file_type = type;
        node.file_save_path = Out();
        node.work_station_id = 3;
        if (!writer.ExportDataToFile(node))
            break;
        ++taken;
    }
    return taken;
}

std::string Content(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace golden
