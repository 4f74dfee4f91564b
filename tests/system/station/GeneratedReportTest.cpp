#include "StationFixture.h"

#include <string>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kOrder[] = "/api/v1/events/generated-report";
constexpr char kState[] = "/api/v1/generated/state";

class StationGenerated : public StationFixture
{
protected:
    std::string Order(const json& condition)
    {
        const json answer = station_.Post(kOrder, condition);
        EXPECT_EQ(answer["ErrorCode"], 0) << answer;
        return answer["ServerGenerate"]["TaskId"];
    }
    json Poll(const std::string& guid) { return station_.Post(kState, {{"TaskId", guid}}); }
};

}  // namespace

TEST_F(StationGenerated, PollsAreWorkingUntilTheyAreUsedUp)
{
    const std::string guid = Order({{"FileType", 1}, {"ReadyAfterPolls", 2}});
    EXPECT_EQ(Poll(guid)["State"], "working");
    EXPECT_EQ(Poll(guid)["State"], "working");
}
