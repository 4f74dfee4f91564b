#include "StationFixture.h"

#include <map>
#include <set>
#include <string>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kSearch[] = "/api/v1/persons/report";

struct Picture
{
    std::string title;
    std::string address;
    std::string person;
    std::int64_t person_id = 0;
};

class StationPersons : public StationFixture
{
protected:
    json Search(json condition) const
    {
        condition.emplace("PageIndex", 1);
        condition.emplace("PageSize", 10000);
        return station_.Post(kSearch, condition);
    }

    static std::vector<Picture> PicturesOf(const json& page)
    {
        std::vector<Picture> pictures;
        for (const json& person : page.at("Persons"))
            for (const json& picture : person.at("Pictures"))
                pictures.push_back(
                    {picture.at("Title"), picture.at("Address"), person.at("Name"), person.at("PersonId")});
        return pictures;
    }

    void ExpectRefused(const json& condition, const std::string& word) const
    {
        const json answer = Search(condition);
        EXPECT_EQ(answer["ErrorModule"], 24) << condition;
        EXPECT_EQ(answer["ErrorCode"], 1) << condition;
        EXPECT_NE(answer["ErrorText"].get<std::string>().find(word), std::string::npos) << answer;
    }
};

}  // namespace

TEST_F(StationPersons, EveryEventThatNamesAPersonIsOnePicture)
{
    const json events = station_.Post("/api/v1/events/report", {{"PageIndex", 1}, {"PageSize", 10000}});
    std::map<std::string, int> named;
    for (const json& row : events["Sheets"][0]["Rows"])
        if (const std::string name = row[6].is_string() ? row[6] : row[6]["Text"]; !name.empty())
            ++named[name];
    std::map<std::string, int> found;
    std::set<std::string> titles;
    const json page = Search(json::object());
    for (const Picture& picture : PicturesOf(page)) {
        ++found[picture.person];
        titles.insert(picture.title);
    }
    EXPECT_EQ(found, named);
    EXPECT_EQ(titles.size(), PicturesOf(page).size());
    EXPECT_GT(titles.size(), 20u);
    EXPECT_EQ(page["TotalPageIsFinished"], true);
}

TEST_F(StationPersons, PagesFollowOneAnotherWithoutGapOrOverlap)
{
    const std::vector<Picture> all = PicturesOf(Search(json::object()));
    for (const int size : {1, 7, 50}) {
        std::vector<Picture> paged;
        bool is_last = false;
        for (int number = 1; !is_last; ++number) {
            const json page = Search({{"PageIndex", number}, {"PageSize", size}});
            is_last = page["TotalPageIsFinished"];
            const std::vector<Picture> pictures = PicturesOf(page);
            ASSERT_LE(pictures.size(), static_cast<std::size_t>(size));
            ASSERT_TRUE(is_last || pictures.size() == static_cast<std::size_t>(size));
            paged.insert(paged.end(), pictures.begin(), pictures.end());
        }
        ASSERT_EQ(paged.size(), all.size()) << size;
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_EQ(paged[i].title, all[i].title);
    }
}

TEST_F(StationPersons, LastPageThatIsFullIsToldAsTheLast)
{
    const auto count = static_cast<int>(PicturesOf(Search(json::object())).size());
    EXPECT_EQ(Search({{"PageSize", count}})["TotalPageIsFinished"], true);
    EXPECT_EQ(Search({{"PageSize", count - 1}})["TotalPageIsFinished"], false);
    const json behind = Search({{"PageIndex", 2}, {"PageSize", count}});
    EXPECT_EQ(behind["TotalPageIsFinished"], true);
    EXPECT_TRUE(behind["Persons"].empty());
}

TEST_F(StationPersons, NumberOfAPersonStaysWhateverIsAskedFor)
{
    std::map<std::string, std::int64_t> ids;
    for (const Picture& picture : PicturesOf(Search(json::object())))
        ids[picture.person] = picture.person_id;
    std::set<std::int64_t> different;
    for (const auto& [name, id] : ids)
        different.insert(id);
    EXPECT_EQ(different.size(), ids.size());
    for (const Picture& picture : PicturesOf(Search({{"MinConfidence", 90}, {"PageSize", 5}})))
        EXPECT_EQ(picture.person_id, ids[picture.person]);
}

TEST_F(StationPersons, PersonsAreFoundByTheirNumbersAndByPartsOfTheirNames)
{
    const Picture first = PicturesOf(Search(json::object())).front();
    for (const Picture& picture : PicturesOf(Search({{"PersonIds", {first.person_id}}})))
        EXPECT_EQ(picture.person, first.person);
    const std::string part = first.person.substr(1, 3);
    const std::vector<Picture> by_name = PicturesOf(Search({{"Text", part}}));
    ASSERT_FALSE(by_name.empty());
    for (const Picture& picture : by_name)
        EXPECT_NE(picture.person.find(part), std::string::npos);
    EXPECT_TRUE(Search({{"Text", "%"}})["Persons"].empty());
    EXPECT_TRUE(Search({{"PersonIds", {999999}}})["Persons"].empty());
}

TEST_F(StationPersons, LimitsHoldForEachPersonAndForTheWholeSearch)
{
    std::map<std::string, int> all;
    std::map<std::string, int> few;
    for (const Picture& picture : PicturesOf(Search(json::object())))
        ++all[picture.person];
    for (const Picture& picture : PicturesOf(Search({{"PicturesOfPerson", 2}})))
        ++few[picture.person];
    ASSERT_EQ(few.size(), all.size());
    for (const auto& [name, count] : few)
        EXPECT_EQ(count, std::min(all[name], 2)) << name;
    const json limited = Search({{"Limit", 5}, {"PageSize", 3}, {"PageIndex", 2}});
    EXPECT_EQ(PicturesOf(limited).size(), 2u);
    EXPECT_EQ(limited["TotalPageIsFinished"], true);
    EXPECT_TRUE(Search({{"Limit", 0}})["Persons"].empty());
}

TEST_F(StationPersons, EveryAddressLeadsToAPicture)
{
    const auto connection = station_.Connect();
    for (const Picture& picture : PicturesOf(Search({{"PageSize", 5}}))) {
        const auto answer = connection->Get(picture.address);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 200) << picture.address;
        EXPECT_EQ(answer->body.substr(0, 2), "\xFF\xD8") << picture.address;
        EXPECT_EQ(picture.title.find_first_of("/\\:*?\"<>|"), std::string::npos) << picture.title;
    }
}

TEST_F(StationPersons, ConditionThatMakesNoSenseIsRefusedInWords)
{
    ExpectRefused({{"PageIndex", 0}}, "PageIndex");
    ExpectRefused({{"PageSize", 10001}}, "PageSize");
    ExpectRefused({{"PersonIds", "1"}}, "PersonIds");
    ExpectRefused({{"PersonIds", {"1"}}}, "PersonIds");
    ExpectRefused({{"Text", 5}}, "Text");
    ExpectRefused({{"BeginTime", "yesterday"}}, "BeginTime");
    ExpectRefused({{"MinConfidence", 101}}, "MinConfidence");
    ExpectRefused({{"PicturesOfPerson", 0}}, "PicturesOfPerson");
    ExpectRefused({{"Limit", -1}}, "Limit");
    ExpectRefused({{"CheckPasswordRequest", 1}}, "CheckPasswordRequest");
    for (const char* const missing : {"PageIndex", "PageSize"}) {
        json condition = {{"PageIndex", 1}, {"PageSize", 1}};
        condition.erase(missing);
        EXPECT_EQ(station_.Post(kSearch, condition)["ErrorCode"], 1) << missing;
    }
    EXPECT_EQ(station_.Post(kSearch, json::array())["ErrorCode"], 1);
}
