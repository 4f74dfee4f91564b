#pragma once

#include "ZellBase/Task.h"
#include "ZellBase/WeakReference.h"

#include <memory>
#include <utility>

namespace Zell::Base {

// A call of one member function with one argument, bound for a queue. It does nothing once the object's
// factory is gone or the call was cancelled.
template <typename T, typename Param>
class RunnableMethod : public CCancelableTask
{
public:
    using Method = void (T::*)(const Param&);

    RunnableMethod(std::shared_ptr<details::CWeakReference> reference, T* object, Method method, Param param)
        : reference_(std::move(reference)), object_(object), method_(method), param_(std::move(param))
    {
    }

    void Exec() override
    {
        if (reference_)
            reference_->IfValid([this] { Call(); });
    }

    void Cancel() override
    {
        reference_.reset();
        object_ = nullptr;
    }

private:
    // Not written into the lambda: GCC 12 with -fsanitize=undefined loses the object there.
    void Call() { (object_->*method_)(param_); }

    std::shared_ptr<details::CWeakReference> reference_;
    T* object_;
    Method method_;
    Param param_;
};

// Makes such calls for the object in which it is embedded, and voids those still queued when it goes.
template <typename T>
class CScopedRunnableMethodFactory
{
public:
    explicit CScopedRunnableMethodFactory(T* object) : object_(object) {}

    // The caller owns the result; CMessageLoopBase::PostTask takes it over.
    template <typename Param>
    RunnableMethod<T, Param>* NewRunnableMethod(void (T::*method)(const Param&), const Param& param)
    {
        return new RunnableMethod<T, Param>(owner_.GetRef(), object_, method, param);
    }

private:
    details::CWeakReferenceOwner owner_;
    T* object_;
};

}  // namespace Zell::Base
