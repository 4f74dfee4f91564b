#include "ZellBase/MessageLoop.h"
#include "ZellBase/Singleton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

namespace {

std::atomic<int> made{0};

class Counted : public Zell::Base::CSingleton<Counted>
{
private:
    friend class Zell::Base::CSingleton<Counted>;
    Counted() { ++made; }
};

}  // namespace

TEST(Singleton, IsMadeOnceWhoeverAsksFirst)
{
    std::vector<Counted*> seen(8);
    std::vector<std::thread> threads;
    for (auto& instance : seen)
        threads.emplace_back([&instance] { instance = &Counted::Instance(); });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(std::set<Counted*>(seen.begin(), seen.end()).size(), 1u);
    EXPECT_EQ(made, 1);
}

TEST(Singleton, OfTheNotificationLoopIsOne)
{
    EXPECT_EQ(&Zell::Base::CMessageLoopForNotify::Instance(), &Zell::Base::CMessageLoopForNotify::Instance());
}
