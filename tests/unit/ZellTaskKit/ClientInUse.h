#pragma once

#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellTaskKit/ClientServices.h"

#include <gtest/gtest.h>

#include <string>

// A client with a data folder of the test's own, and nobody logged in.
class ClientInUse : public testing::Test
{
protected:
    ClientInUse()
    {
        settings_.data_path = folder_.File("data");
        settings_.public_data_path = folder_.File("public");
        Use();
        ZellTaskKit::CUserCommonManager::Instance().SetUserInfo("", "");
    }
    ~ClientInUse() override { ZellClientHost::SetClientSettings(former_); }

    void Use() { ZellClientHost::SetClientSettings(settings_); }

    const ZellClientHost::ClientSettings former_ = ZellClientHost::GetClientSettings();
    TempFolder folder_;
    ZellClientHost::ClientSettings settings_;
};
