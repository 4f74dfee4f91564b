#pragma once

#include "PictureServer.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellPictureLoaderHost/LoaderHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace picture_test {

using Key = std::shared_ptr<ZellPictureLoader::CImgUrlKey>;
using Zell::Base::Error::ErrorCode;

// How a test speaks of an error: "23/6".
std::string Text(const ErrorCode& error);
std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const std::string& text);
std::size_t CountEntries(const std::filesystem::path& folder);

// A key that may be cached, as the writers make it.
Key OrdinaryKey(const std::string& address);
// A device's, which may not.
Key DeviceKey(const std::string& address, const std::string& request);
std::vector<Key> OrdinaryKeys(int count, const std::string& stem = "/pictures/");

// A client with a data folder, an export folder and one site; the loader is not started yet.
class LoaderTest : public ::testing::Test
{
protected:
    LoaderTest();
    ~LoaderTest() override;

    void Start(const ZellPictureLoader::LoaderBounds& bounds = {});
    // Makes the settings of the client known anew.
    void SetSites(const std::string& user = {}, const std::string& password = {});

    // Each gives the text of the error, "0/0" for success.
    std::string Load(const Key& key, const std::string& name = "out.jpg");
    std::string LoadIntoMemory(const Key& key, std::string& data);

    std::filesystem::path Target(const std::string& name) const { return exports_ / name; }
    std::filesystem::path CacheRoot() const { return data_ / "PictureCache"; }
    bool Quiet();

    std::filesystem::path folder_;
    std::filesystem::path data_;
    std::filesystem::path exports_;
    PictureServer& server_;
    int starts_ = 0;
};

}  // namespace picture_test
