#include "MultimediaCommHost/Protection.h"
#include "Platform/DiskFile.h"
#include "Video/MoveIntoPlace.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace Zell::MultimediaComm {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{1024} * 1024;

// Holds the name of a file that is being written, and removes the file unless it has been moved away.
class Part
{
public:
    explicit Part(const std::string& target) : path_(NameBeside(target)) {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
    ~Part()
    {
        std::error_code ignored;
        std::filesystem::remove(std::filesystem::u8path(path_), ignored);
    }

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

bool FailsOnDisk(const std::string& path, std::string& reason)
{
    reason = path + ": " + SystemErrorText(LastSystemError());
    return false;
}

}  // namespace

bool ReadProtected(const std::string& file, const std::string& password,
                   const std::function<bool(const char* bytes, std::size_t size)>& sink, std::string& reason)
{
    ProtectedReader reader;
    if (!reader.Open(file, password, reason))
        return false;
    std::vector<char> piece(kPieceBytes);
    std::int64_t place = 0;
    while (place < reader.Size()) {
        const std::int64_t count = reader.Read(place, piece.data(), piece.size());
        if (count <= 0) {
            reason = file + " can't be read";
            return false;
        }
        if (!sink(piece.data(), static_cast<std::size_t>(count))) {
            reason = "ended by the receiver";
            return false;
        }
        place += count;
    }
    return true;
}

bool Unprotect(const std::string& file, const std::string& password, const std::string& target,
               std::string& reason)
{
    const Part part(target);
    Stream stream = OpenToWrite(part.Path());
    if (!stream)
        return FailsOnDisk(target, reason);
    bool is_written = true;
    const auto sink = [&](const char* bytes, std::size_t size) {
        is_written = std::fwrite(bytes, 1, size, stream.get()) == size;
        return is_written || FailsOnDisk(target, reason);
    };
    std::string words;
    if (!ReadProtected(file, password, sink, words)) {
        if (is_written)
            reason = words;
        return false;
    }
    bool is_other_system = false;
    return (Close(std::move(stream)) && RenameEntry(part.Path(), target, is_other_system)) ||
           FailsOnDisk(target, reason);
}

bool Protect(const std::string& file, const std::string& password, const std::string& target,
             std::string& reason)
{
    const Stream stream = OpenToRead(file);
    if (!stream)
        return FailsOnDisk(file, reason);
    const Part part(target);
    ProtectedWriter writer;
    if (!writer.Open(part.Path(), password, reason))
        return false;
    std::vector<char> piece(kPieceBytes);
    for (std::size_t count = 1; count > 0;) {
        count = std::fread(piece.data(), 1, piece.size(), stream.get());
        if (!writer.Write(piece.data(), count, reason))
            return false;
    }
    if (std::ferror(stream.get()) != 0)
        return FailsOnDisk(file, reason);
    bool is_other_system = false;
    return writer.Finish(reason) &&
           (RenameEntry(part.Path(), target, is_other_system) || FailsOnDisk(target, reason));
}

}  // namespace Zell::MultimediaComm
