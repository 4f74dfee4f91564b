#pragma once

#include "Window/RequestDesk.h"
#include "Window/TaskActions.h"
#include "Window/TaskChanges.h"
#include "Window/TaskMeter.h"
#include "Window/TaskModel.h"
#include "Window/Worker.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <set>

namespace FetchyardClient {

// Keeps the list up to date and does what a person asks for, both behind the window's thread: the engine is
// asked on a thread of its own, and what came of it is shown some 20 times a second at most. The library is
// hosted and its observer registered before, and until after, the life of this object. Of the window's
// thread.
class TaskBoard final : public QObject
{
    Q_OBJECT

public:
    // How long an entry that was removed can be brought back.
    static constexpr int kUndoMilliseconds = 8000;

    TaskBoard(TaskChanges& changes, TaskModel& model);
    // Does what was asked for, removals too.
    ~TaskBoard() override;

    // Fetches the whole list; Loaded comes when it is shown.
    void Load();
    bool IsLoaded() const { return is_loaded_; }

    void Do(TaskAction action, const std::vector<std::string>& guids);
    // Takes entries that are at rest out of the list. They can be brought back for a while.
    void Remove(const std::vector<std::string>& guids);
    void ClearFinished();
    std::size_t Undoable() const { return removed_.size(); }
    void Undo();
    // Makes all of an earlier run anew that have a record.
    void GoOn();
    std::size_t CanGoOnCount() const;

    void Submit(const RequestSource& source);
    void SubmitFile(const QString& path);
    // Calls back on the window's thread when everything posted before is done.
    void WhenDone(std::function<void()> call);

signals:
    void Loaded();
    // Something to tell the person, a line each.
    void Told(const QStringList& lines, bool is_bad);
    void UndoableChanged();
    void Submitted(const FetchyardClient::Submission& submission);
    // A task came to its end.
    void Ended(const FetchyardClient::TaskRow& row);

private:
    void Tick();
    void ShowNews(const std::vector<TaskNews>& news);
    void ShowOutcome(const ActionOutcome& outcome);
    void ShowSubmission(const Submission& submission);
    void CommitRemovals();
    // Runs on the window's thread, unless the board is gone by then.
    void Hand(std::function<void()> call);

    // What only the worker touches.
    struct Back
    {
        RequestDesk desk;
        TaskMeter meter;
    };
    std::vector<TaskNews> Collect(const std::vector<std::string>& changed,
                                  const std::vector<std::string>& running);
    std::vector<Submission> HandOverReady(std::vector<TaskNews>& news);

    TaskChanges& changes_;
    TaskModel& model_;
    QTimer tick_;
    QTimer undo_;
    QElapsedTimer since_look_;
    std::chrono::milliseconds pause_{0};
    std::set<std::string> running_;
    std::vector<std::string> removed_;
    bool is_loaded_ = false;
    bool is_collecting_ = false;
    Back back_;
    std::unique_ptr<Worker> worker_;
};

}  // namespace FetchyardClient
