#include "FetchyardLogicalHost/EngineHost.h"

#include "Engine/Engine.h"

namespace FetchyardLogical {

bool OpenTaskStore(const std::string& path, std::string& message)
{
    return details::Engine::Shared()->OpenStore(path, message);
}

bool CloseTaskStore()
{
    return details::Engine::Shared()->CloseStore();
}

bool ReadTaskStore(const std::string& path, std::vector<TaskView>& tasks, std::string& message)
{
    std::vector<details::StoredTask> stored;
    if (!details::TaskStore::Read(path, stored, message))
        return false;
    tasks.clear();
    tasks.reserve(stored.size());
    for (const details::StoredTask& task : stored)
        tasks.push_back(details::ViewOf(task));
    return true;
}

std::string StoreTrouble()
{
    return details::Engine::Shared()->StoreTrouble();
}

std::vector<TaskView> ListTasks()
{
    return details::Engine::Shared()->List();
}

bool FindTask(const std::string& guid, TaskView& view)
{
    return details::Engine::Shared()->Find(guid, view);
}

std::string ResumeText(const std::string& guid)
{
    return details::Engine::Shared()->ResumeText(guid);
}

bool HandOverInPlaceOf(const std::string& stored_guid,
                       const std::shared_ptr<ZellTaskKit::CDownloadTaskBase>& task)
{
    return details::Engine::Shared()->AddInPlaceOf(stored_guid, task);
}

bool StopTask(const std::string& guid)
{
    return details::Engine::Shared()->StopTask(guid);
}

bool DeleteTask(const std::string& guid, FolderFate folder)
{
    return details::Engine::Shared()->DeleteTask(guid, folder);
}

bool StartTaskAgain(const std::string& guid)
{
    return details::Engine::Shared()->StartAgain(guid);
}

bool RemoveFromList(const std::string& guid)
{
    return details::Engine::Shared()->Remove(guid);
}

std::size_t ClearFinished()
{
    return details::Engine::Shared()->ClearFinished();
}

bool WaitUntilIdle(std::chrono::milliseconds timeout)
{
    return details::Engine::Shared()->WaitUntilIdle(timeout);
}

}  // namespace FetchyardLogical
