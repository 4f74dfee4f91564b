#include "StationFixture.h"

#include <QByteArray>
#include <QImage>

#include <string>

using nlohmann::json;
using namespace SystemTest;

namespace {

class StationSynthetic : public StationFixture
{
protected:
    json Page(const json& condition) { return station_.Post("/api/v1/synthetic/report", condition); }
    json Persons(const json& condition) { return station_.Post("/api/v1/synthetic/persons", condition); }
};

}  // namespace

TEST_F(StationSynthetic, PagesHaveTheRowsAndColumnsThatWereAskedFor)
{
    const json page =
        Page({{"PageIndex", 1}, {"PageSize", 30}, {"Rows", 70}, {"Columns", 7}, {"Pictures", 0}});
    EXPECT_EQ(page["TotalPageIsFinished"], false);
    const json& sheet = page["Sheets"][0];
    EXPECT_EQ(sheet["Columns"].size(), 7u);
    ASSERT_EQ(sheet["Rows"].size(), 30u);
    for (const json& row : sheet["Rows"])
        EXPECT_EQ(row.size(), 7u);
}

TEST_F(StationSynthetic, LaterPageDiffersInItsNumbersOnly)
{
    const json second = Page({{"PageIndex", 2}, {"PageSize", 30}, {"Rows", 70}, {"Columns", 7}});
    const json third = Page({{"PageIndex", 3}, {"PageSize", 30}, {"Rows", 70}, {"Columns", 7}});
    EXPECT_EQ(second["Sheets"][0]["PageIndex"], 2);
    EXPECT_FALSE(second["Sheets"][0].contains("Columns"));
    EXPECT_EQ(second["TotalPageIsFinished"], false);
    EXPECT_EQ(third["Sheets"][0]["Rows"].size(), 10u);
    EXPECT_EQ(third["TotalPageIsFinished"], true);
}

TEST_F(StationSynthetic, ExactLastPageIsFinished)
{
    EXPECT_EQ(Page({{"PageIndex", 2}, {"PageSize", 30}, {"Rows", 60}})["TotalPageIsFinished"], true);
    EXPECT_EQ(Page({{"PageIndex", 1}, {"PageSize", 30}, {"Rows", 60}})["TotalPageIsFinished"], false);
}

TEST_F(StationSynthetic, NoRowsAndPagesBehindTheLastAreEmptyAndFinished)
{
    for (const json& condition : {json{{"PageIndex", 1}, {"PageSize", 30}, {"Rows", 0}},
                                  json{{"PageIndex", 9}, {"PageSize", 30}, {"Rows", 60}}}) {
        const json page = Page(condition);
        EXPECT_EQ(page["TotalPageIsFinished"], true);
        EXPECT_TRUE(page["Sheets"][0]["Rows"].empty());
    }
}

TEST_F(StationSynthetic, PictureCellsHaveAddressesOfTheirOwnThatAreServed)
{
    const json page =
        Page({{"PageIndex", 12}, {"PageSize", 2}, {"Rows", 100}, {"Columns", 1}, {"Pictures", 2}});
    const json& sheet = page["Sheets"][0];
    EXPECT_EQ(sheet["Rows"][1][1], (json{{"Text", "/synthetic/pictures/12-2-1.jpg"}, {"Format", 0}}));
    EXPECT_EQ(sheet["Rows"][1][2]["Text"], "/synthetic/pictures/12-2-2.jpg");
    EXPECT_EQ(sheet["Formats"][0]["CellType"], 3);
    const auto answer = station_.Connect()->Get("/synthetic/pictures/12-2-1.jpg");
    ASSERT_TRUE(answer);
    EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(answer->body), "JPG").size(), QSize(1280, 720));
}

TEST_F(StationSynthetic, OtherPictureNamesAreNotFound)
{
    for (const char* name : {"1-1.jpg", "1-1-1.png", "a-1-1.jpg", "..jpg", ".jpg", "1-1-1-1.jpg"})
        EXPECT_EQ(station_.Connect()->Get(std::string("/synthetic/pictures/") + name)->status, 404) << name;
}

TEST_F(StationSynthetic, ShapesBeyondTheBoundsAreRefused)
{
    for (const json& condition : {json{{"PageSize", 0}}, json{{"Columns", 0}}, json{{"Columns", 20000}},
                                  json{{"PageSize", 10000}, {"Columns", 101}}, json{{"Pictures", 17}},
                                  json{{"Rows", -1}}, json::array()}) {
        const json answer = Page(condition);
        EXPECT_EQ(answer["ErrorModule"], 24) << condition;
        EXPECT_EQ(answer["ErrorCode"], 1) << condition;
    }
    EXPECT_EQ(station_.Connect()->Post("/api/v1/synthetic/report", "no json", "application/json")->status,
              400);
}

TEST_F(StationSynthetic, PersonsHaveAsManyServedPicturesAsAskedFor)
{
    const json page = Persons({{"PageIndex", 3}, {"PageSize", 2}, {"Persons", 5}, {"Pictures", 2}});
    EXPECT_EQ(page["TotalPageIsFinished"], true);
    ASSERT_EQ(page["Persons"].size(), 1u);
    EXPECT_EQ(page["Persons"][0]["PersonId"], 5);
    EXPECT_EQ(page["Persons"][0]["Name"], "Person 5");
    EXPECT_EQ(page["Persons"][0]["Pictures"],
              json::parse(R"([{"Title": "3-1-1", "Address": "/synthetic/pictures/3-1-1.jpg"},
                              {"Title": "3-1-2", "Address": "/synthetic/pictures/3-1-2.jpg"}])"));
    EXPECT_EQ(station_.Connect()->Get("/synthetic/pictures/3-1-2.jpg")->status, 200);
}

TEST_F(StationSynthetic, PersonsGoOnUntilTheLastAndArePastItNone)
{
    const json second = Persons({{"PageIndex", 2}, {"PageSize", 2}, {"Persons", 5}});
    EXPECT_EQ(second["TotalPageIsFinished"], false);
    EXPECT_EQ(second["Persons"][1]["PersonId"], 4);
    EXPECT_EQ(Persons({{"PageIndex", 2}, {"PageSize", 2}, {"Persons", 4}})["TotalPageIsFinished"], true);
    const json behind = Persons({{"PageIndex", 9}, {"PageSize", 2}, {"Persons", 5}});
    EXPECT_EQ(behind["TotalPageIsFinished"], true);
    EXPECT_TRUE(behind["Persons"].empty());
}

TEST_F(StationSynthetic, PersonsBeyondTheBoundsAreRefused)
{
    for (const json& condition :
         {json{{"PageIndex", 0}}, json{{"PageSize", 0}}, json{{"PageSize", 1001}}, json{{"Persons", -1}},
          json{{"Pictures", 101}}, json{{"Pictures", "many"}}, json::array()})
        EXPECT_EQ(Persons(condition)["ErrorModule"], 24) << condition;
}
