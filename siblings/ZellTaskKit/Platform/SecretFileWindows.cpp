#include "Platform/SecretFile.h"
#include "ZellBase/Util.h"

// The second can't stand alone.
// clang-format off
#include <windows.h>
#include <sddl.h>
// clang-format on

#include <array>
#include <system_error>

namespace ZellTaskKit {
namespace {

// Full access for the owner and nobody else, not inherited from the folder.
constexpr wchar_t kOwnerOnly[] = L"D:P(A;;FA;;;OW)";

std::wstring Wide(const std::string& text)
{
    const int length =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
    return wide;
}

std::string LastFailure()
{
    return std::system_category().message(static_cast<int>(GetLastError()));
}

bool WriteOwnersFile(const std::wstring& path, const std::string& content)
{
    SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(kOwnerOnly, SDDL_REVISION_1,
                                                              &attributes.lpSecurityDescriptor, nullptr))
        return false;
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, &attributes, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    LocalFree(attributes.lpSecurityDescriptor);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    const bool whole =
        WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
        written == content.size() && FlushFileBuffers(file);
    CloseHandle(file);
    return whole;
}

}  // namespace

bool SecretFileExists(const std::string& path)
{
    return GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

SecretFileCreation CreateSecretFile(const std::string& path, const std::string& content, std::string& failure)
{
    const std::wstring temporary = Wide(path + "." + Zell::Base::GuidUtil::CreateGuid());
    if (!WriteOwnersFile(temporary, content)) {
        failure = LastFailure();
        DeleteFileW(temporary.c_str());
        return SecretFileCreation::Failed;
    }
    // Without the flag to replace, the move takes a name only if it is free.
    if (MoveFileExW(temporary.c_str(), Wide(path).c_str(), MOVEFILE_WRITE_THROUGH))
        return SecretFileCreation::Created;
    const DWORD reason = GetLastError();
    const std::string words = LastFailure();
    DeleteFileW(temporary.c_str());
    if (reason == ERROR_ALREADY_EXISTS || reason == ERROR_FILE_EXISTS)
        return SecretFileCreation::WasThere;
    failure = words;
    return SecretFileCreation::Failed;
}

bool ReadSecretFile(const std::string& path, SecretFile& file)
{
    const HANDLE handle = CreateFileW(Wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    std::array<char, 4096> buffer{};
    DWORD bytes = 0;
    const bool read = handle != INVALID_HANDLE_VALUE &&
                      ReadFile(handle, buffer.data(), static_cast<DWORD>(buffer.size()), &bytes, nullptr);
    if (!read)
        file.failure = LastFailure();
    else
        file.content.assign(buffer.data(), bytes);
    if (handle != INVALID_HANDLE_VALUE)
        CloseHandle(handle);
    return read;
}

}  // namespace ZellTaskKit
