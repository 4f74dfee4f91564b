#include "FetchyardBussiness/DownloadBussinessManager.h"

#include "FetchyardBussiness/ErrorText.h"
#include "ZellBase/Leaving.h"
#include "ZellBase/MessageLoop.h"
#include "ZellErrorText/ErrorInfoMgr.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellWidgets/ZellWidgets.h"

ZELL_SINGLETON_DEFINE(FetchyardBussiness::CDownloadBussinessManager)

namespace FetchyardBussiness {

using FetchyardLogical::CDownloadTaskManager;
using Zell::Base::Error::ErrorCode;

namespace {

constexpr int kSystemErrorUnreachable = 210;

std::string TranslateErrorCode(const ErrorCode& error)
{
    ErrorCode shown = error;
    if (shown.iFirstCode == 0 && shown.iSecondCode == kSystemErrorUnreachable)
        shown = ErrorCode(0, kErrorModule, kErrorUnreachable);
    auto& texts = ZellWidgets::CUiSingleton<ZellErrorText::CErrorInfoMgr>::Instance();
    const QString text = texts.GetErrorInfoByModuleAndCode(shown.iFirstCode, shown.iSecondCode);
    return ZellWidgets::QStringToString(text, nullptr);
}

}  // namespace

CDownloadBussinessManager::CDownloadBussinessManager() = default;

// A host that leaves without Unit still has an engine that reports: it must not find an object that is gone.
// Once the process leaves, the engine's threads report no more, and one of them may hold the list for good.
CDownloadBussinessManager::~CDownloadBussinessManager()
{
    if (!Zell::Base::details::IsProcessLeaving())
        CDownloadTaskManager::Instance().SyncUnregisterObserver(this);
}

bool CDownloadBussinessManager::Init()
{
    CDownloadTaskManager& engine = CDownloadTaskManager::Instance();
    if (!engine.Init())
        return false;
    engine.SetTransCallback(&TranslateErrorCode);
    engine.RegisterObserver(this);
    // Starts of the loader are counted, and two pairs are required.
    ZellPictureLoader::InitZellPictureLoader("");
    ZellPictureLoader::InitZellPictureLoader("");
    return true;
}

bool CDownloadBussinessManager::Unit()
{
    CDownloadTaskManager& engine = CDownloadTaskManager::Instance();
    if (!engine.Unit())
        return false;
    engine.SyncUnregisterObserver(this);
    ZellPictureLoader::UninitZellPictureLoader();
    ZellPictureLoader::UninitZellPictureLoader();
    return true;
}

bool CDownloadBussinessManager::SetSensitiveInfoToTask(const std::string& text)
{
    return CDownloadTaskManager::Instance().SetSensitiveInfoToTask(text);
}

void CDownloadBussinessManager::UpdateDownloadTaskManagerState(
    const FetchyardLogical::CDownloadTaskManagerObserver::Param& reports)
{
    for (const ZellTaskKit::CTaskCallbackParam& report : reports) {
        CDownloadBussinessManagerObserver::Param param;
        param.error_code = report.GetVal_error_code();
        param.state = report.GetVal_state();
        param.task_guid = report.GetVal_task_guid();
        AddToNotifyQueue(param);
    }
}

void CDownloadBussinessManager::AddToNotifyQueue(const CDownloadBussinessManagerObserver::Param& param)
{
    Zell::Base::CMessageLoopForNotify::Instance().PostTask(
        MethodFactory().NewRunnableMethod(&CDownloadBussinessManager::NotifyObserversEIT, param));
}

void CDownloadBussinessManager::NotifyObserversEIT(const CDownloadBussinessManagerObserver::Param& param)
{
    NotifyObservers(&CDownloadBussinessManagerObserver::UpdateDownloadBussinessManagerState, param);
}

}  // namespace FetchyardBussiness
