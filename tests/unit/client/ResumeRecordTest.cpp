#include "ResumeRecord.h"
#include "ZellBase/Util.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace FetchyardClient;
using FetchyardLogical::RecordKind;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kNotPacked[] = "it is not packed, and not entered as evidence, whatever its request said";
constexpr char kReport[] =
    "<FileOperateType>0</FileOperateType><RequestAPI>/events</RequestAPI>"
    "<RequestCondition>{}</RequestCondition><ExportFileName>Alarms</ExportFileName>"
    "<ExportFilePath>/out/Alarms/</ExportFilePath><IsServerDataToWrite>1</IsServerDataToWrite>";
constexpr char kFresh[] =
    "<CurrentPage>1</CurrentPage><TotalPageIsFinished>0</TotalPageIsFinished>"
    "<RestartIsNeedDownload>0</RestartIsNeedDownload>";
constexpr char kUnderWay[] =
    "<CurrentPage>7</CurrentPage><TotalPageIsFinished>0</TotalPageIsFinished>"
    "<RestartIsNeedDownload>1</RestartIsNeedDownload>";

ResumeRecord Read(RecordKind kind, const std::string& elements, bool was_evidence = false)
{
    std::string text;
    Zell::Base::Encrypt::Base64Encode(text, "<FileExportParams>" + elements + "</FileExportParams>");
    return ReadResumeRecord(text, kind, "/save/", was_evidence);
}

std::vector<std::string> LossesOfExport(const std::string& elements)
{
    return Read(RecordKind::Export, elements).losses;
}

std::vector<std::string> PathsOf(const ResumeRecord& record)
{
    std::vector<std::string> paths;
    for (const ExpectedFile& file : record.files)
        paths.push_back(file.path);
    return paths;
}

}  // namespace

TEST(ResumeRecord, ExportLeavesItsReportAndStoredObjectsInItsOldFolder)
{
    const ResumeRecord record =
        Read(RecordKind::Export, std::string(kReport) + kFresh +
                                     "<ExportType>1</ExportType><ShortVideoExportParam><ShortVideo>"
                                     "<FileName>clip.mjpeg</FileName><FilePath>/out/Alarms/</FilePath>"
                                     "</ShortVideo></ShortVideoExportParam>");
    EXPECT_EQ(record.folder, "/out/Alarms/");
    EXPECT_THAT(PathsOf(record), ElementsAre("/out/Alarms/Alarms.csv", "/out/Alarms/clip.mjpeg"));
    EXPECT_TRUE(record.files[0].is_report);
    EXPECT_THAT(record.losses, ElementsAre(kNotPacked));
}

TEST(ResumeRecord, ExportWithoutAReportOrOfAnotherKindLeavesNone)
{
    EXPECT_THAT(PathsOf(Read(RecordKind::Export, "<ExportType>1</ExportType>")), IsEmpty());
    EXPECT_THAT(PathsOf(Read(RecordKind::Export, std::string(kReport) + "<ExportType>9</ExportType>")),
                IsEmpty());
}

TEST(ResumeRecord, EvidenceExportIsAPlainOneFromNowOn)
{
    EXPECT_THAT(Read(RecordKind::Export, kFresh, true).losses,
                ElementsAre("it is not entered as evidence any more, and not packed"));
    EXPECT_THAT(
        Read(RecordKind::PersonPictures, "", true).losses,
        ElementsAre("it begins anew, in the save folder of now", "it is not entered as evidence any more"));
}

TEST(ResumeRecord, ReportThatIsUnderWayGoesOnBehindThePageOfItsRecord)
{
    EXPECT_THAT(LossesOfExport(std::string(kReport) + kUnderWay + "<ExportType>1</ExportType>"),
                ElementsAre("its report goes on with page 8 behind what is written: rows around there may be "
                            "missing or there twice",
                            kNotPacked));
}

TEST(ResumeRecord, WorkbookIsWrittenAnewWithoutALoss)
{
    EXPECT_THAT(LossesOfExport(std::string(kReport) + kUnderWay + "<ExportType>0</ExportType>"),
                ElementsAre(kNotPacked));
}

TEST(ResumeRecord, PictureThatIsNotFetchedYetHasNoName)
{
    const std::string done = "<OneImage><IsHasDownload>1</IsHasDownload></OneImage>";
    const std::string missing = "<OneImage><IsHasDownload>0</IsHasDownload></OneImage>";
    const auto list = [](const std::string& entries) {
        return std::string(kFresh) + "<ImageDownloadList>" + entries + "</ImageDownloadList>";
    };
    EXPECT_THAT(LossesOfExport(list(done)), ElementsAre(kNotPacked));
    EXPECT_THAT(
        LossesOfExport(list(missing + done)),
        ElementsAre("1 picture of its list comes back without a name and can't be written: it ends as "
                    "failed for that",
                    kNotPacked));
    EXPECT_THAT(
        LossesOfExport(list(missing + missing)),
        ElementsAre("2 pictures of its list come back without a name and can't be written: it ends as "
                    "failed for that",
                    kNotPacked));
}

TEST(ResumeRecord, VideoThatIsNotFetchedYetHasNeitherPasswordNorDevice)
{
    EXPECT_THAT(LossesOfExport(std::string(kFresh) +
                               "<VideoDownloadList><OneVideo><IsHasDownload>0</IsHasDownload></OneVideo>"
                               "</VideoDownloadList>"),
                ElementsAre("1 video comes back without password and device: it is asked for by its camera",
                            kNotPacked));
}

TEST(ResumeRecord, CheckedExportCanBeBroughtBackOnce)
{
    const std::string checked = std::string(kFresh) + "<CheckPasswordRequest>1</CheckPasswordRequest>";
    EXPECT_THAT(
        LossesOfExport(checked + "<RequestCondition>{}</RequestCondition>"),
        ElementsAre(
            "it is checked by password: the account is that of --user now, and it can't be brought back "
            "a second time",
            kNotPacked));
    EXPECT_THAT(
        LossesOfExport(checked),
        ElementsAre("it is checked by password and was brought back before: what it asked for is lost, so "
                    "run its request again",
                    kNotPacked));
}

TEST(ResumeRecord, PersonExportGoesToTheSaveFolderOfNow)
{
    const ResumeRecord record =
        Read(RecordKind::PersonPictures,
             "<ZipName>Anna</ZipName><ZipEncodingPassword>s3cret</ZipEncodingPassword>");
    EXPECT_EQ(record.folder, "/save/Anna/");
    EXPECT_THAT(PathsOf(record), ElementsAre("/save/Anna/Anna.zip"));
    EXPECT_EQ(record.files[0].password, "s3cret");
    EXPECT_THAT(record.losses, ElementsAre("it begins anew, in the save folder of now",
                                           "it is not entered as evidence, whatever its request said"));
}

TEST(ResumeRecord, TranscodingHasNoSource)
{
    const ResumeRecord record =
        Read(RecordKind::Transcoding,
             "<TranscodeFileList><TranscodeFile><SaveFilePath>/out/a.mp4</SaveFilePath></TranscodeFile></"
             "TranscodeFileList>");
    EXPECT_THAT(PathsOf(record), ElementsAre("/out/a.mp4"));
    EXPECT_THAT(record.losses,
                ElementsAre("its source files are not in the record: what was not converted by "
                            "then fails, so run its request again"));
}

TEST(ResumeRecord, TextThatIsNoRecordNamesNothing)
{
    const ResumeRecord record = ReadResumeRecord("*", RecordKind::PersonPictures, "/save/", false);
    EXPECT_EQ(record.folder, "");
    EXPECT_THAT(PathsOf(record), IsEmpty());
}
