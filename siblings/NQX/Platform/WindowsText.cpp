#include "NQXHost/SystemText.h"
#include "NQXHost/WideText.h"

#include <windows.h>

namespace {

std::wstring ToWide(const std::string& text, UINT code_page)
{
    const int size = static_cast<int>(text.size());
    const int wide_size = MultiByteToWideChar(code_page, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(wide_size), L'\0');
    MultiByteToWideChar(code_page, 0, text.data(), size, wide.data(), wide_size);
    return wide;
}

// A letter that the code page lacks becomes its default letter, "?". UTF-8 takes no default letter.
std::string FromWide(const std::wstring& wide, UINT code_page)
{
    const int wide_size = static_cast<int>(wide.size());
    const char* const unknown = code_page == CP_UTF8 ? nullptr : "?";
    const int size = WideCharToMultiByte(code_page, 0, wide.data(), wide_size, nullptr, 0, unknown, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(code_page, 0, wide.data(), wide_size, text.data(), size, unknown, nullptr);
    return text;
}

}  // namespace

std::wstring NQX_WideText(const std::string& utf8)
{
    return ToWide(utf8, CP_UTF8);
}

std::string NQX_NarrowText(const std::wstring& wide)
{
    return FromWide(wide, CP_UTF8);
}

std::string NQX_UTF8ToLocal(const std::string& text)
{
    return GetACP() == CP_UTF8 ? text : FromWide(ToWide(text, CP_UTF8), CP_ACP);
}

std::string NQX_LocalToUTF8(const std::string& text)
{
    return GetACP() == CP_UTF8 ? text : FromWide(ToWide(text, CP_ACP), CP_UTF8);
}
