#include "Window/TaskBoard.h"

#include "Window/RequestFile.h"

#include <QMetaObject>

#include <utility>

namespace FetchyardClient {

using FetchyardLogical::TaskView;

namespace {

// News are shown 20 times a second at most.
constexpr int kTickMilliseconds = 50;
// With more ends than this at once, a look at each folder would hold up the news.
constexpr std::size_t kMostFinalLooks = 50;

}  // namespace

TaskBoard::TaskBoard(TaskChanges& changes, TaskModel& model)
    : changes_(changes), model_(model), worker_(std::make_unique<Worker>())
{
    undo_.setSingleShot(true);
    undo_.setInterval(kUndoMilliseconds);
    connect(&undo_, &QTimer::timeout, this, &TaskBoard::CommitRemovals);
    tick_.setInterval(kTickMilliseconds);
    connect(&tick_, &QTimer::timeout, this, &TaskBoard::Tick);
    since_look_.start();
}

TaskBoard::~TaskBoard()
{
    tick_.stop();
    CommitRemovals();
    worker_.reset();
}

void TaskBoard::Hand(std::function<void()> call)
{
    QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
}

void TaskBoard::WhenDone(std::function<void()> call)
{
    worker_->Post([this, call = std::move(call)] { Hand(call); });
}

void TaskBoard::Load()
{
    worker_->Post([this] {
        auto order = std::make_shared<TaskOrder>();
        order->Fill(FetchyardLogical::ListTasks());
        Hand([this, order] {
            model_.Load(std::move(*order));
            for (const std::string& guid : model_.Order().GuidsIn(RowState::Running))
                running_.insert(guid);
            is_loaded_ = true;
            tick_.start();
            emit Loaded();
        });
    });
}

void TaskBoard::Tick()
{
    if (is_collecting_)
        return;
    const std::vector<std::string> changed = changes_.Take();
    std::vector<std::string> running;
    if (!running_.empty() && since_look_.hasExpired(pause_.count())) {
        running.assign(running_.begin(), running_.end());
        since_look_.restart();
    }
    if (changed.empty() && running.empty())
        return;
    is_collecting_ = true;
    worker_->Post([this, changed, running] {
        const TaskMeter::Clock::time_point begin = TaskMeter::Clock::now();
        std::vector<TaskNews> news = Collect(changed, running);
        const auto pause = TaskMeter::Pause(TaskMeter::Clock::now() - begin);
        const std::vector<Submission> submissions = HandOverReady(news);
        Hand([this, news, submissions, pause] {
            is_collecting_ = false;
            pause_ = pause;
            ShowNews(news);
            for (const Submission& submission : submissions)
                ShowSubmission(submission);
        });
    });
}

std::vector<TaskNews> TaskBoard::Collect(const std::vector<std::string>& changed,
                                         const std::vector<std::string>& running)
{
    std::vector<TaskNews> news;
    const bool looks_at_ended = changed.size() <= kMostFinalLooks;
    for (const std::string& guid : changed) {
        TaskNews one;
        one.row.task.guid = guid;
        TaskView view;
        if (!FetchyardLogical::FindTask(guid, view))
            one.is_gone = true;
        else if (looks_at_ended && !IsBusy(view))
            one.row = back_.meter.Measure(view);
        else
            one.row.task = std::move(view);
        news.push_back(std::move(one));
    }
    for (const std::string& guid : running) {
        TaskView view;
        if (!FetchyardLogical::FindTask(guid, view))
            continue;
        TaskNews one;
        one.row = back_.meter.Measure(view);
        news.push_back(std::move(one));
    }
    return news;
}

std::vector<Submission> TaskBoard::HandOverReady(std::vector<TaskNews>& news)
{
    std::vector<Submission> submissions = back_.desk.HandOverReady();
    for (const Submission& submission : submissions) {
        for (TaskNews& one : Collect(submission.guids, {}))
            news.push_back(std::move(one));
    }
    return submissions;
}

void TaskBoard::ShowNews(const std::vector<TaskNews>& news)
{
    std::vector<TaskRow> ended;
    for (const TaskNews& one : news) {
        const std::string& guid = one.row.task.guid;
        const TaskRow* before = model_.Find(one.in_place_of.empty() ? guid : one.in_place_of);
        const bool was_busy = before != nullptr && IsBusy(before->task);
        const bool is_busy = !one.is_gone && IsBusy(one.row.task);
        if (was_busy && !is_busy && !one.is_gone)
            ended.push_back(one.row);
        running_.erase(one.in_place_of);
        if (is_busy && one.row.task.is_running)
            running_.insert(guid);
        else
            running_.erase(guid);
    }
    model_.Apply(news);
    for (const TaskRow& row : ended)
        emit Ended(row);
}

void TaskBoard::ShowOutcome(const ActionOutcome& outcome)
{
    ShowNews(outcome.news);
    if (!outcome.refused.empty()) {
        QStringList lines;
        for (const QString& line : outcome.refused)
            lines << line;
        emit Told(lines, true);
    }
}

void TaskBoard::Do(TaskAction action, const std::vector<std::string>& guids)
{
    if (guids.empty())
        return;
    worker_->Post([this, action, guids] {
        const ActionOutcome outcome = Act(action, guids);
        Hand([this, outcome] { ShowOutcome(outcome); });
        // What could not be removed is in the list and must be seen.
        if (action == TaskAction::Remove && !outcome.refused.empty())
            Hand([this, guids] { model_.SetHidden(guids, false); });
    });
}

void TaskBoard::Remove(const std::vector<std::string>& guids)
{
    CommitRemovals();
    QStringList refused;
    for (const std::string& guid : guids) {
        const TaskRow* row = model_.Find(guid);
        if (row == nullptr)
            continue;
        if (IsPossible(TaskAction::Remove, row->task))
            removed_.push_back(guid);
        else
            refused << tr("%1 is on its way; stop it first").arg(CutText(NameText(row->task), 60));
    }
    model_.SetHidden(removed_, true);
    if (!removed_.empty())
        undo_.start();
    emit UndoableChanged();
    if (!refused.isEmpty())
        emit Told(refused, true);
}

void TaskBoard::ClearFinished()
{
    std::vector<std::string> guids;
    for (const RowState state : {RowState::Finished, RowState::Deleted}) {
        for (std::string& guid : model_.Order().GuidsIn(state)) {
            if (!IsBusy(model_.Find(guid)->task))
                guids.push_back(std::move(guid));
        }
    }
    Remove(guids);
}

void TaskBoard::Undo()
{
    undo_.stop();
    const std::vector<std::string> back = std::move(removed_);
    removed_.clear();
    model_.SetHidden(back, false);
    emit UndoableChanged();
}

void TaskBoard::CommitRemovals()
{
    undo_.stop();
    if (removed_.empty())
        return;
    Do(TaskAction::Remove, removed_);
    removed_.clear();
    emit UndoableChanged();
}

std::size_t TaskBoard::CanGoOnCount() const
{
    std::size_t count = 0;
    if (model_.Order().Count(RowState::Interrupted) == 0)
        return 0;
    for (const std::string& guid : model_.Order().GuidsIn(RowState::Interrupted))
        count += CanGoOn(model_.Find(guid)->task) ? 1 : 0;
    return count;
}

void TaskBoard::GoOn()
{
    std::vector<std::string> guids;
    for (const std::string& guid : model_.Order().GuidsIn(RowState::Interrupted)) {
        if (CanGoOn(model_.Find(guid)->task))
            guids.push_back(guid);
    }
    Do(TaskAction::StartAgain, guids);
}

void TaskBoard::Submit(const RequestSource& source)
{
    worker_->Post([this, source] {
        const Submission submission = back_.desk.Submit(source);
        const std::vector<TaskNews> news = Collect(submission.guids, {});
        Hand([this, submission, news] {
            ShowNews(news);
            ShowSubmission(submission);
        });
    });
}

void TaskBoard::SubmitFile(const QString& path)
{
    worker_->Post([this, path] {
        RequestSource source;
        Submission submission;
        submission.label = path.toStdString();
        if (ReadRequestFile(submission.label, source, submission.reason))
            Hand([this, source] { Submit(source); });
        else
            Hand([this, submission] { ShowSubmission(submission); });
    });
}

void TaskBoard::ShowSubmission(const Submission& submission)
{
    emit Submitted(submission);
    const QString label = CutText(QString::fromStdString(submission.label).section('/', -1), 80);
    QStringList lines;
    for (const Violation& violation : submission.violations) {
        const QString place = QString::fromStdString(violation.path);
        lines << label + ": " + (place.isEmpty() ? QString() : place + ": ") +
                     QString::fromStdString(violation.words);
    }
    if (!submission.reason.empty())
        lines << label + ": " + QString::fromStdString(submission.reason);
    if (!lines.isEmpty()) {
        emit Told(lines, true);
    } else if (submission.is_held_back) {
        emit Told({tr("%1 waits until another export of its archive's name has ended").arg(label)}, false);
    }
}

}  // namespace FetchyardClient
