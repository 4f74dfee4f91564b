#include "ZellErrorText/ErrorInfoMgr.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <string>

namespace ZellErrorText {
namespace {

std::string Pair(int module, int code)
{
    return std::to_string(module) + "/" + std::to_string(code);
}

QString TextOf(int module, int code)
{
    const auto& texts = fakes::TheScript().error_texts;
    const auto found = texts.find({module, code});
    return QString::fromStdString(found == texts.end() ? "text of " + Pair(module, code) : found->second);
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
    static auto* manager = new CErrorInfoMgr;
    return *manager;
}

QString CErrorInfoMgr::GetErrorInfoByModuleAndCode(int module, int code)
{
    fakes::Call("GetErrorInfoByModuleAndCode", Pair(module, code));
    return TextOf(module, code);
}

QString CErrorInfoMgr::GetErrorInfoByCode(const CErrorCodeEvent& event)
{
    const Zell::Base::Error::ErrorCode code = event.Code();
    fakes::Call("GetErrorInfoByCode", Pair(code.iFirstCode, code.iSecondCode));
    return TextOf(code.iFirstCode, code.iSecondCode);
}

}  // namespace ZellErrorText
