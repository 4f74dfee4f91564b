#include "OpenCheck.h"

#include "MultimediaComm/PlayLocalFileEx.h"
#include "NQX/NQX.h"
#include "ZellBase/Util.h"

#include <QFile>

#include <array>

namespace FetchyardClient {

namespace {

using Zell::Base::StringUtil::str_fmt;

bool EndsWith(const std::string& text, const char* ending)
{
    const std::string tail(ending);
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

bool IsPicture(const QByteArray& head)
{
    return head.startsWith("\xFF\xD8\xFF") || head.startsWith("\x89PNG") || head.startsWith("GIF8") ||
           head.startsWith("BM") || head.startsWith("RIFF");
}

std::string CheckVideo(const ExpectedFile& file, const QByteArray& head)
{
    if (!file.password.empty())
        return head.startsWith("Salted__") ? "" : "is not protected";
    Zell::MultimediaComm::CPlayLocalFileEx player;
    long port = -1;
    return player.StartPlayLocalFile(port, file.path, nullptr, 0) ? "" : "is no video";
}

std::string CheckArchive(const ExpectedFile& file, const QByteArray& head)
{
    if (!head.startsWith("PK"))
        return "is no archive";
    if (NQX_AccessFile("7za.exe", 0) != 0)
        return "";
    const std::string password = file.password.empty() ? "" : " -p\"" + file.password + "\"";
    const std::string line = str_fmt("7za.exe t%s -- \"%s\"", password.c_str(), file.path.c_str());
    return Zell::Base::ProcessUtil::LaunchApp(line, true, true, nullptr)
               ? ""
               : "is damaged: the archiver refuses it";
}

}  // namespace

std::string WhyItDoesNotOpen(const ExpectedFile& file)
{
    QFile opened(QString::fromStdString(file.path));
    if (!opened.exists())
        return "is missing";
    if (!opened.open(QIODevice::ReadOnly))
        return "can't be opened: " + opened.errorString().toStdString();
    const QByteArray head = opened.read(16);
    opened.close();
    if (file.content == ExpectedFile::Content::kAny)
        return "";
    if (file.content == ExpectedFile::Content::kPicture)
        return IsPicture(head) ? "" : "is no picture";
    if (file.content == ExpectedFile::Content::kVideo)
        return CheckVideo(file, head);
    if (EndsWith(file.path, ".zip") || EndsWith(file.path, ".xlsx"))
        return CheckArchive(file, head);
    if (EndsWith(file.path, ".pdf"))
        return head.startsWith("%PDF-") ? "" : "is no PDF";
    if (EndsWith(file.path, ".csv"))
        return head.startsWith("\xEF\xBB\xBF") ? "" : "has no byte-order mark";
    if (EndsWith(file.path, ".jpg"))
        return IsPicture(head) ? "" : "is no picture";
    return "";
}

}  // namespace FetchyardClient
