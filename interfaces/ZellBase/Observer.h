#pragma once

#include "ZellBase/RunnableMethod.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include <algorithm>
#include <list>

namespace Zell::Base {

// Common base of the observer interfaces. Nobody owns an observer through it.
class IBaseObserver
{
protected:
    IBaseObserver() = default;
    ~IBaseObserver() = default;
};

// The observers of a subject, in the order of their registration. The same observer may stand in the list
// more than once and is then called as often. Observers are not owned: one must unregister before it goes.
template <typename O>
class CObserverList
{
public:
    // False for null. Any thread, but not from inside a callback: the mutex is held during dispatch.
    bool Register(O* observer)
    {
        if (observer == nullptr)
            return false;
        const boost::lock_guard<boost::mutex> lock(registered_mutex_);
        registered_.push_back(observer);
        return true;
    }

    // Erases the first entry equal to the observer, if there is one. Returns after any dispatch in progress.
    void Unregister(O* observer)
    {
        const boost::lock_guard<boost::mutex> lock(registered_mutex_);
        EraseFirst(registered_, observer);
    }

    // Calls every registered observer. An observer that is due for removal is dropped instead of called.
    template <typename Param>
    void Notify(void (O::*callback)(const Param&), const Param& param)
    {
        const boost::lock_guard<boost::mutex> lock(registered_mutex_);
        for (auto it = registered_.begin(); it != registered_.end();) {
            if (TakeFromRemoval(*it)) {
                it = registered_.erase(it);
                continue;
            }
            ((*it)->*callback)(param);
            ++it;
        }
        const boost::lock_guard<boost::mutex> removal_lock(removal_mutex_);
        for (O* observer : removal_)
            EraseFirst(registered_, observer);
        removal_.clear();
    }

private:
    static bool EraseFirst(std::list<O*>& observers, O* observer)
    {
        const auto it = std::find(observers.begin(), observers.end(), observer);
        if (it == observers.end())
            return false;
        observers.erase(it);
        return true;
    }

    bool TakeFromRemoval(O* observer)
    {
        const boost::lock_guard<boost::mutex> lock(removal_mutex_);
        return !removal_.empty() && EraseFirst(removal_, observer);
    }

    boost::mutex registered_mutex_;
    std::list<O*> registered_;
    boost::mutex removal_mutex_;
    std::list<O*> removal_;
};

// What makes T a subject for observers of type O: the list, and the factory for calls that wait in a queue.
template <typename T, typename O>
class CObserverableWrap
{
public:
    // False for null. The same observer may register again and is then told twice.
    bool RegisterObserver(O* observer) { return observers_.Register(observer); }

    // False for null; otherwise removes one entry of the observer, if there is one, and returns true.
    bool AsyncUnregisterObserver(O* observer)
    {
        if (observer == nullptr)
            return false;
        observers_.Unregister(observer);
        return true;
    }

    // The same without the test for null. Both return only after a dispatch in progress has ended.
    bool SyncUnregisterObserver(O* observer)
    {
        observers_.Unregister(observer);
        return true;
    }

protected:
    // The T is still under construction; the pointer is only kept.
    ZELL_NO_VPTR_CHECK CObserverableWrap() : factory_(static_cast<T*>(this)) {}
    CObserverableWrap(const CObserverableWrap&) = delete;
    CObserverableWrap& operator=(const CObserverableWrap&) = delete;
    ~CObserverableWrap() = default;

    template <typename Param>
    void NotifyObservers(void (O::*callback)(const Param&), const Param& param)
    {
        observers_.Notify(callback, param);
    }

    CScopedRunnableMethodFactory<T>& MethodFactory() { return factory_; }

private:
    // In this order: the factory goes first and voids the queued calls while the list still stands.
    CObserverList<O> observers_;
    CScopedRunnableMethodFactory<T> factory_;
};

}  // namespace Zell::Base
