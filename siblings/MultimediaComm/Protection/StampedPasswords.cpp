#include "Protection/StampedPasswords.h"

#include "MultimediaCommHost/Protection.h"

#include <openssl/crypto.h>

#include <filesystem>
#include <list>
#include <mutex>

namespace Zell::MultimediaComm {
namespace {

constexpr std::size_t kMostFiles = 256;

struct Entry
{
    std::string path;
    std::string password;

    Entry(std::string of, std::string word) : path(std::move(of)), password(std::move(word)) {}
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry() { OPENSSL_cleanse(password.data(), password.size()); }
};

// Never destroyed: threads may still stamp while the process leaves.
struct Passwords
{
    std::mutex mutex;
    std::list<Entry> entries;  // the oldest in front

    static Passwords& Instance()
    {
        static auto* const passwords = new Passwords;
        return *passwords;
    }
};

std::string Plain(const std::string& path)
{
    std::error_code ignored;
    const auto whole = std::filesystem::absolute(std::filesystem::u8path(path), ignored);
    return whole.lexically_normal().generic_u8string();
}

}  // namespace

void ProtectStamped(const std::string& source_video, const std::string& password)
{
    const std::string path = Plain(source_video);
    Passwords& passwords = Passwords::Instance();
    const std::lock_guard<std::mutex> lock(passwords.mutex);
    auto& entries = passwords.entries;
    entries.remove_if([&path](const Entry& entry) { return entry.path == path; });
    if (password.empty())
        return;
    if (entries.size() == kMostFiles)
        entries.pop_front();
    entries.emplace_back(path, password);
}

std::string PasswordOf(const std::string& path)
{
    const std::string plain = Plain(path);
    Passwords& passwords = Passwords::Instance();
    const std::lock_guard<std::mutex> lock(passwords.mutex);
    for (const Entry& entry : passwords.entries) {
        if (entry.path == plain)
            return entry.password;
    }
    return {};
}

}  // namespace Zell::MultimediaComm
