#include "MultimediaCommHost/Protection.h"
#include "Platform/DiskFile.h"
#include "Protection/Cipher.h"

#include <openssl/rand.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace Zell::MultimediaComm {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} * 1024;

std::string DiskReason(const std::string& path)
{
    return path + ": " + SystemErrorText(LastSystemError());
}

}  // namespace

struct ProtectedWriter::Impl
{
    std::string path;
    Stream stream;
    Cipher cipher;
    std::vector<unsigned char> ciphered = std::vector<unsigned char>(kPieceBytes + kBlockBytes);

    bool Put(const void* bytes, std::size_t size, std::string& reason) const
    {
        if (std::fwrite(bytes, 1, size, stream.get()) == size)
            return true;
        reason = DiskReason(path);
        return false;
    }
};

ProtectedWriter::ProtectedWriter() = default;

ProtectedWriter::~ProtectedWriter()
{
    if (!impl_)
        return;
    impl_->stream.reset();
    std::error_code ignored;
    std::filesystem::remove(std::filesystem::u8path(impl_->path), ignored);
}

bool ProtectedWriter::Open(const std::string& path, const std::string& password, std::string& reason,
                           const IsStopped& is_stopped)
{
    if (password.empty()) {
        reason = "the password is empty";
        return false;
    }
    Salt salt = {};
    CipherKey key;
    if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
        reason = "there are no random numbers";
        return false;
    }
    if (!DeriveKey(password, salt, key, is_stopped)) {
        reason = "stopped";
        return false;
    }
    auto impl = std::make_unique<Impl>();
    impl->path = path;
    impl->cipher = MakeCipher(key, key.first, true);
    if (!impl->cipher) {
        reason = "there is no AES-256-CBC";
        return false;
    }
    impl->stream = OpenToWrite(path);
    if (!impl->stream) {
        reason = DiskReason(path);
        return false;
    }
    impl_ = std::move(impl);
    return impl_->Put(kProtectedMark.data(), kProtectedMark.size(), reason) &&
           impl_->Put(salt.data(), salt.size(), reason);
}

bool ProtectedWriter::Write(const void* bytes, std::size_t size, std::string& reason)
{
    if (!impl_) {
        reason = "no file is open";
        return false;
    }
    const auto* from = static_cast<const unsigned char*>(bytes);
    while (size > 0) {
        const std::size_t piece = std::min(size, kPieceBytes);
        int count = 0;
        if (EVP_CipherUpdate(impl_->cipher.get(), impl_->ciphered.data(), &count, from,
                             static_cast<int>(piece)) != 1) {
            reason = "the cipher failed";
            return false;
        }
        if (!impl_->Put(impl_->ciphered.data(), static_cast<std::size_t>(count), reason))
            return false;
        from += piece;
        size -= piece;
    }
    return true;
}

bool ProtectedWriter::Finish(std::string& reason)
{
    if (!impl_) {
        reason = "no file is open";
        return false;
    }
    int count = 0;
    if (EVP_CipherFinal_ex(impl_->cipher.get(), impl_->ciphered.data(), &count) != 1) {
        reason = "the cipher failed";
        return false;
    }
    if (!impl_->Put(impl_->ciphered.data(), static_cast<std::size_t>(count), reason))
        return false;
    if (!Close(std::move(impl_->stream))) {
        reason = DiskReason(impl_->path);
        return false;
    }
    impl_.reset();
    return true;
}

}  // namespace Zell::MultimediaComm
