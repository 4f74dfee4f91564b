#include "ZellBaseHost/PerThread.h"

#include <windows.h>

#include <system_error>

namespace Zell::Base::details {

ThreadSlot MakeThreadSlot(void (*end)(void*))
{
    const DWORD slot = FlsAlloc(end);
    if (slot == FLS_OUT_OF_INDEXES)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                                "a slot for each thread");
    return slot;
}

void* ThreadSlotValue(ThreadSlot slot)
{
    return FlsGetValue(slot);
}

void SetThreadSlotValue(ThreadSlot slot, void* value)
{
    FlsSetValue(slot, value);
}

}  // namespace Zell::Base::details
