#include "FetchyardBussiness/FileDownload/FileExportParam.h"

namespace FetchyardBussiness {

FileExportParam::FileExportParam() = default;
FileExportParam::FileExportParam(const FileExportParam& other) = default;
FileExportParam& FileExportParam::operator=(const FileExportParam& other) = default;
FileExportParam::~FileExportParam() = default;

}  // namespace FetchyardBussiness
