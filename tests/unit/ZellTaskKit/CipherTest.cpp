#include "tests/unit/ZellTaskKit/ClientInUse.h"
#include "ZellBase/Util.h"
#include "ZellTaskKitHost/SensitiveKey.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace {

using ZellTaskKit::PrivateEncrypt::AESDecryptForSensitiveInfor;
using ZellTaskKit::PrivateEncrypt::AESEncryptForSensitiveInfor;

constexpr char kKnownKey[] = "000102030405060708090a0b0c0d0e0f101112131415161718191A1B1C1D1E1F\n";

std::string ReadAll(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Cipher : public ClientInUse
{
protected:
    void WriteKey(const std::string& text)
    {
        std::filesystem::create_directories(settings_.data_path);
        std::ofstream(ZellTaskKit::SensitiveKeyPath(), std::ios::binary) << text;
    }

    static std::string Decrypted(const std::string& text)
    {
        std::string plain = "left over";
        return AESDecryptForSensitiveInfor(plain, text, 0, false) ? plain : "refused" + plain;
    }
};

TEST_F(Cipher, WhatWasCipheredComesBack)
{
    for (const std::string& plain : {std::string("secret"), std::string(), std::string("a\0b", 3),
                                     std::string("\xE5\xAF\x86\xE7\xA0\x81"), std::string(100000, 'x')}) {
        std::string ciphered;
        ASSERT_TRUE(AESEncryptForSensitiveInfor(ciphered, plain));
        EXPECT_EQ(Decrypted(ciphered), plain);
    }
}

TEST_F(Cipher, TheTextIsNonceCipheredBytesAndTagInBase64)
{
    std::string ciphered;
    std::string bytes;
    ASSERT_TRUE(AESEncryptForSensitiveInfor(ciphered, "secret"));
    ASSERT_TRUE(Zell::Base::Encrypt::Base64Decode(bytes, ciphered));
    EXPECT_EQ(bytes.size(), 12U + 6U + 16U);
}

// Computed with another program: AES-256-GCM, nonce of twelve times 0x01.
TEST_F(Cipher, ATextOfAnotherProgramIsUnderstood)
{
    WriteKey(kKnownKey);
    EXPECT_EQ(Decrypted("AQEBAQEBAQEBAQEBEaaRVgD8CRSw+jCkn+r7iQ1x8qg1PLJCdw=="), "fetchyard");
}

TEST_F(Cipher, NoTwoCipheredTextsAreEqual)
{
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        std::string ciphered;
        ASSERT_TRUE(AESEncryptForSensitiveInfor(ciphered, "secret"));
        EXPECT_TRUE(seen.insert(ciphered).second);
    }
}

TEST_F(Cipher, EveryChangedByteIsNoticed)
{
    std::string ciphered;
    std::string bytes;
    ASSERT_TRUE(AESEncryptForSensitiveInfor(ciphered, "secret"));
    ASSERT_TRUE(Zell::Base::Encrypt::Base64Decode(bytes, ciphered));
    for (char& byte : bytes) {
        byte = static_cast<char>(byte ^ 1);
        std::string changed;
        ASSERT_TRUE(Zell::Base::Encrypt::Base64Encode(changed, bytes));
        EXPECT_EQ(Decrypted(changed), "refused");
        byte = static_cast<char>(byte ^ 1);
    }
}

TEST_F(Cipher, WhatIsNotOfThisCipherIsRefused)
{
    std::string ciphered;
    ASSERT_TRUE(AESEncryptForSensitiveInfor(ciphered, "makes a key"));
    for (const char* text : {"", "plain text", "AAAA", "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA", "%%%%"})
        EXPECT_EQ(Decrypted(text), "refused") << text;
}

TEST_F(Cipher, AnotherKeyIsRefused)
{
    std::string ciphered;
    ASSERT_TRUE(AESEncryptForSensitiveInfor(ciphered, "secret"));
    WriteKey(kKnownKey);
    EXPECT_EQ(Decrypted(ciphered), "refused");
}

TEST_F(Cipher, InputAndOutputMayBeTheSameText)
{
    std::string text = "secret";
    ASSERT_TRUE(AESEncryptForSensitiveInfor(text, text));
    ASSERT_TRUE(AESDecryptForSensitiveInfor(text, text, 0, false));
    EXPECT_EQ(text, "secret");
}

TEST_F(Cipher, DecipheringMakesNoKey)
{
    EXPECT_EQ(Decrypted("AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"), "refused");
    EXPECT_FALSE(std::filesystem::exists(ZellTaskKit::SensitiveKeyPath()));
}

TEST_F(Cipher, TheKeyIsMadeOnceAndHas64Digits)
{
    std::string reason;
    ASSERT_TRUE(ZellTaskKit::EnsureSensitiveKey(reason)) << reason;
    const std::string key = ReadAll(ZellTaskKit::SensitiveKeyPath());
    EXPECT_EQ(ZellTaskKit::SensitiveKeyPath(), folder_.File("data/sensitive.key"));
    EXPECT_EQ(key.size(), 65U);
    EXPECT_EQ(key.find_first_not_of("0123456789abcdef"), 64U);
    EXPECT_TRUE(ZellTaskKit::EnsureSensitiveKey(reason));
    EXPECT_EQ(ReadAll(ZellTaskKit::SensitiveKeyPath()), key);
}

TEST_F(Cipher, AFileThatHoldsNoKeyIsNeitherUsedNorReplaced)
{
    for (const std::string& text :
         {std::string(), std::string("short"), std::string(64, 'g'), std::string(66, '0')}) {
        WriteKey(text);
        std::string reason;
        EXPECT_FALSE(ZellTaskKit::EnsureSensitiveKey(reason));
        EXPECT_NE(reason, "");
        std::string ciphered = "left over";
        EXPECT_FALSE(AESEncryptForSensitiveInfor(ciphered, "secret"));
        EXPECT_EQ(ciphered, "");
        EXPECT_EQ(ReadAll(ZellTaskKit::SensitiveKeyPath()), text);
    }
}

TEST_F(Cipher, ASharedKeyIsACopyThatReplacesNoOther)
{
    const std::string target = folder_.File("station.key");
    std::string reason;
    ASSERT_TRUE(ZellTaskKit::ShareSensitiveKey(target, reason)) << reason;
    EXPECT_EQ(ReadAll(target), ReadAll(ZellTaskKit::SensitiveKeyPath()));
    EXPECT_TRUE(ZellTaskKit::ShareSensitiveKey(target, reason)) << reason;
    std::ofstream(target, std::ios::binary) << kKnownKey;
    EXPECT_FALSE(ZellTaskKit::ShareSensitiveKey(target, reason));
    EXPECT_EQ(ReadAll(target), kKnownKey);
    EXPECT_FALSE(ZellTaskKit::ShareSensitiveKey(folder_.File("none/station.key"), reason));
    EXPECT_NE(reason, "");
}

TEST_F(Cipher, AFolderThatCannotBeMadeIsAFailure)
{
    std::ofstream(folder_.File("file")) << "x";
    settings_.data_path = folder_.File("file/data");
    Use();
    std::string ciphered;
    EXPECT_FALSE(AESEncryptForSensitiveInfor(ciphered, "secret"));
}

}  // namespace
