#pragma once

#include "ClientRun.h"
#include "tests/system/StationFixture.h"

namespace SystemTest {

// A client beside the station.
class ClientFixture : public StationFixture
{
protected:
    ClientFixture() { client_.UseStation(Address()); }

    ClientRun client_;
};

}  // namespace SystemTest
