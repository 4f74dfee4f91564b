#include "ZellBase/MessageLoop.h"
#include "ZellBase/Observer.h"

#include <gmock/gmock.h>

#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using Zell::Base::CMessageLoopBase;

namespace {

class Listener : public Zell::Base::IBaseObserver
{
public:
    virtual ~Listener() = default;
    virtual void Told(const std::string& text) { texts.push_back(text); }

    std::vector<std::string> texts;
};

class Speaker : public Zell::Base::CObserverableWrap<Speaker, Listener>
{
public:
    void Say(const std::string& text) { NotifyObservers(&Listener::Told, text); }
    Zell::Base::RunnableMethod<Speaker, std::string>* Later(const std::string& text)
    {
        return MethodFactory().NewRunnableMethod(&Speaker::Say, text);
    }
};

}  // namespace

TEST(Observers, AreCalledAsOftenAsTheyAreRegistered)
{
    Speaker speaker;
    Listener listener;
    EXPECT_TRUE(speaker.RegisterObserver(&listener));
    EXPECT_TRUE(speaker.RegisterObserver(&listener));
    speaker.Say("a");
    EXPECT_THAT(listener.texts, ::testing::ElementsAre("a", "a"));
    EXPECT_TRUE(speaker.AsyncUnregisterObserver(&listener));
    speaker.Say("b");
    EXPECT_THAT(listener.texts, ::testing::ElementsAre("a", "a", "b"));
    EXPECT_TRUE(speaker.SyncUnregisterObserver(&listener));
    speaker.Say("c");
    EXPECT_THAT(listener.texts, ::testing::ElementsAre("a", "a", "b"));
}

TEST(Observers, MayNotBeNull)
{
    Speaker speaker;
    EXPECT_FALSE(speaker.RegisterObserver(nullptr));
    EXPECT_FALSE(speaker.AsyncUnregisterObserver(nullptr));
    EXPECT_TRUE(speaker.SyncUnregisterObserver(nullptr));
    speaker.Say("a");
}

TEST(Observers, ThatAreNotRegisteredMayBeRemoved)
{
    Speaker speaker;
    Listener listener;
    EXPECT_TRUE(speaker.AsyncUnregisterObserver(&listener));
    EXPECT_TRUE(speaker.SyncUnregisterObserver(&listener));
}

TEST(Observers, AreRemovedOnlyAfterADispatchInProgress)
{
    class Slow : public Listener
    {
    public:
        void Told(const std::string& text) override
        {
            inside.set_value();
            release.get_future().wait();
            Listener::Told(text);
        }
        std::promise<void> inside;
        std::promise<void> release;
    };
    Speaker speaker;
    Slow listener;
    speaker.RegisterObserver(&listener);
    std::thread dispatch([&speaker] { speaker.Say("a"); });
    listener.inside.get_future().wait();
    std::size_t seen_after_removal = 0;
    std::thread removal([&] {
        speaker.SyncUnregisterObserver(&listener);
        seen_after_removal = listener.texts.size();
    });
    listener.release.set_value();
    removal.join();
    dispatch.join();
    EXPECT_EQ(seen_after_removal, 1u);
}

TEST(QueuedCall, ReachesTheObservers)
{
    Speaker speaker;
    Listener listener;
    speaker.RegisterObserver(&listener);
    const std::unique_ptr<Zell::Base::CCancelableTask> call(speaker.Later("a"));
    call->Exec();
    EXPECT_THAT(listener.texts, ::testing::ElementsAre("a"));
}

TEST(QueuedCall, ReachesNobodyOnceCancelled)
{
    Speaker speaker;
    Listener listener;
    speaker.RegisterObserver(&listener);
    const std::unique_ptr<Zell::Base::CCancelableTask> call(speaker.Later("a"));
    call->Cancel();
    call->Exec();
    EXPECT_THAT(listener.texts, ::testing::IsEmpty());
}

TEST(QueuedCall, ReachesNobodyOnceItsSubjectIsGone)
{
    auto speaker = std::make_unique<Speaker>();
    Listener listener;
    speaker->RegisterObserver(&listener);
    const std::unique_ptr<Zell::Base::CCancelableTask> call(speaker->Later("a"));
    speaker.reset();
    call->Exec();
    EXPECT_THAT(listener.texts, ::testing::IsEmpty());
}

TEST(QueuedCall, KeepsItsSubjectUntilItHasReturned)
{
    class Slow : public Listener
    {
    public:
        void Told(const std::string&) override
        {
            inside.set_value();
            release.get_future().wait();
            done = true;
        }
        std::promise<void> inside;
        std::promise<void> release;
        bool done = false;
    };
    Slow listener;
    CMessageLoopBase loop;
    auto speaker = std::make_unique<Speaker>();
    speaker->RegisterObserver(&listener);
    loop.PostTask(speaker->Later("a"));
    listener.inside.get_future().wait();
    bool done_when_gone = false;
    std::thread removal([&] {
        speaker.reset();
        done_when_gone = listener.done;
    });
    listener.release.set_value();
    removal.join();
    EXPECT_TRUE(done_when_gone);
}
