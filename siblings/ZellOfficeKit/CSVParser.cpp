#include "ZellOfficeKit/CSVParser.h"

#include "CsvEncoder.h"
#include "OfficeFiles.h"
#include "OfficeLog.h"
#include "ZellBase/FileSystem.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace ZellOfficeKit {
namespace {

namespace FileSystem = Zell::Base::FileSystem;

// Paths whose file lost bytes: rows added to a new file of that name would make half a report look whole.
class CFailedPaths
{
public:
    static CFailedPaths& Instance()
    {
        static auto* paths = new CFailedPaths;
        return *paths;
    }

    void Add(const QString& path)
    {
        const std::lock_guard lock(mutex_);
        paths_.push_back(path);
        if (paths_.size() > kMost)
            paths_.pop_front();
    }

    void Remove(const QString& path)
    {
        const std::lock_guard lock(mutex_);
        paths_.erase(std::remove(paths_.begin(), paths_.end(), path), paths_.end());
    }

    bool Has(const QString& path)
    {
        const std::lock_guard lock(mutex_);
        return std::find(paths_.begin(), paths_.end(), path) != paths_.end();
    }

private:
    static constexpr std::size_t kMost = 4096;

    std::mutex mutex_;
    std::deque<QString> paths_;
};

QString KeyOfPath(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

}  // namespace

struct CCSVParser::Impl
{
    Impl() : encoder([this](char* data, std::size_t size) { return Write(data, size); }) {}

    bool Open(const QString& file_path, unsigned int flags)
    {
        Close();
        path = KeyOfPath(file_path);
        if (flags == FileSystem::kOpenAppend && CFailedPaths::Instance().Has(path))
            return false;
        const bool needs_mark = flags == FileSystem::kOpenTruncate || QFileInfo(path).size() == 0;
        handle = FileSystem::OpenFile(path.toUtf8().constData(), flags, FileSystem::kAttributesPlain);
        if (handle == FileSystem::NoFile())
            return false;
        if (flags == FileSystem::kOpenTruncate)
            CFailedPaths::Instance().Remove(path);
        encoder.Reset();
        if (needs_mark)
            encoder.AppendByteOrderMark();
        return true;
    }

    bool Write(char* data, std::size_t size)
    {
        unsigned int written = 0;
        return FileSystem::WriteFile(handle, data, static_cast<unsigned int>(size), &written) == 0 &&
               written == size;
    }

    void Close()
    {
        if (handle == FileSystem::NoFile())
            return;
        const bool flushed = encoder.Flush();
        const bool closed = FileSystem::CloseFile(handle) == 0;
        handle = FileSystem::NoFile();
        if (!flushed || !closed)
            SetAside();
    }

    void SetAside() const
    {
        CFailedPaths::Instance().Add(path);
        const std::string own = path.toStdString();
        OFFICE_LOG_ERROR("CCSVParser::CloseFile", "bytes did not reach the disk" +
                                                      MoveAside(own, NameOfPath(own), ", the file " + own));
    }

    CCsvEncoder encoder;
    QString path;
    void* handle = FileSystem::NoFile();
};

CCSVParser::CCSVParser(QWidget* /*parent*/) : impl_(std::make_unique<Impl>()) {}

CCSVParser::~CCSVParser()
{
    impl_->Close();
}

bool CCSVParser::OpenFile(const QString& path)
{
    return impl_->Open(path, FileSystem::kOpenTruncate);
}

bool CCSVParser::OpenFileWithAppendMode(const QString& path)
{
    return impl_->Open(path, FileSystem::kOpenAppend);
}

void CCSVParser::AppendLine(QStringList fields)
{
    if (impl_->handle == FileSystem::NoFile()) {
        OFFICE_LOG_ERROR("CCSVParser::AppendLine", "a record without an open file is lost");
        return;
    }
    impl_->encoder.AppendRecord(fields);
}

void CCSVParser::WriteCSVFile()
{
    if (impl_->handle != FileSystem::NoFile())
        impl_->encoder.Flush();
}

void CCSVParser::CloseFile()
{
    impl_->Close();
}

}  // namespace ZellOfficeKit
