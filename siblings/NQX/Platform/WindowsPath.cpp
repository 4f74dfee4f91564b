#include "NQXHost/Path.h"
#include "NQXHost/WideText.h"

#include <windows.h>

namespace {

// Of a folder in the usual form; a file in it may have twelve letters more.
constexpr std::size_t kLongestUsual = 247;
constexpr wchar_t kUnlimited[] = L"\\\\?\\";
constexpr wchar_t kUnlimitedShare[] = L"\\\\?\\UNC";

bool StartsWith(const std::wstring& text, const wchar_t* start)
{
    return text.rfind(start, 0) == 0;
}

// From the root on, without "." and "..", with the system's own separators.
std::wstring Whole(const std::wstring& path)
{
    const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring whole(size, L'\0');
    whole.resize(GetFullPathNameW(path.c_str(), size, whole.data(), nullptr));
    return whole;
}

}  // namespace

std::filesystem::path NQX_Path(const std::string& utf8)
{
    const std::wstring path = NQX_WideText(utf8);
    if (path.empty() || StartsWith(path, kUnlimited))
        return path;
    const std::wstring whole = Whole(path);
    if (whole.size() <= kLongestUsual)
        return path;
    return StartsWith(whole, L"\\\\") ? kUnlimitedShare + whole.substr(1) : kUnlimited + whole;
}
