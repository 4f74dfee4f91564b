#include "tests/unit/ZellBase/Pattern.h"
#include "ZellBase/Util.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

using Zell::Base::GuidUtil::CreateGuid;

TEST(Guid, HasItsFiveGroupsOfLowerCaseDigits)
{
    EXPECT_THAT(CreateGuid(), FitsPattern("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-"
                                          "[0-9a-f]{12}"));
}

TEST(Guid, IsNewEachTime)
{
    std::set<std::string> guids;
    for (int i = 0; i < 1000; ++i)
        guids.insert(CreateGuid());
    EXPECT_EQ(guids.size(), 1000u);
}
