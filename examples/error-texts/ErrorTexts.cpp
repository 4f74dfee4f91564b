// A ZellErrorText of one's own: every error in the words of this client.
#include <ZellErrorText/ErrorInfoMgr.h>

namespace ZellErrorText {

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
    return module == 0 && code == 0 ? QString() : QString("Das ging schief: %1/%2").arg(module).arg(code);
}

QString CErrorInfoMgr::GetErrorInfoByCode(const CErrorCodeEvent& event)
{
    return GetErrorInfoByModuleAndCode(event.Code().iFirstCode, event.Code().iSecondCode);
}

}  // namespace ZellErrorText
