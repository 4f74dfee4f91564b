#include "ZellErrorText/ErrorInfoMgr.h"

#include "ErrorTable.h"
#include "ZellBase/Util.h"

#include <string>
#include <system_error>

namespace ZellErrorText {
namespace {

std::string Numbers(int module, int code)
{
    return "(module " + std::to_string(module) + ", code " + std::to_string(code) + ")";
}

// The system's own words; they come in its code page.
std::string SystemText(int code)
{
    const std::string words = Zell::Base::LocalToUTF8(std::system_category().message(code));
    return words + " " + Numbers(0, code);
}

std::string Text(int module, int code)
{
    if (module == 0)
        return code == 0 ? std::string() : SystemText(code);
    if (const char* const text = FindErrorText(module, code))
        return text;
    const char* const about = FindModuleText(module);
    return std::string(about != nullptr ? about : "An error occurred") + " " + Numbers(module, code) + ".";
}

}  // namespace

CErrorCodeEvent::CErrorCodeEvent(const Zell::Base::Error::ErrorCode& code) : code_(code) {}

CErrorCodeEvent::~CErrorCodeEvent() = default;

Zell::Base::Error::ErrorCode CErrorCodeEvent::Code() const
{
    return code_;
}

CErrorInfoMgr& CErrorInfoMgr::UiInstance()
{
    static auto* const manager = new CErrorInfoMgr;
    return *manager;
}

QString CErrorInfoMgr::GetErrorInfoByModuleAndCode(int module, int code)
{
    return ZellWidgets::StringToQString(Text(module, code), nullptr);
}

QString CErrorInfoMgr::GetErrorInfoByCode(const CErrorCodeEvent& event)
{
    return GetErrorInfoByModuleAndCode(event.Code().iFirstCode, event.Code().iSecondCode);
}

}  // namespace ZellErrorText
