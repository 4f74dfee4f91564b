#include "station/Generated/OutputFile.h"

#include "station/Data/Database.h"

namespace Station {
namespace {

constexpr std::size_t kBlock = 128u << 10;  // bytes

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path)
    : name_(path.filename().u8string()), file_(path, std::ios::binary)
{
    block_.reserve(kBlock);
    if (!file_)
        throw StoreError("The file " + name_ + " can't be made.");
}

void OutputFile::Add(std::string_view bytes)
{
    block_ += bytes;
    if (block_.size() >= kBlock)
        Write();
}

void OutputFile::Close()
{
    Write();
    file_.close();
    if (!file_)
        throw StoreError("The file " + name_ + " can't be written to its end; the disk may be full.");
}

void OutputFile::Write()
{
    file_.write(block_.data(), static_cast<std::streamsize>(block_.size()));
    block_.clear();
    if (!file_)
        throw StoreError("The file " + name_ + " can't be written; the disk may be full.");
}

}  // namespace Station
