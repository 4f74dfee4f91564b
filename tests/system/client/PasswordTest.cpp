#include "ClientFixture.h"

#include <gtest/gtest.h>

using nlohmann::json;
using namespace SystemTest;

namespace {

class ClientPasswords : public ClientFixture
{
protected:
    // The key goes to the station by the two commands that a person would use.
    void ShareKey()
    {
        const QString key = QString::fromStdString(client_.Path("shared.key"));
        ASSERT_EQ(client_.Run({"share-key", key}).exit_code, 0);
        Trust(key.toStdString());
    }

    json CheckedRequest(const std::string& password)
    {
        json request = ReportRequest(client_, "Checked", 1, "none", 20);
        Section(request, "ExportFileParam")["CheckPasswordRequest"] = {
            {"UserName", "operator"}, {"PassWord", password}, {"PasswordType", 0}, {"LoginModel", 1}};
        return request;
    }

    ClientRun::Result RunEnciphered(const json& request)
    {
        const std::string path = client_.Path("checked.json");
        QFile file(QString::fromStdString(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(request.dump()));
        file.close();
        return client_.Run({"run", "--encipher", QString::fromStdString(path)});
    }
};

int TestArchive(const std::string& path, const QString& password)
{
    QProcess archiver;
    archiver.start("7za", {"t", "-p" + password, QString::fromStdString(path)});
    archiver.waitForFinished(-1);
    return archiver.exitCode();
}

}  // namespace

TEST_F(ClientPasswords, PackedExportOpensWithItsPasswordAlone)
{
    json request = ReportRequest(client_, "Packed", 0, "embedded", 30);
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    Section(request, "WriteFileCondition")["ZipPassword"] = "it's $ecret";
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::string archive = client_.ExportFolder() + "Packed/Packed.zip";
    EXPECT_EQ(FilesBelow(client_.ExportFolder() + "Packed"), std::vector<std::string>{"Packed.zip"});
    EXPECT_EQ(TestArchive(archive, "it's $ecret"), 0);
    EXPECT_EQ(TestArchive(archive, "another"), 2);
}

TEST_F(ClientPasswords, EmptyPasswordPacksWithoutOne)
{
    json request = ReportRequest(client_, "Open", 1, "none", 30);
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(TestArchive(client_.ExportFolder() + "Open/Open.zip", ""), 0);
}

TEST_F(ClientPasswords, StationAcceptsAPasswordThatWasCipheredWithTheSharedKey)
{
    ShareKey();
    const auto result = RunEnciphered(CheckedRequest("fetchyard"));
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Exists(client_.ExportFolder() + "Checked/Checked.csv"));
}

TEST_F(ClientPasswords, WrongPasswordFailsTheExportInWords)
{
    ShareKey();
    const auto result = RunEnciphered(CheckedRequest("guess"));
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Checked: failed: "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("password"), std::string::npos) << result.output;
}

TEST_F(ClientPasswords, KeyIsReadableByItsOwnerAlone)
{
    ShareKey();
    for (const char* name : {"data/sensitive.key", "shared.key"}) {
        const QFile::Permissions all = QFile::permissions(QString::fromStdString(client_.Path(name)));
        EXPECT_FALSE(all & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther))
            << name;
    }
}

TEST_F(ClientPasswords, CipheredTextIsAnotherEachTime)
{
    const auto first = client_.Run({"cipher"}, "secret\n");
    const auto second = client_.Run({"cipher"}, "secret\n");
    EXPECT_EQ(first.exit_code, 0);
    EXPECT_NE(first.output, second.output);
}

TEST_F(ClientPasswords, ShareKeyDoesNotReplaceAnotherFile)
{
    const QString path = QString::fromStdString(client_.Path("shared.key"));
    QFile other(path);
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.write("something else");
    other.close();
    EXPECT_EQ(client_.Run({"share-key", path}).exit_code, 1);
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    EXPECT_EQ(other.readAll(), "something else");
}
