#pragma once

#include "ZellBase/Leaving.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace Zell::Base::details {

// Says whether an object is still there, and keeps it there for as long as a holder looks: Invalidate waits
// for a call in progress on another thread. A call may end its own object, hence the recursive mutex.
class CWeakReference
{
public:
    // Runs call() if the object is still there. Any thread.
    template <typename Call>
    void IfValid(Call&& call)
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex_);
        if (valid_)
            call();
    }

    // Waits for a call in progress on another thread, but not while the process leaves: such a call may have
    // been held back for good.
    void Invalidate()
    {
        valid_ = false;
        if (IsProcessLeaving())
            return;
        const std::lock_guard<std::recursive_mutex> in_progress(mutex_);
    }

private:
    std::recursive_mutex mutex_;
    std::atomic<bool> valid_{true};
};

// Embedded in an object; gives out references and voids them all when the object goes.
class CWeakReferenceOwner
{
public:
    CWeakReferenceOwner() : reference_(std::make_shared<CWeakReference>()) {}
    CWeakReferenceOwner(const CWeakReferenceOwner&) = delete;
    CWeakReferenceOwner& operator=(const CWeakReferenceOwner&) = delete;
    ~CWeakReferenceOwner() { reference_->Invalidate(); }

    std::shared_ptr<CWeakReference> GetRef() const { return reference_; }

private:
    std::shared_ptr<CWeakReference> reference_;
};

}  // namespace Zell::Base::details
