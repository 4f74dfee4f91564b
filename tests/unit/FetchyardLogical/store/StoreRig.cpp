#include "StoreRig.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace FetchyardLogical::testing {

std::shared_ptr<FakeTask> MakeRecorded(FakeTask::Body body, const std::string& name,
                                       const std::string& folder, int kind)
{
    auto task = std::make_shared<FakeTask>(std::move(body));
    auto record = std::make_shared<FakeRecord>([kind] { return RecordText(kind); });
    record->SetVal_str_name(name);
    record->SetVal_str_file_path(folder);
    record->SetVal_str_plugin_id("fetchyard.c");
    record->SetVal_state(ZellTaskKit::Downloading);
    task->SetDownloadTaskParam(record, false);
    return task;
}

void StoreRig::Open()
{
    rig_ = std::make_unique<EngineRig>(path_, message_);
}

void StoreRig::Restart()
{
    rig_.reset();
    Open();
}

std::string StoreRig::CopyOfFiles()
{
    copies_.push_back(std::make_unique<TempFolder>());
    for (const auto& entry : fs::directory_iterator(folder_.Path()))
        fs::copy_file(entry.path(), copies_.back()->Path() / entry.path().filename());
    return copies_.back()->File("tasks.db");
}

TaskView StoreRig::View(const std::string& guid)
{
    TaskView view;
    EXPECT_TRUE((*rig_)->Find(guid, view)) << guid;
    return view;
}

Found OpenAndLook(const std::string& path)
{
    const details::TaskStore::Opening opening = details::TaskStore::Open(path);
    Found found;
    found.is_open = opening.store != nullptr;
    found.message = opening.message;
    for (const details::StoredTask& task : opening.tasks) {
        found.guids.push_back(task.guid);
        found.tasks[task.guid] = task;
        found.texts[task.guid] = opening.store->ResumeText(task.guid);
    }
    return found;
}

std::string ReadBytes(const std::string& path)
{
    std::ifstream file(fs::u8path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream file(fs::u8path(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool IsThere(const std::string& path)
{
    return fs::exists(fs::u8path(path));
}

}  // namespace FetchyardLogical::testing
