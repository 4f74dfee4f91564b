#include "Window/RequestFile.h"

#include "Words.h"

#include <QFile>
#include <QFileInfo>

namespace FetchyardClient {

bool ReadRequestFile(const std::string& path, RequestSource& source, std::string& reason)
{
    const QFileInfo info(QString::fromStdString(path));
    if (info.exists() && !info.isFile()) {
        reason = "is no file";
        return false;
    }
    if (info.size() > kMostRequestBytes) {
        reason = "has " + SizeWords(static_cast<unsigned long long>(info.size())) +
                 ", which is no request: one has " + SizeWords(kMostRequestBytes) + " at most";
        return false;
    }
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly)) {
        reason = "can't be read: " + file.errorString().toStdString();
        return false;
    }
    // One byte more than may be: a file can grow after the look at it.
    source.text = file.read(kMostRequestBytes + 1).toStdString();
    source.label = path;
    if (static_cast<long long>(source.text.size()) > kMostRequestBytes) {
        reason = "grows while it is read";
        return false;
    }
    return true;
}

}  // namespace FetchyardClient
