#pragma once

#include "ZellBase/Export.h"

namespace Zell::Base::details {

// A slot in which each thread has a value of its own, null at first. end is called with the value of a thread
// that ends, on that thread and if it is not null. Throws std::system_error if the system has no slot left;
// it has at least a hundred for a process, and they are never given back.
using ThreadSlot = unsigned long;
ZELLBASE_API ThreadSlot MakeThreadSlot(void (*end)(void*));
ZELLBASE_API void* ThreadSlotValue(ThreadSlot slot);
ZELLBASE_API void SetThreadSlotValue(ThreadSlot slot, void* value);

// A T for each thread that asks, made at its first call and destroyed when the thread ends. Stands for
// thread_local where T has a destructor: GCC for Windows gives a thread's variables back before it calls
// their destructors. To be kept by a static that is never destroyed.
template <typename T>
class CPerThread
{
public:
    CPerThread() : slot_(MakeThreadSlot([](void* value) { delete static_cast<T*>(value); })) {}
    CPerThread(const CPerThread&) = delete;
    CPerThread& operator=(const CPerThread&) = delete;

    T& Value() const
    {
        void* value = ThreadSlotValue(slot_);
        if (value == nullptr) {
            value = new T();
            SetThreadSlotValue(slot_, value);
        }
        return *static_cast<T*>(value);
    }

private:
    const ThreadSlot slot_;
};

}  // namespace Zell::Base::details
