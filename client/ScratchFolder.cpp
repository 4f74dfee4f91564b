#include "ScratchFolder.h"

#include <QDir>
#include <QUuid>

namespace FetchyardClient {

namespace {

constexpr char kMark[] = "*.client";

// A mark that can be had is that of a client that is gone, and goes with its object.
bool IsAlive(const QString& mark)
{
    QLockFile lock(mark);
    lock.setStaleLockTime(0);
    return !lock.tryLock(0);
}

bool IsAnotherAlive(const QDir& folder, const QString& own_mark)
{
    bool alive = false;
    for (const QString& mark : folder.entryList({kMark}, QDir::Files)) {
        if (mark != own_mark)
            alive = IsAlive(folder.filePath(mark)) || alive;
    }
    return alive;
}

void RemoveLeftovers(const QDir& folder)
{
    for (const QString& name : folder.entryList(QDir::Files)) {
        if (!QDir::match(kMark, name))
            QFile::remove(folder.filePath(name));
    }
}

}  // namespace

bool ScratchFolder::Open(const std::string& path, std::string& reason)
{
    const QDir folder(QString::fromStdString(path));
    if (!folder.mkpath(".")) {
        reason = "the folder " + path + " can't be made";
        return false;
    }
    // The mark goes first: of two that come at once, one at least sees the other's.
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces) + ".client";
    mark_ = std::make_unique<QLockFile>(folder.filePath(name));
    mark_->setStaleLockTime(0);
    if (!mark_->tryLock(0)) {
        reason = "the folder " + path + " can't be written";
        return false;
    }
    if (!IsAnotherAlive(folder, name))
        RemoveLeftovers(folder);
    return true;
}

}  // namespace FetchyardClient
