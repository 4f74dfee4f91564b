// A client for the tests of the store, to be killed or given a bad disk.
//   store_client run STORE SEED    hands tasks over, brings them back, starts them again and removes them
//   without end;
//                                  tells each thing on a line of its own once it is so
//   store_client fill STORE        hands over tasks with long records until the store is in trouble, ends in
//   order store_client open STORE        opens the store and lists its tasks
#include "FakeTask.h"
#include "StoreRecords.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <vector>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;

namespace {

void Tell(const std::string& line)
{
    static auto* const mutex = new std::mutex;
    const std::lock_guard<std::mutex> lock(*mutex);
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

// Its record counts the steps that it has taken.
class SteppingTask : public FakeTask
{
public:
    explicit SteppingTask(std::vector<DownloadState> states)
        : FakeTask([states = std::move(states)](FakeTask& self) {
              for (const DownloadState state : states) {
                  ++static_cast<SteppingTask&>(self).step;
                  self.Report(state);
              }
          })
    {
        auto record = std::make_shared<FakeRecord>([this] { return RecordText(1, std::to_string(step)); });
        record->SetVal_str_name("Stepping");
        SetDownloadTaskParam(record, false);
    }

    std::atomic<int> step{0};
};

std::vector<DownloadState> AnyTrace(std::mt19937& random)
{
    switch (random() % 4) {
        case 0:
            return {Downloading, Finished};
        case 1:
            return {Uploading, TranscodingBegin, TranscodingEnd, UploadFinished};
        case 2:
            return {Downloading, Failed, Failed};
        default:
            return {Downloading, TranscodingBegin, TranscodingEnd, TranscodingBegin, TranscodingEnd, Stopped};
    }
}

class Client
{
public:
    explicit Client(const std::string& store) : rig_(store, message_)
    {
        rig_.Log().on_report = [this](const CTaskCallbackParam& report) {
            const std::string guid = report.GetVal_task_guid();
            Tell("state " + guid + " " + std::to_string(report.GetVal_state()) + " " +
                 std::to_string(TaskOf(guid)->step));
        };
        if (!message_.empty())
            Tell("message " + message_);
    }

    [[noreturn]] void Run(unsigned int seed)
    {
        random_.seed(seed);
        BringBack();
        for (;;) {
            HandOver();
            rig_.Settle();
            Change();
        }
    }

private:
    std::shared_ptr<SteppingTask> TaskOf(const std::string& guid)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return tasks_.at(guid);
    }

    std::shared_ptr<SteppingTask> Make()
    {
        auto task = std::make_shared<SteppingTask>(AnyTrace(random_));
        const std::lock_guard<std::mutex> lock(mutex_);
        return tasks_[task->GetGuid()] = task;
    }

    void BringBack()
    {
        for (const TaskView& view : rig_->List()) {
            if (!view.is_interrupted)
                continue;
            const auto task = Make();
            if (rig_->AddInPlaceOf(view.guid, task))
                Tell("replaced " + view.guid + " " + task->GetGuid());
        }
    }

    void HandOver()
    {
        std::vector<std::shared_ptr<FakeTask>> batch;
        for (int i = 0; i < 5; ++i)
            batch.push_back(Make());
        rig_.Add(batch);
        for (const auto& task : batch)
            Tell("kept " + task->GetGuid());
    }

    void Change()
    {
        const std::vector<TaskView> views = rig_->List();
        const std::string guid = views[random_() % views.size()].guid;
        if (random_() % 2 == 0) {
            rig_->StartAgain(guid);
        } else if (rig_->Remove(guid)) {
            Tell("removed " + guid);
        }
    }

    std::string message_;
    std::mt19937 random_;
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<SteppingTask>> tasks_;
    EngineRig rig_;
};

int Fill(const std::string& store)
{
    std::string message;
    EngineRig rig(store, message);
    std::size_t handed_over = 0;
    while (rig->StoreTrouble().empty() && handed_over < 1000) {
        auto task = MakeQuickTask();
        task->SetDownloadTaskParam(
            std::make_shared<FakeRecord>([] { return RecordText(1, std::string(100000, 'x')); }), false);
        if (!rig.Add({task}) || !rig.Settle())
            return 1;
        ++handed_over;
    }
    Tell("trouble " + rig->StoreTrouble());
    const auto last = MakeQuickTask();
    if (!rig.Add({last}) || !rig.Settle() || rig.ViewOf(last).state != Finished ||
        rig->List().size() != handed_over + 1)
        return 1;
    Tell("works on");
    return 0;
}

int Open(const std::string& store)
{
    std::string message;
    EngineRig rig(store, message);
    Tell("message " + message);
    for (const TaskView& view : rig->List())
        Tell("task " + view.guid + " " + std::to_string(view.state));
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    const std::string word = argv[1];
    if (word == "fill")
        return Fill(argv[2]);
    if (word == "open")
        return Open(argv[2]);
    if (word == "run" && argc == 4)
        Client(argv[2]).Run(static_cast<unsigned int>(std::atoi(argv[3])));
    return 2;
}
