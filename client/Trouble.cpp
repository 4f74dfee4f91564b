#include "Trouble.h"

#include "ZellBase/Log.h"
#include "ZellBaseHost/LogHost.h"

namespace FetchyardClient {

namespace {

// The business layer's own lines name functions and come for plain progress too; its failures reach the
// state.
constexpr char kBusinessLayer[] = "FetchyardBussiness";
constexpr std::size_t kMostComplaints = 200;

}  // namespace

Trouble::Trouble()
{
    Zell::Base::details::SetLogListener(
        [this](int level, const std::string& module, const std::string& words) {
            if (level >= Zell::Base::details::kLogError)
                Hear(module, words);
        });
}

Trouble::~Trouble()
{
    Zell::Base::details::SetLogListener(nullptr);
}

void Trouble::Hear(const std::string& module, const std::string& words)
{
    if (module == kBusinessLayer)
        return;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (heard_.size() < kMostComplaints && heard_.insert(words).second)
        fresh_.push_back(words);
}

std::vector<std::string> Trouble::Take()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> complaints;
    complaints.swap(fresh_);
    return complaints;
}

}  // namespace FetchyardClient
