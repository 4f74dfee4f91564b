#pragma once

#include "ZellBase/Export.h"

#include <memory>
#include <mutex>

namespace Zell::Base {

// One instance of T in a process, created at the first Instance() and destroyed with the statics of the
// library that owns it.
//
// The two statics exist once only if every module sees the same instantiation: the header of T declares it
// with ZELL_SINGLETON_DECLARE behind the class, one source of the owning library defines it with
// ZELL_SINGLETON_DEFINE. T befriends CSingleton<T> when its constructor is private.
template <typename T>
class ZELL_TEMPLATE_VISIBLE CSingleton
{
public:
    CSingleton(const CSingleton&) = delete;
    CSingleton& operator=(const CSingleton&) = delete;

    // Any thread. Takes mutex_ at each call: an unlocked look at the pointer would race with its creation.
    static ZELL_TEMPLATE_FUNCTION T& Instance()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!s_instance_)
            s_instance_.reset(new T());
        return *s_instance_;
    }

protected:
    CSingleton() = default;
    ~CSingleton() = default;

    static ZELL_TEMPLATE_MEMBER std::mutex mutex_;
    static ZELL_TEMPLATE_MEMBER std::unique_ptr<T> s_instance_;
};

template <typename T>
std::mutex CSingleton<T>::mutex_;
template <typename T>
std::unique_ptr<T> CSingleton<T>::s_instance_;

}  // namespace Zell::Base

// At global scope, behind the definition of the class, in the header that users include; and in one source of
// the library that owns T.
#define ZELL_SINGLETON_DECLARE(T) extern template class Zell::Base::CSingleton<T>;
#define ZELL_SINGLETON_DEFINE(T) template class ZELL_INSTANCE_DEFINED Zell::Base::CSingleton<T>;
