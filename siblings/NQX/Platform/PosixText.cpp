#include "NQXHost/SystemText.h"
#include "Platform/PosixIconv.h"

#include <langinfo.h>
#include <locale.h>

namespace {

// The code page of the environment; empty where text needs no conversion. A process without a locale ("C",
// whose code page is ASCII) gets UTF-8: names of files are plain bytes to the system, and ASCII would lose
// all others.
const std::string& CodePage()
{
    static const auto* const page = [] {
        std::string name;
        const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
        if (locale != nullptr) {
            name = nl_langinfo_l(CODESET, locale);
            freelocale(locale);
        }
        if (name == "UTF-8" || name == "utf8" || name == "ANSI_X3.4-1968" || name == "US-ASCII")
            name.clear();
        return new std::string(name);
    }();
    return *page;
}

}  // namespace

std::string NQX_UTF8ToLocal(const std::string& text)
{
    return CodePage().empty() ? text : ConvertCodePage(text, "UTF-8", CodePage().c_str());
}

std::string NQX_LocalToUTF8(const std::string& text)
{
    return CodePage().empty() ? text : ConvertCodePage(text, CodePage().c_str(), "UTF-8");
}
