#include "EvidenceFiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <cerrno>

namespace Evidence {

using Zell::Base::Error::ErrorCode;

namespace {

ErrorCode MarkFile(const QDir& folder, const QString& path, FileMark& mark)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly))
        return ErrorCode(2, 0, file.error() == QFileDevice::PermissionsError ? EACCES : ENOENT);
    if (!hash.addData(&file))
        return ErrorCode(2, 0, EIO);
    mark.name = folder.relativeFilePath(path).toStdString();
    mark.bytes = static_cast<std::uint64_t>(file.size());
    mark.sha256 = hash.result().toHex().toStdString();
    return ErrorCode();
}

}  // namespace

ErrorCode MarkFiles(const std::string& folder, std::vector<FileMark>& marks)
{
    const QDir root(QString::fromStdString(folder));
    if (!root.exists())
        return ErrorCode(2, 0, ENOENT);
    QDirIterator walk(root.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        FileMark mark;
        const ErrorCode error = MarkFile(root, walk.next(), mark);
        if (error.iFirstCode != 0 || error.iSecondCode != 0)
            return error;
        marks.push_back(mark);
    }
    std::sort(marks.begin(), marks.end(),
              [](const FileMark& left, const FileMark& right) { return left.name < right.name; });
    return ErrorCode();
}

}  // namespace Evidence
