#pragma once

#include "ZellOfficeKit/Export.h"

#include <QString>
#include <QStringList>

#include <memory>

class QWidget;

namespace ZellOfficeKit {

// Writes a CSV file: UTF-8 with a byte-order mark, comma, quoting by RFC 4180, CRLF behind every record. One
// object serves one file at a time, on one thread.
class ZELLOFFICEKIT_API CCSVParser
{
public:
    explicit CCSVParser(QWidget* parent);
    CCSVParser(const CCSVParser&) = delete;
    CCSVParser& operator=(const CCSVParser&) = delete;
    ~CCSVParser();

    // Opens the file and empties it. False if it can't be opened.
    bool OpenFile(const QString& path);
    // Opens the file to add records behind its end: one that is missing or empty is created with a mark, one
    // that is there gets no second mark. False if it can't be opened.
    bool OpenFileWithAppendMode(const QString& path);
    // Adds one record. Nothing is lost before WriteCSVFile unless the disk refuses it.
    void AppendLine(QStringList fields);
    // Puts the records added so far into the file.
    void WriteCSVFile();
    void CloseFile();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ZellOfficeKit
