#include "Window/ExportChoice.h"

#include <gmock/gmock.h>

namespace FetchyardClient {
namespace {

using nlohmann::json;
using testing::HasSubstr;

json Data(const json& request)
{
    return request["FileExportRequest"]["RequestData"];
}

ExportChoice Valid()
{
    ExportChoice choice;
    choice.name = "Alarms";
    return choice;
}

// The field of the only violation.
ExportField OnlyField(const ExportChoice& choice)
{
    const std::vector<FieldViolation> violations = CheckChoice(choice);
    EXPECT_EQ(violations.size(), 1U);
    return violations.empty() ? ExportField::None : violations.front().field;
}

TEST(ExportChoice, DefaultsMakeARequestThatFits)
{
    EXPECT_TRUE(CheckChoice(Valid()).empty());
    EXPECT_EQ(Data(MakeRequest(Valid()))["ExportFileParam"]["RequestCondition"],
              R"({"PageIndex":1,"PageSize":500,"Pictures":"none"})");
}

TEST(ExportChoice, EveryFieldStandsInTheRequest)
{
    ExportChoice choice = Valid();
    choice.site = 7;
    choice.begin = "2026-01-01T00:00:00Z";
    choice.end = "2026-01-02T00:00:00Z";
    choice.cameras = "3, 4";
    choice.event_types = "Intrusion, Line crossing,";
    choice.least_level = 2;
    choice.text = "gate";
    choice.format = 2;
    choice.pictures = ExportChoice::Pictures::Embedded;
    choice.with_videos = true;
    choice.is_packed = true;
    choice.archive_password = "secret";
    choice.save_folder = "/exports";
    const json data = Data(MakeRequest(choice));
    EXPECT_EQ(
        data["ExportFileParam"]["RequestCondition"],
        R"({"PageIndex":1,"PageSize":500,"BeginTime":"2026-01-01T00:00:00Z","EndTime":"2026-01-02T00:00:00Z",)"
        R"("CameraIds":[3,4],"EventTypes":["Intrusion","Line crossing"],"MinLevel":2,"Text":"gate",)"
        R"("Pictures":"embedded"})");
    EXPECT_EQ(data["ExportFileParam"]["SiteID"], 7);
    EXPECT_EQ(data["WriteFileCondition"],
              json::parse(R"({"ExportFileName":"Alarms","ExportFileType":2,"IsNeedCompressZip":true,
                              "ZipPassword":"secret","SaveFilePathDir":"/exports/"})"));
    EXPECT_EQ(data["DownloadFiles"]["VideoDownload"].size(), 2U);
    EXPECT_TRUE(CheckChoice(choice).empty());
}

TEST(ExportChoice, PasswordWithAQuoteIsToldAtThePassword)
{
    ExportChoice choice = Valid();
    choice.is_packed = true;
    choice.archive_password = "a\"b";
    EXPECT_EQ(OnlyField(choice), ExportField::Password);
}

TEST(ExportChoice, CamerasThatAreNoNumbersAreToldAtTheCameras)
{
    ExportChoice choice = Valid();
    for (const char* cameras : {"1, two", "-3", "99999999999", "1.5"}) {
        choice.cameras = cameras;
        EXPECT_EQ(OnlyField(choice), ExportField::Cameras) << cameras;
    }
}

TEST(ExportChoice, EndBeforeTheBeginIsToldAtTheTime)
{
    ExportChoice choice = Valid();
    choice.begin = choice.end = "2026-01-02T00:00:00Z";
    EXPECT_EQ(OnlyField(choice), ExportField::Range);
}

TEST(ExportChoice, VideosWantCamerasAndBothTimes)
{
    ExportChoice choice = Valid();
    choice.with_videos = true;
    EXPECT_EQ(CheckChoice(choice).size(), 2U);
    choice.cameras = "1";
    EXPECT_EQ(OnlyField(choice), ExportField::Videos);
}

TEST(ExportChoice, NameThatLeavesItsFolderIsToldAtTheName)
{
    ExportChoice choice = Valid();
    for (const std::string& name : {std::string("../up"), std::string(".."), std::string(10'000, 'x')}) {
        choice.name = name;
        EXPECT_EQ(OnlyField(choice), ExportField::Name);
    }
}

TEST(ExportChoice, EmptyReportIsToldAtTheReport)
{
    ExportChoice choice = Valid();
    choice.report.clear();
    EXPECT_EQ(OnlyField(choice), ExportField::Report);
}

TEST(ExportChoice, TextsOfOtherScriptsArePassedOnAsTheyStand)
{
    ExportChoice choice = Valid();
    choice.name = "שער";
    choice.text = "门";
    EXPECT_THAT(MakeRequest(choice).dump(), HasSubstr("שער"));
    EXPECT_THAT(Data(MakeRequest(choice))["ExportFileParam"]["RequestCondition"].get<std::string>(),
                HasSubstr("门"));
    EXPECT_TRUE(CheckChoice(choice).empty());
}

}  // namespace
}  // namespace FetchyardClient
