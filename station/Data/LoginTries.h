#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace Station {

// Counts wrong passwords by account. Five in a row close the account for a while, to the right password as
// well; a right one before that starts the count anew. Names that no account has are counted, too, so that
// the answer does not tell which names there are. Times are seconds of any clock that does not go back. Any
// thread.
class LoginTries
{
public:
    static constexpr int kTries = 5;
    static constexpr std::int64_t kClosedSeconds = 600;

    // What the account has left.
    struct Remaining
    {
        int tries = kTries;               // wrong passwords until it is closed
        std::int64_t closed_seconds = 0;  // until it is open again; 0 if it is
    };

    Remaining Of(const std::string& name, std::int64_t now);
    Remaining CountWrong(const std::string& name, std::int64_t now);
    void CountRight(const std::string& name);

private:
    struct Count
    {
        int wrong = 0;
        std::int64_t last = 0;  // time of the last wrong password
    };
    static constexpr std::size_t kMostNames = 10000;

    static Remaining Left(const Count& count, std::int64_t now);
    void Forget(std::int64_t now);

    std::mutex mutex_;
    std::map<std::string, Count> counts_;
};

}  // namespace Station
