#include "tests/unit/ZellTaskKit/ClientInUse.h"
#include "ZellTaskKitHost/SensitiveKey.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <thread>
#include <vector>

namespace {

class SecretFile : public ClientInUse
{
};

TEST_F(SecretFile, OnlyTheOwnerMayReadTheKeyAndItsCopies)
{
    std::string reason;
    ASSERT_TRUE(ZellTaskKit::ShareSensitiveKey(folder_.File("station.key"), reason)) << reason;
    for (const std::string& path : {ZellTaskKit::SensitiveKeyPath(), folder_.File("station.key")}) {
        struct stat status = {};
        ASSERT_EQ(::stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0600U);
    }
}

TEST_F(SecretFile, OfManyWhoMakeTheKeyAtOnceOneWins)
{
    std::vector<std::string> ciphered(8);
    std::vector<std::thread> threads;
    for (std::string& text : ciphered)
        threads.emplace_back(
            [&text] { ZellTaskKit::PrivateEncrypt::AESEncryptForSensitiveInfor(text, "secret"); });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& text : ciphered) {
        std::string plain;
        EXPECT_TRUE(ZellTaskKit::PrivateEncrypt::AESDecryptForSensitiveInfor(plain, text, 0, false));
        EXPECT_EQ(plain, "secret");
    }
    const auto entries = std::filesystem::directory_iterator(settings_.data_path);
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

}  // namespace
