#include "ResumeRecord.h"

#include "Words.h"
#include "ZellBase/Util.h"
#include "ZellNetLink/XmlProto.h"

#include <array>

namespace FetchyardClient {

using FetchyardLogical::RecordKind;

namespace {

// What an export can fetch beside its report: list, entry, and what a person calls an entry.
constexpr char kPictures[] = "ImageDownloadList/OneImage";
constexpr char kVideos[] = "VideoDownloadList/OneVideo";
constexpr char kStoredObjects[] = "ShortVideoExportParam/ShortVideo";
constexpr char kConverted[] = "TranscodeFileList/TranscodeFile";

constexpr std::array<const char*, 4> kReportSuffix = {".xlsx", ".csv", ".pdf", ".txt"};
constexpr int kReport = 0;    // of FileOperateType
constexpr int kWorkbook = 0;  // of ExportType

class RecordReader
{
public:
    explicit RecordReader(const std::string& resume_text)
    {
        std::string document;
        if (Zell::Base::Encrypt::Base64Decode(document, resume_text))
            xml_.set_str(document);
    }

    std::string Text(const std::string& below) { return xml_.get_v(kRoot + below, ""); }
    int Number(const std::string& below) { return xml_.get_int_v(kRoot + below, -1); }
    int Count(const std::string& below) { return xml_.get_cnt(kRoot + below); }
    static std::string Entry(const char* list, int number)
    {
        return list + ("[" + std::to_string(number) + "]/");
    }
    // How many entries of a list are not fetched yet.
    int Missing(const char* list)
    {
        int missing = 0;
        for (int i = 1; i <= Count(list); ++i)
            missing += Number(Entry(list, i) + "IsHasDownload") == 0 ? 1 : 0;
        return missing;
    }

private:
    static constexpr char kRoot[] = "/FileExportParams/";
    ZellNetLink::CXmlProto xml_;
};

std::string Counted(int count, const char* one, const char* many)
{
    return GroupedNumber(static_cast<unsigned long long>(count)) + " " + (count == 1 ? one : many);
}

// The account's part of a checked request is not kept, and of a record that was made from a record not even
// the rest of the condition.
void AddPasswordLosses(RecordReader& record, std::vector<std::string>& losses)
{
    if (record.Number("CheckPasswordRequest") != 1)
        return;
    if (record.Text("RequestCondition").empty())
        losses.emplace_back(
            "it is checked by password and was brought back before: what it asked for is lost, so run its "
            "request again");
    else
        losses.emplace_back(
            "it is checked by password: the account is that of --user now, and it can't be brought back a "
            "second time");
}

void AddListLosses(RecordReader& record, std::vector<std::string>& losses)
{
    const int pictures = record.Missing(kPictures);
    if (pictures > 0)
        losses.push_back(Counted(pictures, "picture of its list comes", "pictures of its list come") +
                         " back without a name and can't be written: it ends as failed for that");
    const int videos = record.Missing(kVideos);
    if (videos > 0)
        losses.push_back(Counted(videos, "video comes", "videos come") +
                         " back without password and device: it is asked for by its camera");
}

// A workbook is written anew. Of the others what was written stays, however far behind it the record is, and
// the page with the number in the record counts as written.
void AddPageLosses(RecordReader& record, int type, std::vector<std::string>& losses)
{
    const bool goes_on = record.Number("RestartIsNeedDownload") != 0 &&
                         record.Number("IsServerDataToWrite") != 0 &&
                         record.Number("TotalPageIsFinished") == 0;
    if (goes_on && type != kWorkbook)
        losses.push_back("its report goes on with page " +
                         std::to_string(record.Number("CurrentPage") + 1LL) +
                         " behind what is written: rows around there may be missing or there twice");
}

void ReadExport(RecordReader& record, bool was_evidence, ResumeRecord& read)
{
    read.folder = record.Text("ExportFilePath");
    const int type = record.Number("ExportType");
    const bool has_report = record.Number("FileOperateType") == kReport && !record.Text("RequestAPI").empty();
    if (has_report && type >= 0 && type < static_cast<int>(kReportSuffix.size()))
        read.files.push_back(
            {read.folder + record.Text("ExportFileName") + kReportSuffix[static_cast<std::size_t>(type)],
             true, ""});
    if (has_report)
        AddPageLosses(record, type, read.losses);
    for (int i = 1; i <= record.Count(kStoredObjects); ++i) {
        const std::string entry = RecordReader::Entry(kStoredObjects, i);
        read.files.push_back({record.Text(entry + "FilePath") + record.Text(entry + "FileName"), false, "",
                              ExpectedFile::Content::kAny});
    }
    AddPasswordLosses(record, read.losses);
    AddListLosses(record, read.losses);
    read.losses.emplace_back(was_evidence ? "it is not entered as evidence any more, and not packed"
                                          : "it is not packed, and not entered as evidence, whatever its "
                                            "request said");
}

void ReadPersonPictures(RecordReader& record, const std::string& save_folder, bool was_evidence,
                        ResumeRecord& read)
{
    const std::string name = record.Text("ZipName");
    if (!name.empty()) {
        read.folder = save_folder + name + "/";
        read.files.push_back({read.folder + name + ".zip", true, record.Text("ZipEncodingPassword")});
    }
    read.losses.emplace_back("it begins anew, in the save folder of now");
    AddPasswordLosses(record, read.losses);
    read.losses.emplace_back(was_evidence ? "it is not entered as evidence any more"
                                          : "it is not entered as evidence, whatever its request said");
}

void ReadTranscoding(RecordReader& record, ResumeRecord& read)
{
    for (int i = 1; i <= record.Count(kConverted); ++i)
        read.files.push_back({record.Text(RecordReader::Entry(kConverted, i) + "SaveFilePath"), false, "",
                              ExpectedFile::Content::kAny});
    read.losses.emplace_back(
        "its source files are not in the record: what was not converted by then fails, so run its request "
        "again");
}

}  // namespace

ResumeRecord ReadResumeRecord(const std::string& resume_text, RecordKind kind, const std::string& save_folder,
                              bool was_evidence)
{
    RecordReader record(resume_text);
    ResumeRecord read;
    switch (kind) {
        case RecordKind::Export:
            ReadExport(record, was_evidence, read);
            break;
        case RecordKind::PersonPictures:
            ReadPersonPictures(record, save_folder, was_evidence, read);
            break;
        case RecordKind::Transcoding:
            ReadTranscoding(record, read);
            break;
        case RecordKind::None:
        case RecordKind::Unknown:
            break;
    }
    return read;
}

}  // namespace FetchyardClient
