#pragma once

#include "ClientRun.h"
#include "tests/system/StationFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace SystemTest {

// A client beside the station.
class ClientFixture : public StationFixture
{
protected:
    ClientFixture() { client_.UseStation(Address()); }

    static void ExpectWords(const ClientRun::Result& result, const std::string& words)
    {
        EXPECT_NE(result.output.find(words), std::string::npos) << result.output;
    }

    ClientRun client_;
};

}  // namespace SystemTest
