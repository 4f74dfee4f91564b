#include "station/Import/PhotographTime.h"
#include "StationFixture.h"

#include <QDateTime>
#include <QFile>
#include <QImage>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

using nlohmann::json;
using namespace SystemTest;

namespace {

namespace fs = std::filesystem;

constexpr char kReport[] = "/api/v1/events/report";

// The smallest EXIF block that says when a photograph was taken, as an APP1 segment.
std::string ExifSegment(const std::string& taken)
{
    std::string tiff("MM\0\x2a\0\0\0\x08", 8);
    tiff += std::string("\0\x01\x87\x69\0\x04\0\0\0\x01\0\0\0\x1a\0\0\0\0", 18);  // to the EXIF part at 26
    tiff += std::string("\0\x01\x90\x03\0\x02\0\0\0\x14\0\0\0\x2c\0\0\0\0", 18) + taken;  // the time at 44
    tiff += '\0';
    const std::string body = std::string("Exif\0\0", 6) + tiff;
    const auto size = static_cast<unsigned>(body.size() + 2);
    return std::string("\xff\xe1") + static_cast<char>(size >> 8) + static_cast<char>(size & 0xFF) + body;
}

std::string ReadBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const fs::path& path, const std::string& bytes)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

class StationImport : public testing::Test
{
protected:
    fs::path Photographs() const { return folder_.filePath("photographs").toStdString(); }
    QString Data() const { return folder_.filePath("data"); }

    // A picture of one colour, so that each is another file.
    void Draw(const std::string& name, QRgb colour, const char* format = "JPG")
    {
        fs::create_directories((Photographs() / name).parent_path());
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(colour);
        ASSERT_TRUE(image.save(QString::fromStdString((Photographs() / name).string()), format));
    }
    void DrawWithTime(const std::string& name, QRgb colour, const std::string& taken)
    {
        Draw(name, colour);
        const std::string bytes = ReadBytes(Photographs() / name);
        WriteBytes(Photographs() / name, bytes.substr(0, 2) + ExifSegment(taken) + bytes.substr(2));
    }
    ProgramResult Import(const QStringList& more = {}) { return ImportFrom(Photographs(), more); }
    ProgramResult ImportFrom(const fs::path& folder, const QStringList& more = {})
    {
        return RunStation(QStringList{"import", QString::fromStdString(folder.string()), "--data", Data()} +
                          more);
    }
    // The rows of the station's report, pictures linked, by their texts.
    static std::map<std::string, json> RowsByText(const StationProcess& station, const std::string& type)
    {
        std::map<std::string, json> rows;
        const json page = station.Post(
            kReport, {{"PageIndex", 1}, {"PageSize", 10000}, {"Pictures", "linked"}, {"EventTypes", {type}}});
        for (const json& row : page["Sheets"][0]["Rows"])
            rows[row[9]["Text"]] = row;
        return rows;
    }
    QTemporaryDir folder_;
};

}  // namespace

TEST_F(StationImport, PhotographsBecomeEventsAtTheTimeOfTheirExif)
{
    const StationProcess station;
    DrawWithTime("birthday, \"cake\".jpg", 0xff2040c0, "2025:06:07 08:09:10");
    DrawWithTime("ваза.JPEG", 0xff20c040, "1999:12:31 23:59:59");
    const ProgramResult result = RunStation({"import", QString::fromStdString(Photographs().string()),
                                             "--data", QString::fromStdString(station.DataFolder())});
    ASSERT_EQ(result.exit_code, 0) << result.errors;
    EXPECT_NE(result.output.find("imported 2 photographs"), std::string::npos) << result.output;
    auto rows = RowsByText(station, "Photograph");
    ASSERT_EQ(rows.size(), 2u);
    const json& cake = rows["birthday, \"cake\".jpg"];
    EXPECT_EQ(cake[1]["Text"], "2025-06-07 08:09:10");
    EXPECT_EQ(cake[2], "Photographs");
    EXPECT_EQ(rows["ваза.JPEG"][1]["Text"], "1999-12-31 23:59:59");
    const auto picture = station.Connect()->Get(cake[10]["Text"].get<std::string>());
    ASSERT_TRUE(picture);
    EXPECT_TRUE(picture->body == ReadBytes(Photographs() / "birthday, \"cake\".jpg"));
}

TEST_F(StationImport, PhotographWithoutExifHasTheTimeOfItsFile)
{
    const StationProcess station;
    Draw("plain.png", 0xff808080, "PNG");
    QFile file(QString::fromStdString((Photographs() / "plain.png").string()));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::fromString("2024-03-02T01:04:05Z", Qt::ISODate),
                                 QFileDevice::FileModificationTime));
    file.close();
    ASSERT_EQ(RunStation({"import", QString::fromStdString(Photographs().string()), "--data",
                          QString::fromStdString(station.DataFolder())})
                  .exit_code,
              0);
    auto rows = RowsByText(station, "Photograph");
    EXPECT_EQ(rows["plain.png"][1]["Text"], "2024-03-02 01:04:05");
    const std::string address = rows["plain.png"][10]["Text"];
    EXPECT_EQ(address.substr(address.size() - 4), ".png");
    EXPECT_EQ(station.Connect()->Get(address)->get_header_value("Content-Type"), "image/png");
}

TEST_F(StationImport, FoldersWithinAreReadAndOtherFilesPassedOver)
{
    Draw("a/b/deep.jpg", 0xff101010);
    Draw("top.jpg", 0xff202020);
    WriteBytes(Photographs() / "notes.txt", "no picture");
    const ProgramResult result = Import();
    EXPECT_EQ(result.exit_code, 0) << result.errors;
    EXPECT_NE(result.output.find("imported 2 photographs"), std::string::npos) << result.output;
}

TEST_F(StationImport, UnreadablePhotographsAreToldAndSkipped)
{
    Draw("good.jpg", 0xff303030);
    Draw("cut.png", 0xff404040, "PNG");
    const std::string bytes = ReadBytes(Photographs() / "cut.png");
    WriteBytes(Photographs() / "cut.png", bytes.substr(0, bytes.size() / 2));
    WriteBytes(Photographs() / "lie.jpg", "this is a text");
    WriteBytes(Photographs() / "empty.jpg", "");
    const ProgramResult result = Import();
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_NE(result.output.find("imported 1 photographs, 3 skipped"), std::string::npos) << result.output;
    for (const char* name : {"cut.png", "lie.jpg", "empty.jpg"})
        EXPECT_NE(result.errors.find(name), std::string::npos) << result.errors;
}

TEST_F(StationImport, SecondImportOfTheSameFolderAddsNothing)
{
    Draw("one.jpg", 0xff505050);
    ASSERT_EQ(Import().exit_code, 0);
    Draw("two.jpg", 0xff606060);
    const ProgramResult result = Import();
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_NE(result.output.find("imported 1 photographs, 1 were there already"), std::string::npos)
        << result.output;
}

TEST_F(StationImport, PhotographsCanBeGivenToACameraThatIsThere)
{
    const StationProcess station;
    Draw("one.jpg", 0xff707070);
    const QString folder = QString::fromStdString(Photographs().string());
    const QString data = QString::fromStdString(station.DataFolder());
    EXPECT_EQ(RunStation({"import", folder, "--data", data, "--camera", "99"}).exit_code, 1);
    ASSERT_EQ(RunStation({"import", folder, "--data", data, "--camera", "7"}).exit_code, 0);
    EXPECT_EQ(RowsByText(station, "Photograph")["one.jpg"][2], "Reception");
}

TEST_F(StationImport, FolderWithoutPhotographsOrNoFolderIsAFailure)
{
    fs::create_directories(Photographs());
    EXPECT_EQ(Import().exit_code, 1);
    const ProgramResult missing = ImportFrom("/nowhere/at/all");
    EXPECT_EQ(missing.exit_code, 1);
    EXPECT_NE(missing.errors.find("/nowhere/at/all"), std::string::npos) << missing.errors;
    EXPECT_EQ(RunStation({"import", "--data", Data()}).exit_code, 2);
}

TEST_F(StationImport, RealPhotographsAreImportedWithTheirTimesAndBrokenOnesSkipped)
{
    ASSERT_TRUE(fs::exists(PHOTOGRAPHS)) << "the package golang-github-rwcarlsen-goexif-dev is not installed";
    const StationProcess station;
    const ProgramResult result =
        RunStation({"import", PHOTOGRAPHS, "--data", QString::fromStdString(station.DataFolder())});
    // Most files of the package are heads of photographs without the picture, and some have a damaged EXIF
    // part.
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_NE(result.output.find("imported 12 photographs, 49 skipped"), std::string::npos) << result.output;
    auto rows = RowsByText(station, "Photograph");
    EXPECT_EQ(rows.size(), 12u);
    const std::map<std::string, std::string> times = {
        {"sample1.jpg", "2003-11-23 18:07:37"},
        {"samples/geodegrees_as_string.jpg", "2014-04-26 19:09:19"},
        {"samples/has-lens-info.jpg", "2014-09-01 15:03:47"},
        {"samples/f5-exif.jpg", "2012-11-04 05:42:32"},
        {"corrupt/infinite_loop_exif.jpg", "2007-05-10 19:04:16"}};
    for (const auto& [path, time] : times) {
        const fs::path file = fs::path(PHOTOGRAPHS) / path;
        ASSERT_EQ(rows.count(file.filename().string()), 1u) << path;
        const json& row = rows[file.filename().string()];
        EXPECT_EQ(row[1]["Text"], time) << path;
        const auto picture = station.Connect()->Get(row[10]["Text"].get<std::string>());
        ASSERT_TRUE(picture) << path;
        EXPECT_TRUE(picture->body == ReadBytes(file)) << path;
    }
}

TEST_F(StationImport, DamagedExifOnlyLosesTheTime)
{
    const std::string segment = ExifSegment("2025:06:07 08:09:10");
    const std::string exif = segment.substr(4);
    EXPECT_EQ(Station::TimeFromExif(exif), 1749283750);
    for (std::size_t size = 0; size + 2 < exif.size(); ++size)
        EXPECT_EQ(Station::TimeFromExif(exif.substr(0, size)), std::nullopt) << size;
    for (const char* taken : {"0000:00:00 00:00:00", "2025-06-07 08:09:10", "2025:13:07 08:09:10",
                              "    :  :     :  :  ", "2025:06:07 24:09:10"})
        EXPECT_EQ(Station::TimeFromExif(ExifSegment(taken).substr(4)), std::nullopt) << taken;
}
