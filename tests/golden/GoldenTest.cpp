#include "ReportFolder.h"
#include "Reports.h"
#include "ScriptedPictures.h"

#include <gtest/gtest.h>
#include <QProcess>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

// Each writer over the real libraries and a set of small reports. What it leaves in the folder is compared
// with the text of reference/<format>-<report>.txt: every file's name, and the content of all but pictures.
// With FETCHYARD_WRITE_GOLDEN in the environment the references are written anew, to be looked at before they
// are kept.
namespace {

namespace fs = std::filesystem;
using FetchyardBussiness::CExportReportDataToFileObject;

struct Format
{
    const char* name;
    int type;
};

constexpr Format kFormats[] = {{"xlsx", 0}, {"csv", 1}, {"pdf", 2}, {"txt", 3}};

std::string PartsOf(const fs::path& book)
{
    QProcess python;
    python.start("/usr/bin/python3", {PARTS_SCRIPT, QString::fromStdString(book.u8string())});
    EXPECT_TRUE(python.waitForFinished(60000));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return python.readAllStandardOutput().toStdString();
}

class Golden : public testing::TestWithParam<Format>
{
protected:
    ~Golden() override { golden::OnFetch(nullptr); }

    void Write(const golden::Report& report) { folder_.Write(*writer_, GetParam().type, report); }

    void Compare(const std::string& report)
    {
        writer_.reset();
        const std::string name = std::string(GetParam().name) + "-" + report + ".txt";
        const fs::path reference = fs::path(REFERENCE_FOLDER) / name;
        const std::string found = Listing();
        if (std::getenv("FETCHYARD_WRITE_GOLDEN") != nullptr)
            std::ofstream(reference, std::ios::binary) << found;
        EXPECT_EQ(found, golden::Content(reference)) << name;
    }

    // While the picture of that number is on its way.
    void StopAt(int place)
    {
        golden::OnFetch([this, place](int number) {
            if (number == place)
                writer_->SetTaskStopState(true);
        });
        Write(golden::FourPictures());
        Compare("stop-" + std::to_string(place));
    }

    std::unique_ptr<CExportReportDataToFileObject> writer_ =
        FetchyardBussiness::MakeReportWriter(GetParam().type);

private:
    // Names that are new each time get numbers in the order in which the report names them.
    std::string Settled(std::string text)
    {
        const std::string out = folder_.Out();
        for (auto at = text.find(out); at != std::string::npos; at = text.find(out, at))
            text.replace(at, out.size(), "<folder>/");
        // How a PNG begins in Base64; what follows differs between versions of Qt.
        static const std::regex picture("iVBORw0KGgo[A-Za-z0-9+/=]*");
        text = std::regex_replace(text, picture, "<png>");
        static const std::regex guid("[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}");
        for (std::smatch match; std::regex_search(text, match, guid);) {
            const auto known = std::find(guids_.begin(), guids_.end(), match.str());
            const auto number = known - guids_.begin() + 1;
            if (known == guids_.end())
                guids_.push_back(match.str());
            text.replace(static_cast<std::size_t>(match.position()), static_cast<std::size_t>(match.length()),
                         "<guid " + std::to_string(number) + ">");
        }
        return text;
    }

    std::string Listing()
    {
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(folder_.Path("out")))
            files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        std::string listing;
        std::vector<std::string> pictures;
        for (const fs::path& file : files) {
            if (file.extension() == ".jpg") {
                pictures.push_back(file.filename().u8string());
                continue;
            }
            listing += Settled("=== " + file.filename().u8string() + "\n" +
                               (file.extension() == ".xlsx" ? PartsOf(file) : golden::Content(file)) + "\n");
        }
        // Behind the texts, so that their order is that of the report.
        for (std::string& picture : pictures)
            picture = Settled(picture);
        std::sort(pictures.begin(), pictures.end());
        for (const std::string& picture : pictures)
            listing += "=== " + picture + "\n";
        return listing;
    }

    const golden::ReportFolder folder_;
    std::vector<std::string> guids_;
};

TEST_P(Golden, EveryKindOfCell)
{
    Write(golden::EveryKindOfCell());
    Compare("cells");
}

TEST_P(Golden, Pictures)
{
    Write(golden::Pictures());
    Compare("pictures");
}

TEST_P(Golden, PagesOfTwoSheets)
{
    Write(golden::PagesOfTwoSheets());
    Compare("pages");
}

TEST_P(Golden, ReportWithoutRowsAndColumns)
{
    Write(golden::WithoutRowsAndColumns());
    Compare("empty");
}

TEST_P(Golden, StopBeforeTheFirstPage)
{
    writer_->SetTaskStopState(true);
    Write(golden::FourPictures());
    Compare("stop-0");
}

TEST_P(Golden, StopAtTheFirstPicture)
{
    StopAt(1);
}

TEST_P(Golden, StopAtTheSecondPicture)
{
    StopAt(2);
}

TEST_P(Golden, StopAtTheThirdPicture)
{
    StopAt(3);
}

TEST_P(Golden, StopAtTheLastPicture)
{
    StopAt(4);
}

INSTANTIATE_TEST_SUITE_P(Formats, Golden, testing::ValuesIn(kFormats),
                         [](const testing::TestParamInfo<Format>& format) { return format.param.name; });

}  // namespace
