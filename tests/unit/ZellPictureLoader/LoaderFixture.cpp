#include "LoaderFixture.h"

#include "ZellBase/Util.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <chrono>
#include <fstream>
#include <iterator>

namespace picture_test {

namespace fs = std::filesystem;
using ZellPictureLoader::CImageMultiSyncLoader;
using ZellPictureLoader::CImageSyncParam;
using ZellPictureLoader::CImgUrlKey;

std::string Text(const ErrorCode& error)
{
    return std::to_string(error.iFirstCode) + "/" + std::to_string(error.iSecondCode);
}

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const fs::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

std::size_t CountEntries(const fs::path& folder)
{
    std::error_code missing;
    const fs::recursive_directory_iterator entries(folder, missing);
    return missing ? 0 : static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

Key OrdinaryKey(const std::string& address)
{
    auto key = std::make_shared<CImgUrlKey>();
    key->SetValurl_type(static_cast<CImgUrlKey::Type>(1));
    key->SetValstrImageUrl(address);
    key->SetValb_save_cache(true);
    key->SetValidWorkStation(0);
    return key;
}

Key DeviceKey(const std::string& address, const std::string& request)
{
    const Key key = OrdinaryKey(address);
    key->SetValurl_type(static_cast<CImgUrlKey::Type>(17));
    key->SetValstr_request(request);
    key->SetValb_save_cache(false);
    return key;
}

std::vector<Key> OrdinaryKeys(int count, const std::string& stem)
{
    std::vector<Key> keys;
    for (int i = 0; i < count; ++i)
        keys.push_back(OrdinaryKey(stem + std::to_string(i) + ".jpg"));
    return keys;
}

LoaderTest::LoaderTest()
    : folder_(fs::temp_directory_path() / ("pictures-" + Zell::Base::GuidUtil::CreateGuid())),
      data_(folder_ / "data"),
      exports_(folder_ / "exports"),
      server_(PictureServer::Instance())
{
    fs::create_directories(data_);
    fs::create_directories(exports_);
    SetSites();
}

LoaderTest::~LoaderTest()
{
    for (; starts_ > 0; --starts_)
        ZellPictureLoader::UninitZellPictureLoader();
    server_.Reset();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

void LoaderTest::Start(const ZellPictureLoader::LoaderBounds& bounds)
{
    ZellPictureLoader::SetLoaderBounds(bounds);
    ASSERT_TRUE(ZellPictureLoader::InitZellPictureLoader(""));
    ++starts_;
}

void LoaderTest::SetSites(const std::string& user, const std::string& password)
{
    ZellClientHost::ClientSettings settings;
    settings.data_path = data_.u8string() + "/";
    settings.public_data_path = settings.data_path;
    settings.user_name = user;
    settings.password = password;
    settings.sites = {{0, server_.url()}, {7, server_.url() + "/seven"}};
    ZellClientHost::SetClientSettings(settings);
}

std::string LoaderTest::Load(const Key& key, const std::string& name)
{
    const auto param = std::make_shared<CImageSyncParam>();
    param->image_param = key;
    param->save_full_name = Target(name).u8string();
    ErrorCode error(1, 1);
    CImageMultiSyncLoader loader;
    const bool loaded = loader.SyncLoadImage(error, param);
    EXPECT_EQ(loaded, Text(error) == "0/0") << Text(error);
    return Text(error);
}

std::string LoaderTest::LoadIntoMemory(const Key& key, std::string& data)
{
    ErrorCode error(1, 1);
    CImageMultiSyncLoader loader;
    const bool loaded = loader.SyncLoadImage(error, data, key);
    EXPECT_EQ(loaded, Text(error) == "0/0") << Text(error);
    return Text(error);
}

bool LoaderTest::Quiet()
{
    return ZellPictureLoader::WaitUntilQuiet(std::chrono::seconds(10));
}

}  // namespace picture_test
