#include "MultimediaCommHost/Protection.h"
#include "Platform/DiskFile.h"
#include "Protection/Cipher.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace Zell::MultimediaComm {
namespace {

// Read at a time; whole blocks.
constexpr std::size_t kWindowBytes = std::size_t{64} * 1024;

}  // namespace

// Each block is opened with the one before it alone, so reading may begin anywhere.
struct ProtectedReader::Impl
{
    Stream stream;
    CipherKey key;
    std::int64_t ciphered_size = 0;
    std::int64_t size = 0;
    std::int64_t window_begin = 0;
    std::vector<unsigned char> ciphered = std::vector<unsigned char>(kWindowBytes);
    std::vector<unsigned char> window;

    bool ReadHeader(Salt& salt)
    {
        std::array<unsigned char, kHeaderBytes> header = {};
        if (std::fread(header.data(), 1, header.size(), stream.get()) != header.size() ||
            std::memcmp(header.data(), kProtectedMark.data(), kProtectedMark.size()) != 0)
            return false;
        std::copy_n(header.begin() + kProtectedMark.size(), salt.size(), salt.begin());
        ciphered_size = SizeOf(stream.get()) - static_cast<std::int64_t>(kHeaderBytes);
        return ciphered_size > 0 && ciphered_size % static_cast<std::int64_t>(kBlockBytes) == 0;
    }

    // Opens the window of bytes that holds the place, padding included.
    bool OpenWindow(std::int64_t place)
    {
        const std::int64_t begin = place - place % static_cast<std::int64_t>(kWindowBytes);
        const auto count = static_cast<std::size_t>(
            std::min(static_cast<std::int64_t>(kWindowBytes), ciphered_size - begin));
        Block before = key.first;
        const std::int64_t file_place = static_cast<std::int64_t>(kHeaderBytes) + begin;
        window.clear();
        if (begin > 0 && (!SeekTo(stream.get(), file_place - static_cast<std::int64_t>(kBlockBytes)) ||
                          std::fread(before.data(), 1, before.size(), stream.get()) != before.size()))
            return false;
        if (!SeekTo(stream.get(), file_place) || std::fread(ciphered.data(), 1, count, stream.get()) != count)
            return false;
        const Cipher cipher = MakeCipher(key, before, false);
        window.resize(count + kBlockBytes);
        int opened = 0;
        if (!cipher || EVP_CIPHER_CTX_set_padding(cipher.get(), 0) != 1 ||
            EVP_CipherUpdate(cipher.get(), window.data(), &opened, ciphered.data(),
                             static_cast<int>(count)) != 1)
            return false;
        window.resize(static_cast<std::size_t>(opened));
        window_begin = begin;
        return window.size() == count;
    }

    // The last byte says how many bytes, all alike, are padding.
    bool FindSize()
    {
        if (!OpenWindow(ciphered_size - 1))
            return false;
        const std::size_t padding = window.back();
        if (padding == 0 || padding > kBlockBytes)
            return false;
        const auto is_padding = [padding](unsigned char byte) { return byte == padding; };
        if (!std::all_of(window.end() - static_cast<std::ptrdiff_t>(padding), window.end(), is_padding))
            return false;
        size = ciphered_size - static_cast<std::int64_t>(padding);
        return true;
    }

    bool Holds(std::int64_t place) const
    {
        return place >= window_begin && place < window_begin + static_cast<std::int64_t>(window.size());
    }
};

ProtectedReader::ProtectedReader() = default;
ProtectedReader::~ProtectedReader() = default;

bool ProtectedReader::Open(const std::string& path, const std::string& password, std::string& reason,
                           const IsStopped& is_stopped)
{
    impl_.reset();
    auto impl = std::make_unique<Impl>();
    impl->stream = OpenToRead(path);
    Salt salt = {};
    if (!impl->stream) {
        reason = path + ": " + SystemErrorText(LastSystemError());
        return false;
    }
    if (!impl->ReadHeader(salt)) {
        reason = path + " is no protected file";
        return false;
    }
    if (!DeriveKey(password, salt, impl->key, is_stopped)) {
        reason = "stopped";
        return false;
    }
    if (!impl->FindSize()) {
        reason = path + " has another password";
        return false;
    }
    impl_ = std::move(impl);
    return true;
}

std::int64_t ProtectedReader::Size() const
{
    return impl_ ? impl_->size : 0;
}

std::int64_t ProtectedReader::Read(std::int64_t offset, void* bytes, std::size_t size)
{
    if (!impl_ || offset < 0)
        return -1;
    if (offset >= impl_->size || size == 0)
        return 0;
    if (!impl_->Holds(offset) && !impl_->OpenWindow(offset))
        return -1;
    const std::int64_t end =
        std::min(impl_->size, impl_->window_begin + static_cast<std::int64_t>(impl_->window.size()));
    const std::size_t count = std::min(size, static_cast<std::size_t>(end - offset));
    std::copy_n(impl_->window.begin() + (offset - impl_->window_begin), count,
                static_cast<unsigned char*>(bytes));
    return static_cast<std::int64_t>(count);
}

}  // namespace Zell::MultimediaComm
