#include "NQX/NQX.h"
#include "NQXHost/SystemText.h"
#include "NQXHost/WideText.h"
#include "ZellBase/Util.h"
#include "ZellBaseHost/ProcessExit.h"

#include <windows.h>

#include <vector>

namespace Zell::Base::ProcessUtil {
namespace {

struct HandleCloser
{
    HANDLE handle = nullptr;
    HandleCloser() = default;
    HandleCloser(const HandleCloser&) = delete;
    HandleCloser& operator=(const HandleCloser&) = delete;
    ~HandleCloser()
    {
        if (handle != nullptr && handle != INVALID_HANDLE_VALUE)
            CloseHandle(handle);
    }
};

// The list of the handles that a process inherits.
class InheritList
{
public:
    explicit InheritList(HANDLE& handle)
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        storage_.resize(size);
        ready_ = InitializeProcThreadAttributeList(Get(), 1, 0, &size) != 0;
        good_ = ready_ && UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &handle,
                                                    sizeof handle, nullptr, nullptr) != 0;
    }
    InheritList(const InheritList&) = delete;
    InheritList& operator=(const InheritList&) = delete;
    ~InheritList()
    {
        if (ready_)
            DeleteProcThreadAttributeList(Get());
    }

    bool IsGood() const { return good_; }
    LPPROC_THREAD_ATTRIBUTE_LIST Get()
    {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(storage_.data());
    }

private:
    std::vector<unsigned char> storage_;
    bool ready_ = false;
    bool good_ = false;
};

bool Start(std::wstring line, bool hide, PROCESS_INFORMATION& process)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    HandleCloser null_device;
    null_device.handle = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inheritable, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (null_device.handle == INVALID_HANDLE_VALUE)
        return false;
    InheritList inherit(null_device.handle);
    if (!inherit.IsGood())
        return false;
    STARTUPINFOEXW start = {};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    start.StartupInfo.wShowWindow = static_cast<WORD>(hide ? SW_HIDE : SW_SHOWDEFAULT);
    start.StartupInfo.hStdInput = null_device.handle;
    start.StartupInfo.hStdOutput = null_device.handle;
    start.StartupInfo.hStdError = null_device.handle;
    start.lpAttributeList = inherit.Get();
    const DWORD flags =
        EXTENDED_STARTUPINFO_PRESENT | CREATE_NEW_PROCESS_GROUP | (hide ? CREATE_NO_WINDOW : 0u);
    return CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr,
                          &start.StartupInfo, &process) != 0;
}

bool WaitForSuccess(HANDLE process)
{
    const details::CBlockedMark blocked;
    DWORD code = 1;
    return WaitForSingleObject(process, INFINITE) == WAIT_OBJECT_0 &&
           GetExitCodeProcess(process, &code) != 0 && code == 0;
}

}  // namespace

bool LaunchApp(const std::string& command, bool wait, bool hide, void** process)
{
    if (process != nullptr)
        *process = nullptr;
    PROCESS_INFORMATION started = {};
    if (!Start(NQX_WideText(NQX_PathText(command.c_str())), hide, started)) {
        NQX_SetLastError(static_cast<int>(GetLastError()));
        return false;
    }
    CloseHandle(started.hThread);
    HandleCloser ended;
    ended.handle = started.hProcess;
    if (wait)
        return WaitForSuccess(started.hProcess);
    if (process != nullptr) {
        *process = started.hProcess;
        ended.handle = nullptr;
    }
    return true;
}

}  // namespace Zell::Base::ProcessUtil
