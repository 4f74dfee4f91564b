#include "Library.h"

#include "ZellBase/Leaving.h"
#include "ZellBase/Log.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellPictureLoaderHost/LoaderHost.h"

#include <chrono>
#include <future>
#include <mutex>
#include <utility>

namespace ZellPictureLoader {
namespace {

using Zell::Base::Error::ErrorCode;

struct Library
{
    std::mutex mutex;
    unsigned int starts = 0;
    std::shared_ptr<CSession> session;
    LoaderBounds bounds;
};

// Never destroyed: a process may leave while transfers run.
Library& TheLibrary()
{
    static auto* library = new Library;
    return *library;
}

std::string DefaultCacheFolder()
{
    return ZellClientHost::GetClientSettings().data_path + "PictureCache/";
}

// The last transfer lets go of the session, and of the folder, a moment after it has told its end.
void End(std::shared_ptr<CSession> session)
{
    constexpr std::chrono::seconds patience{2};
    const std::future<void> gone = session->folder()->Gone();
    session->Stop();
    session = nullptr;
    gone.wait_for(patience);
}

}  // namespace

std::shared_ptr<CSession> CurrentSession()
{
    Library& library = TheLibrary();
    const std::lock_guard<std::mutex> lock(library.mutex);
    return library.session;
}

bool InitZellPictureLoader(const std::string& cache_folder)
{
    const std::string root = cache_folder.empty() ? DefaultCacheFolder() : cache_folder;
    Library& library = TheLibrary();
    ErrorCode error;
    {
        const std::lock_guard<std::mutex> lock(library.mutex);
        if (library.session == nullptr)
            library.session = CSession::Start(root, library.bounds, error);
        if (library.session != nullptr) {
            ++library.starts;
            return true;
        }
    }
    Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "ZellPictureLoader",
                                       "[%s]The cache's folder %s can't be made. error: %d[%s(%d)]",
                                       "ZellPictureLoader::InitZellPictureLoader", root.c_str(),
                                       error.iSecondCode, __FILE__, __LINE__);
    return false;
}

void UninitZellPictureLoader()
{
    Library& library = TheLibrary();
    std::shared_ptr<CSession> ended;
    {
        const std::lock_guard<std::mutex> lock(library.mutex);
        if (library.starts == 0 || --library.starts > 0)
            return;
        ended = std::move(library.session);
    }
    // Its threads are held back for good once the process leaves.
    if (Zell::Base::details::IsProcessLeaving())
        Zell::Base::details::KeepForGood(std::move(ended));
    else
        End(std::move(ended));
}

void SetLoaderBounds(const LoaderBounds& bounds)
{
    Library& library = TheLibrary();
    const std::lock_guard<std::mutex> lock(library.mutex);
    library.bounds = bounds;
}

LoaderStatistics GetLoaderStatistics()
{
    const std::shared_ptr<CSession> session = CurrentSession();
    return session == nullptr ? LoaderStatistics() : session->Statistics();
}

bool WaitUntilQuiet(std::chrono::milliseconds timeout)
{
    const std::shared_ptr<CSession> session = CurrentSession();
    return session == nullptr || session->WaitUntilQuiet(timeout);
}

}  // namespace ZellPictureLoader
