// What makes the killed client of it: the client with a switch that ends it, as a crash or a hard reset
// would, at an event that can be counted. The events are
//   store  a write to a file of the task store; the one that is meant gets half of its bytes
//   state  a state that an observer is told
//   page   a page of the server: every other time before it is asked for, else when it has come
// The environment names the file to which each event is added, a line for each ("state GUID 4"), and the
// event at which the client ends, as "store 17".
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogical/CmsGetExportFileData.h"
#include "FetchyardLogical/CmsGetPersonPicFileData.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

namespace {

constexpr char kEventsVariable[] = "FETCHYARD_TEST_EVENTS";
constexpr char kKillVariable[] = "FETCHYARD_TEST_KILL";

template <typename Function>
Function* TheRealOne(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

using PositionedWrite = ssize_t(int, const void*, size_t, off_t);

int EventsFile()
{
    static const int file = [] {
        const char* const path = std::getenv(kEventsVariable);
        return path == nullptr ? -1 : open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    }();
    return file;
}

// One kind of event, and the number of it at which the client ends.
class Counter
{
public:
    explicit Counter(const char* kind) : kind_(kind)
    {
        const char* const wanted = std::getenv(kKillVariable);
        const std::size_t size = std::strlen(kind);
        if (wanted != nullptr && std::strncmp(wanted, kind, size) == 0 && wanted[size] == ' ')
            fatal_ = std::atol(wanted + size + 1);
    }

    // Whether this event is the last.
    bool Count(const std::string& more = "")
    {
        const std::string line = kind_ + more + "\n";
        static auto* const real_write = TheRealOne<ssize_t(int, const void*, size_t)>("write");
        if (EventsFile() >= 0 && real_write(EventsFile(), line.data(), line.size()) < 0)
            std::abort();
        return ++seen_ == fatal_;
    }
    long Fatal() const { return fatal_; }

private:
    const std::string kind_;
    long fatal_ = 0;
    std::atomic<long> seen_{0};
};

Counter& StoreWrites()
{
    static auto* const counter = new Counter("store");
    return *counter;
}

Counter& Pages()
{
    static auto* const counter = new Counter("page");
    return *counter;
}

[[noreturn]] void Die()
{
    ::kill(getpid(), SIGKILL);
    for (;;)
        pause();
}

bool IsOfTheStore(int file)
{
    std::array<char, 4096> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t size = readlink(link.c_str(), path.data(), path.size() - 1);
    return size > 0 && std::strstr(path.data(), "/tasks.db") != nullptr;
}

ssize_t CountedWrite(PositionedWrite* real, int file, const void* bytes, size_t size, off_t offset)
{
    if (IsOfTheStore(file) && StoreWrites().Count()) {
        real(file, bytes, size / 2, offset);
        Die();
    }
    return real(file, bytes, size, offset);
}

bool CountedPage(const std::function<bool()>& ask)
{
    const bool is_last = Pages().Count();
    if (is_last && Pages().Fatal() % 2 == 1)
        Die();
    const bool is_there = ask();
    if (is_last)
        Die();
    return is_there;
}

class Teller final : public FetchyardBussiness::CDownloadBussinessManagerObserver
{
public:
    void UpdateDownloadBussinessManagerState(const Param& param) override
    {
        if (states_.Count(" " + param.task_guid + " " + std::to_string(param.state)))
            Die();
    }

private:
    Counter states_{"state"};
};

// It hears the states of the whole process, before the client's own observer.
const bool is_registered =
    FetchyardBussiness::CDownloadBussinessManager::Instance().RegisterObserver(new Teller);

}  // namespace

// In front of the system's and the engine's own ones.
extern "C" __attribute__((visibility("default"))) ssize_t pwrite(int file, const void* bytes, size_t size,
                                                                 off_t offset)
{
    static auto* const real = TheRealOne<PositionedWrite>("pwrite");
    return CountedWrite(real, file, bytes, size, offset);
}

extern "C" __attribute__((visibility("default"))) ssize_t pwrite64(int file, const void* bytes, size_t size,
                                                                   off64_t offset)
{
    static auto* const real = TheRealOne<PositionedWrite>("pwrite64");
    return CountedWrite(real, file, bytes, size, offset);
}

namespace FetchyardLogical {

bool CmsGetExportFileData::GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request)
{
    static auto* const real = TheRealOne<bool(CmsGetExportFileData&, const RequstData&)>(
        "_ZN16FetchyardLogical20CmsGetExportFileData21GetExportFileDataListERS0_RKNS_10RequstDataE");
    return CountedPage([&] { return real(data, request); });
}

bool CmsGetPersonPicFileData::GetExportPicDataList(CmsGetPersonPicFileData& data)
{
    static auto* const real = TheRealOne<bool(CmsGetPersonPicFileData&)>(
        "_ZN16FetchyardLogical23CmsGetPersonPicFileData20GetExportPicDataListERS0_");
    return CountedPage([&] { return real(data); });
}

}  // namespace FetchyardLogical
