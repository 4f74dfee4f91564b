#include "ZellBaseHost/PerThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

std::atomic<int> made{0};
std::atomic<int> living{0};
std::atomic<int> whole{0};

// Tells at its end whether what it holds is still there.
struct Held
{
    Held()
    {
        ++made;
        ++living;
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held()
    {
        --living;
        if (text == "a text that is too long to lie inside the object itself")
            ++whole;
    }

    std::string text = "a text that is too long to lie inside the object itself";
};

const Zell::Base::details::CPerThread<Held>& Values()
{
    static const auto& values = *new Zell::Base::details::CPerThread<Held>();
    return values;
}

}  // namespace

TEST(PerThread, EachThreadHasItsOwnUntilItEnds)
{
    std::vector<std::thread> threads;
    std::vector<const Held*> seen(8);
    std::atomic<std::size_t> ready{0};
    for (const Held*& mine : seen)
        threads.emplace_back([&mine, &ready, &seen] {
            mine = &Values().Value();
            ++ready;
            while (ready < seen.size())
                std::this_thread::yield();
            EXPECT_EQ(&Values().Value(), mine);
        });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 1; i < seen.size(); ++i)
        EXPECT_EQ(std::count(seen.begin(), seen.end(), seen[i]), 1);
    EXPECT_EQ(living, 0);
    EXPECT_EQ(whole, 8);
}

TEST(PerThread, ThreadThatDoesNotAskHasNone)
{
    Values();
    const int before = made;
    std::thread([] {}).join();
    EXPECT_EQ(made, before);
}
