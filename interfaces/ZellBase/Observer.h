#pragma once

#include "ZellBase/RunnableMethod.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include <algorithm>
#include <list>
#include <memory>

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
    CObserverList() = default;
    CObserverList(const CObserverList&) = delete;
    CObserverList& operator=(const CObserverList&) = delete;

    ~CObserverList()
    {
        if (details::IsProcessLeaving())
            details::KeepForGood(lists_);
    }

    // False for null. Any thread, but not from inside a callback: the mutex is held during dispatch.
    bool Register(O* observer)
    {
        if (observer == nullptr)
            return false;
        const boost::lock_guard<boost::mutex> lock(lists_->registered_mutex);
        lists_->registered.push_back(observer);
        return true;
    }

    // Erases the first entry equal to the observer, if there is one. Returns after any dispatch in progress.
    void Unregister(O* observer)
    {
        const boost::lock_guard<boost::mutex> lock(lists_->registered_mutex);
        EraseFirst(lists_->registered, observer);
    }

    // Calls every registered observer. An observer that is due for removal is dropped instead of called.
    template <typename Param>
    void Notify(void (O::*callback)(const Param&), const Param& param)
    {
        // The lists outlast this object if the process leaves during the call.
        const std::shared_ptr<Lists> lists = lists_;
        const boost::lock_guard<boost::mutex> lock(lists->registered_mutex);
        for (auto it = lists->registered.begin(); it != lists->registered.end();) {
            if (TakeFromRemoval(*lists, *it)) {
                it = lists->registered.erase(it);
                continue;
            }
            ((*it)->*callback)(param);
            ++it;
        }
        const boost::lock_guard<boost::mutex> removal_lock(lists->removal_mutex);
        for (O* observer : lists->removal)
            EraseFirst(lists->registered, observer);
        lists->removal.clear();
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

    struct Lists
    {
        boost::mutex registered_mutex;
        std::list<O*> registered;
        boost::mutex removal_mutex;
        std::list<O*> removal;
    };

    static bool TakeFromRemoval(Lists& lists, O* observer)
    {
        const boost::lock_guard<boost::mutex> lock(lists.removal_mutex);
        return !lists.removal.empty() && EraseFirst(lists.removal, observer);
    }

    const std::shared_ptr<Lists> lists_ = std::make_shared<Lists>();
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
