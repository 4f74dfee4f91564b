#pragma once

#include "StationProcess.h"

#include <gtest/gtest.h>

#include <string>

namespace SystemTest {

// A test with a station of its own.
class StationFixture : public testing::Test
{
protected:
    std::string Address() const { return station_.Address(); }
    void SetFault(const nlohmann::json& fault) const { station_.SetFault(fault); }
    void Trust(const std::string& key_file) const { station_.Trust(key_file); }

    StationProcess station_;
};

}  // namespace SystemTest
