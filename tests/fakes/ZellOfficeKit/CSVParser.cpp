#include "ZellOfficeKit/CSVParser.h"

#include "fakes/Journal.h"

#include <string>

namespace ZellOfficeKit {

struct CCSVParser::Impl
{
};

CCSVParser::CCSVParser(QWidget* parent)
{
    if (parent != nullptr)
        fakes::Append("csv with a parent");
}

CCSVParser::~CCSVParser() = default;

bool CCSVParser::OpenFile(const QString& path)
{
    return fakes::Call("csv open", path.toStdString());
}

bool CCSVParser::OpenFileWithAppendMode(const QString& path)
{
    return fakes::Call("csv open to append", path.toStdString());
}

void CCSVParser::AppendLine(QStringList fields)
{
    std::string shown;
    for (const QString& field : fields)
        shown += (shown.empty() ? "\"" : ",\"") + field.toStdString() + "\"";
    fakes::Call("csv line", shown);
}

void CCSVParser::WriteCSVFile()
{
    fakes::Call("csv write", "");
}

void CCSVParser::CloseFile()
{
    fakes::Call("csv close", "");
}

}  // namespace ZellOfficeKit
