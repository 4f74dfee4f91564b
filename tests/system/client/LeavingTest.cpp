#include "ClientFixture.h"

#include <gtest/gtest.h>

using namespace SystemTest;

namespace {

class Leaving : public ClientFixture
{
};

}  // namespace

TEST_F(Leaving, HostThatForgetsUnitInMidExportStillEndsCleanly)
{
    SetFault({{"Path", "/pictures/"}, {"Kind", "delay"}, {"DelayMs", 5}, {"Count", -1}});
    for (int run = 0; run < 5; ++run) {
        QProcess host;
        host.setProcessChannelMode(QProcess::MergedChannels);
        host.start(FORGETFUL_HOST,
                   {QString::fromStdString(Address()), QString::fromStdString(client_.Path("left"))});
        ASSERT_TRUE(host.waitForFinished(60000));
        const std::string output = host.readAll().toStdString();
        EXPECT_EQ(host.exitStatus(), QProcess::NormalExit) << output;
        EXPECT_EQ(host.exitCode(), 0) << output;
    }
}
