#pragma once

#include "FakeTask.h"
#include "Store/TaskStore.h"
#include "StoreRecords.h"
#include "tests/unit/TempFolder.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace FetchyardLogical::testing {

// A task with such a record, in the name and the folder.
std::shared_ptr<FakeTask> MakeRecorded(FakeTask::Body body, const std::string& name = "Alarms",
                                       const std::string& folder = "", int kind = 1);

// A store in a folder of the test's own, with an engine on it that is up.
class StoreRig
{
public:
    StoreRig() { Open(); }
    // Engine down and store closed in order, then both again.
    void Restart();
    // What a client finds after this one was killed now: the files as they are, in another folder.
    std::string CopyOfFiles();

    EngineRig& Rig() { return *rig_; }
    details::Engine* operator->() { return rig_->operator->(); }
    const std::string& Path() const { return path_; }
    std::string Message() const { return message_; }
    TaskView View(const std::string& guid);

private:
    void Open();

    TempFolder folder_;
    std::vector<std::unique_ptr<TempFolder>> copies_;
    const std::string path_ = folder_.File("tasks.db");
    std::string message_;
    std::unique_ptr<EngineRig> rig_;
};

// Opens the store and gives it back: the tasks by guid and the message.
struct Found
{
    bool is_open = false;
    std::map<std::string, details::StoredTask> tasks;
    std::vector<std::string> guids;  // in the order of the list
    std::map<std::string, std::string> texts;
    std::string message;
};
Found OpenAndLook(const std::string& path);

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);
bool IsThere(const std::string& path);

}  // namespace FetchyardLogical::testing
