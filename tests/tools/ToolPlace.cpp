#include "ToolPlace.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace tools {

namespace fs = std::filesystem;

ToolPlace::ToolPlace()
{
    const fs::path folder = fs::u8path(Folder());
    for (const char* name : {"7za.exe", "wkhtmltopdf", "wkhtmltopdf.exe"})
        fs::copy_file(fs::u8path(OUTSIDE_TOOL), folder / name);
    fs::current_path(folder);
    qputenv("PATH", directory_.path().toLocal8Bit() + QDir::listSeparator().toLatin1() + search_path_);
    qputenv("TOOL_REPORT", (Folder() + "told").c_str());
    EndWith(0);
}

ToolPlace::~ToolPlace()
{
    fs::current_path(before_);
    qputenv("PATH", search_path_);
    qunsetenv("TOOL_REPORT");
    qunsetenv("TOOL_CODE");
}

std::string ToolPlace::Folder() const
{
    return directory_.path().toStdString() + "/";
}

void ToolPlace::EndWith(int code)
{
    qputenv("TOOL_CODE", QByteArray::number(code));
}

bool ToolPlace::HasRun() const
{
    return QFile::exists(directory_.filePath("told"));
}

std::string ToolPlace::Told(const std::string& word) const
{
    QFile file(directory_.filePath("told"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString start = QString::fromStdString(word) + " ";
    QString lines;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.startsWith(start))
            lines += line.mid(start.size()) + "\n";
    }
    lines.replace(directory_.path() + "/", "<tmp>/");
    lines.replace(QRegularExpression("\\d{4}(_\\d\\d){5}_\\d{3}"), "<stamp>");
    return lines.toStdString();
}

}  // namespace tools
