#pragma once

#include "ClientRun.h"
#include "StationFixture.h"

namespace SystemTest {

// A test with a station of its own and a client that is pointed at it.
class ClientFixture : public StationFixture
{
protected:
    ClientFixture() { client_.UseStation(Address()); }

    ClientRun client_;
};

}  // namespace SystemTest
