#include "StationFixture.h"

#include <openssl/evp.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kReport[] = "/api/v1/events/report";
constexpr char kPersons[] = "/api/v1/persons/report";
constexpr char kKey[] = "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f";

// What a client sends for a password: Base64 of nonce, AES-256-GCM text and tag.
std::string Encipher(const std::string& plain)
{
    std::array<unsigned char, 32> key{};
    for (std::size_t i = 0; i < key.size(); ++i)
        key[i] = static_cast<unsigned char>(i);
    std::vector<unsigned char> sealed(12 + plain.size() + 16, 7);
    int size = 0;
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_256_gcm(), nullptr, key.data(), sealed.data());
    EVP_EncryptUpdate(context, sealed.data() + 12, &size,
                      reinterpret_cast<const unsigned char*>(plain.data()), static_cast<int>(plain.size()));
    EVP_EncryptFinal_ex(context, sealed.data() + 12 + size, &size);
    EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_GCM_GET_TAG, 16, sealed.data() + 12 + plain.size());
    EVP_CIPHER_CTX_free(context);
    std::vector<unsigned char> text(sealed.size() * 2);
    const int length = EVP_EncodeBlock(text.data(), sealed.data(), static_cast<int>(sealed.size()));
    return std::string(text.begin(), text.begin() + length);
}

class StationAccounts : public testing::Test
{
protected:
    std::string WriteKey(const std::string& digits)
    {
        const std::string path = folder_.filePath("shared.key").toStdString();
        std::ofstream(path) << digits << '\n';
        return path;
    }
    static json Condition(const std::string& user, const std::string& ciphered)
    {
        return {{"PageIndex", 1},
                {"PageSize", 10},
                {"CheckPasswordRequest",
                 {{"UserName", user},
                  {"PassWord", ciphered},
                  {"PasswordType", -1},
                  {"LoginModel", 1},
                  {"ClientGuid", ""},
                  {"ClientHardwareCode", ""}}}};
    }
    // The same for every order that a person's account stands behind.
    static std::vector<std::pair<std::string, json>> Orders(const json& condition)
    {
        json whole = condition;
        whole["FileType"] = 1;
        return {{kReport, condition},
                {"/api/v1/events/generated-report", whole},
                {"/api/v1/logs/gather", condition}};
    }
    static void ExpectRefused(const json& answer, const std::string& word)
    {
        EXPECT_EQ(answer["status"], 200);
        EXPECT_EQ(answer["ErrorModule"], 24) << answer;
        EXPECT_EQ(answer["ErrorCode"], 2) << answer;
        EXPECT_NE(answer["ErrorText"].get<std::string>().find(word), std::string::npos) << answer;
        for (const char* result : {"Sheets", "ServerGenerate", "FileGuid"})
            EXPECT_FALSE(answer.contains(result)) << result;
    }
    static int StatusAs(const StationProcess& station, const std::string& path, const std::string& user,
                        const std::string& password)
    {
        const auto client = station.Connect();
        client->set_basic_auth(user, password);
        return client->Get(path)->status;
    }

    QTemporaryDir folder_;
};

}  // namespace

TEST_F(StationAccounts, RequiredAccountIsAskedForEverywhereButForHealth)
{
    const StationProcess station(StationProcess::kEvents, {"--require-account"});
    const auto client = station.Connect();
    for (const char* path : {"/api/v1/cameras", "/pictures/event-1.jpg",
                             "/device/picture?QUERN&camera=1&event=1", "/synthetic/pictures/1-1-1.jpg"}) {
        const auto answer = client->Get(path);
        EXPECT_EQ(answer->status, 401) << path;
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 2);
        EXPECT_EQ(answer->get_header_value("WWW-Authenticate").rfind("Basic ", 0), 0u);
    }
    EXPECT_EQ(client->Post(kReport, "{}", "application/json")->status, 401);
    EXPECT_EQ(client->Get("/health")->status, 200);
}

TEST_F(StationAccounts, SeededOperatorPassesAndOthersDoNot)
{
    const StationProcess station(StationProcess::kEvents, {"--require-account"});
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "operator", "fetchyard"), 200);
    EXPECT_EQ(StatusAs(station, "/pictures/event-1.jpg", "operator", "fetchyard"), 200);
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "operator", "Fetchyard"), 401);
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "operator", ""), 401);
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "nobody", "fetchyard"), 401);
}

TEST_F(StationAccounts, AuthorizationThatCantBeReadIsRefused)
{
    const StationProcess station(StationProcess::kEvents, {"--require-account"});
    for (const char* header : {"Basic", "Basic !!!!", "Basic b3BlcmF0b3I=", "Bearer abc", "Basic YQ"}) {
        const httplib::Headers headers = {{"Authorization", header}};
        EXPECT_EQ(station.Connect()->Get("/api/v1/cameras", headers)->status, 401) << header;
    }
}

TEST_F(StationAccounts, AddedAccountHasThePasswordOfTheStandardInput)
{
    const StationProcess station(StationProcess::kEvents, {"--require-account"});
    const QStringList words = {"account", "add", "Zoë", "--data",
                               QString::fromStdString(station.DataFolder())};
    ASSERT_EQ(RunStation(words, "first: pass\n").exit_code, 0);
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "Zoë", "first: pass"), 200);
    ASSERT_EQ(RunStation(words, "second\n").exit_code, 0);
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "Zoë", "first: pass"), 401);
    EXPECT_EQ(StatusAs(station, "/api/v1/cameras", "Zoë", "second"), 200);
}

TEST_F(StationAccounts, EmptyPasswordOrNameWithAColonIsRefused)
{
    const QString data = folder_.filePath("data");
    EXPECT_EQ(RunStation({"account", "add", "zoe", "--data", data}, "\n").exit_code, 2);
    EXPECT_EQ(RunStation({"account", "add", "a:b", "--data", data}, "x\n").exit_code, 2);
    EXPECT_EQ(RunStation({"account", "remove", "zoe", "--data", data}, "x\n").exit_code, 2);
}

TEST_F(StationAccounts, PasswordsAreNotInTheDataFile)
{
    const StationProcess station;
    std::ifstream file(station.DataFolder() + "/station.db", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(bytes.find("operator"), std::string::npos);
    EXPECT_EQ(bytes.find("fetchyard"), std::string::npos);
}

TEST_F(StationAccounts, CipheredPasswordPassesWithTheSharedKey)
{
    const StationProcess station;
    station.Trust(WriteKey(kKey));
    for (const auto& [path, condition] : Orders(Condition("operator", Encipher("fetchyard"))))
        EXPECT_EQ(station.Post(path, condition)["ErrorCode"], 0) << path;
    for (const auto& [user, password, word] :
         std::vector<std::array<std::string, 3>>{{"operator", Encipher("guess"), "wrong"},
                                                 {"nobody", Encipher("fetchyard"), "wrong"},
                                                 {"operator", "fetchyard", "ciphered"},
                                                 {"operator", "", "ciphered"}})
        for (const auto& [path, condition] : Orders(Condition(user, password)))
            ExpectRefused(station.Post(path, condition), word);
}

TEST_F(StationAccounts, PollForLogsIsCheckedAsTheirOrderIs)
{
    const StationProcess station;
    station.Trust(WriteKey(kKey));
    json condition = Condition("operator", Encipher("fetchyard"));
    condition["FileGuid"] = station.Post("/api/v1/logs/gather", condition)["FileGuid"];
    EXPECT_EQ(station.Post("/api/v1/logs/gather", condition)["State"], "working");
    condition["CheckPasswordRequest"]["PassWord"] = Encipher("guess");
    ExpectRefused(station.Post("/api/v1/logs/gather", condition), "wrong");
}

TEST_F(StationAccounts, PasswordCheckThatIsNoObjectIsABadCondition)
{
    const StationProcess station;
    for (const auto& [path, condition] :
         Orders({{"PageIndex", 1}, {"PageSize", 1}, {"CheckPasswordRequest", "me"}}))
        EXPECT_EQ(station.Post(path, condition)["ErrorCode"], 1) << path;
}

TEST_F(StationAccounts, RefusalTellsWhatTheAccountHasLeftUntilARightPassword)
{
    const StationProcess station;
    station.Trust(WriteKey(kKey));
    const auto remaining = [&station](const std::string& path, const std::string& password) {
        const json answer = station.Post(path, Condition("operator", Encipher(password)));
        return std::pair<int, int>{answer.value("RemainingLoginNumber", 0),
                                   answer.value("RemainingLoginType", 0)};
    };
    using Pair = std::pair<int, int>;
    EXPECT_EQ(remaining(kReport, "guess"), Pair(4, 1));
    EXPECT_EQ(remaining(kPersons, "guess"), Pair(3, 1));
    EXPECT_EQ(remaining(kPersons, "fetchyard"), Pair(0, 0));
    for (int left = 4; left > 0; --left)
        EXPECT_EQ(remaining(kPersons, "guess"), Pair(left, 1));
    EXPECT_EQ(remaining(kPersons, "guess"), Pair(10, 2));
    ExpectRefused(station.Post(kPersons, Condition("operator", Encipher("fetchyard"))), "closed");
    EXPECT_EQ(remaining(kReport, "fetchyard").second, 2);
}

TEST_F(StationAccounts, TextOfAnotherKeyIsNoTry)
{
    const StationProcess station;
    station.Trust(WriteKey(kKey));
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(station.Post(kPersons, Condition("operator", "nonsense"))["RemainingLoginNumber"], 5);
    EXPECT_EQ(station.Post(kPersons, Condition("operator", Encipher("fetchyard")))["ErrorCode"], 0);
}

TEST_F(StationAccounts, AlteredCipherTextIsRefused)
{
    const StationProcess station;
    station.Trust(WriteKey(kKey));
    std::string text = Encipher("fetchyard");
    text[20] = text[20] == 'A' ? 'B' : 'A';
    ExpectRefused(station.Post(kReport, Condition("operator", text)), "ciphered");
}

TEST_F(StationAccounts, PasswordCheckWithoutASharedKeyIsRefused)
{
    const StationProcess station;
    ExpectRefused(station.Post(kReport, Condition("operator", Encipher("fetchyard"))), "station trust");
}

TEST_F(StationAccounts, KeyIsPrivateAndCanComeWithTheStart)
{
    const StationProcess station(StationProcess::kEvents, {"--key", QString::fromStdString(WriteKey(kKey))});
    EXPECT_EQ(station.Post(kReport, Condition("operator", Encipher("fetchyard")))["ErrorCode"], 0);
    const auto rights = std::filesystem::status(station.DataFolder() + "/sensitive.key").permissions();
    EXPECT_EQ(rights, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(StationAccounts, FileThatHoldsNoKeyIsRefusedAndTheOldKeyStays)
{
    const StationProcess station;
    station.Trust(WriteKey(kKey));
    const QString data = QString::fromStdString(station.DataFolder());
    const ProgramResult result =
        RunStation({"trust", QString::fromStdString(WriteKey("0123")), "--data", data});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.errors.find("64 hex digits"), std::string::npos) << result.errors;
    EXPECT_EQ(station.Post(kReport, Condition("operator", Encipher("fetchyard")))["ErrorCode"], 0);
}
