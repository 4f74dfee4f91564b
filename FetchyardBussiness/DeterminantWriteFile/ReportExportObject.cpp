#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"

#include "FetchyardBussiness/ImageDownload/PictureRequest.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/FileSystem.h"
#include "ZellWidgets/ZellWidgets.h"

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;

namespace {

constexpr const char* kSuffixes[] = {".xlsx", ".csv", ".pdf", ".txt", ".html", ".7z"};
constexpr const char* kAlignments[] = {"left", "center", "right"};

template <std::size_t N>
std::string NameOf(const char* const (&names)[N], int number)
{
    if (number < 0 || static_cast<std::size_t>(number) >= N)
        return {};
    return names[number];
}

std::shared_ptr<ZellPictureLoader::CImgUrlKey> PictureKeyOf(const ExportDataNode& excel_data,
                                                            const ExportCell& cell)
{
    const unsigned int work_station = cell.work_station_id == ExportCell::kPageWorkStation
                                          ? excel_data.work_station_id
                                          : cell.work_station_id;
    return MakePictureKey(cell.cell_name, work_station);
}

}  // namespace

CExportReportDataToFileObject::CExportReportDataToFileObject() = default;
CExportReportDataToFileObject::~CExportReportDataToFileObject() = default;

bool CExportReportDataToFileObject::ExportDataToFile(const ExportDataNode& /*excel_data*/)
{
    return true;
}

void CExportReportDataToFileObject::SetTaskStopState(bool state)
{
    LogInfo("CExportReportDataToFileObject::SetTaskStopState  state = %d", state);
    stop_state_.store(state, std::memory_order_relaxed);
}

bool CExportReportDataToFileObject::WriteStrStreamToFile(const std::string& data,
                                                         const std::string& file_path)
{
    void* file =
        FileSystem::OpenFile(file_path.c_str(), FileSystem::kOpenAppend, FileSystem::kAttributesPlain);
    if (file == FileSystem::NoFile()) {
        LogError("Open file[%s] failed.", file_path.c_str());
        return false;
    }
    const char* bytes = data.data();
    if (bytes == nullptr) {
        FileSystem::CloseFile(file);
        LogError("Recevie data is empty, receive data: %s.", data.c_str());
        return false;
    }
    unsigned int written = 0;
    const auto size = static_cast<unsigned int>(data.size());
    const int result = FileSystem::WriteFile(file, const_cast<char*>(bytes), size, &written);
    FileSystem::CloseFile(file);
    if (result != 0) {
        LogError("Write data to file failed. file name: %s, receive data length: %d.", file_path.c_str(),
                 static_cast<int>(data.size()));
        return false;
    }
    return true;
}

std::string CExportReportDataToFileObject::GetFileSuffix(int type)
{
    return NameOf(kSuffixes, type);
}

std::string CExportReportDataToFileObject::GetAlignmentName(int text_location)
{
    return NameOf(kAlignments, text_location);
}

QString CExportReportDataToFileObject::ReportText(const std::string& text) const
{
    QString result = ZellWidgets::StringToQString(text, nullptr);
    // Most texts have no line feed, and looking at the bytes is cheaper than looking at the converted text.
    if (strip_line_feeds_ && text.find('\n') != std::string::npos)
        result.remove(QLatin1Char('\n'));
    return result;
}

QStringList CExportReportDataToFileObject::Texts(const std::vector<ExportCell>& cells) const
{
    QStringList texts;
    texts.reserve(static_cast<int>(cells.size()));
    for (const ExportCell& cell : cells)
        texts.append(ReportText(cell.cell_name));
    return texts;
}

QStringList CExportReportDataToFileObject::GetSheetTitleTexts(const ExportSheet& sheet) const
{
    return Texts(sheet.vec_titles);
}

QStringList CExportReportDataToFileObject::GetSheetColumnTexts(const ExportSheet& sheet) const
{
    return Texts(sheet.vec_columns);
}

QStringList CExportReportDataToFileObject::GetAllTitleTexts(const ExportDataNode& excel_data) const
{
    QStringList texts;
    for (const ExportSheet& sheet : excel_data.vec_sheets)
        texts += GetSheetTitleTexts(sheet);
    return texts;
}

QStringList CExportReportDataToFileObject::GetAllColumnTexts(const ExportDataNode& excel_data) const
{
    QStringList texts;
    for (const ExportSheet& sheet : excel_data.vec_sheets)
        texts += GetSheetColumnTexts(sheet);
    return texts;
}

QList<QStringList> CExportReportDataToFileObject::GetAllRowTexts(const ExportDataNode& excel_data) const
{
    QList<QStringList> rows;
    for (const ExportSheet& sheet : excel_data.vec_sheets) {
        for (const std::vector<ExportCell>& row : sheet.vec_rows)
            rows.append(Texts(row));
    }
    return rows;
}

QString CExportReportDataToFileObject::JoinTexts(const QStringList& texts, const QString& separator)
{
    QString joined;
    for (const QString& text : texts) {
        joined += text;
        joined += separator;
    }
    return joined;
}

bool CExportReportDataToFileObject::FetchPictureCell(const ExportDataNode& excel_data, const ExportCell& cell,
                                                     const std::string& target,
                                                     Zell::Base::Error::ErrorCode& error)
{
    if (FetchPictureToFile(image_loader_, PictureKeyOf(excel_data, cell), target, error))
        return true;
    LogError("SyncLoadImage  sync download image failed. first error code: %d, second error code: %d.",
             error.iFirstCode, error.iSecondCode);
    return false;
}

bool CExportReportDataToFileObject::FetchPictureCellToMemory(const ExportDataNode& excel_data,
                                                             const ExportCell& cell, std::string& data,
                                                             Zell::Base::Error::ErrorCode& error)
{
    if (FetchPictureToMemory(image_loader_, PictureKeyOf(excel_data, cell), data, error))
        return true;
    LogError("SyncLoadImage  sync download image failed. first error code: %d, second error code: %d.",
             error.iFirstCode, error.iSecondCode);
    return false;
}

void CExportReportDataToFileObject::DeleteTemporaryPictures()
{
    for (const std::string& file : temp_picture_files_)
        FileSystem::DeleteFileW(file.c_str());
    temp_picture_files_.clear();
}

}  // namespace FetchyardBussiness
