#include "FetchyardBussiness/ErrorText.h"

#include "ZellErrorText/ErrorInfoMgr.h"

namespace FetchyardBussiness {

QString ErrorMessage(const Zell::Base::Error::ErrorCode& error)
{
    const ZellErrorText::CErrorCodeEvent event(error);
    return ZellWidgets::CUiSingleton<ZellErrorText::CErrorInfoMgr>::Instance().GetErrorInfoByCode(event);
}

}  // namespace FetchyardBussiness
