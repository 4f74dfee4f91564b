#include "ZellBaseHost/PerThread.h"

#include <pthread.h>

#include <system_error>

namespace Zell::Base::details {

ThreadSlot MakeThreadSlot(void (*end)(void*))
{
    pthread_key_t key = 0;
    if (const int error = pthread_key_create(&key, end))
        throw std::system_error(error, std::generic_category(), "a slot for each thread");
    return key;
}

void* ThreadSlotValue(ThreadSlot slot)
{
    return pthread_getspecific(static_cast<pthread_key_t>(slot));
}

void SetThreadSlotValue(ThreadSlot slot, void* value)
{
    pthread_setspecific(static_cast<pthread_key_t>(slot), value);
}

}  // namespace Zell::Base::details
