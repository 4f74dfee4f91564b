#include "Window/TaskActions.h"

#include "FetchyardBussiness/DownloadBussinessManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <utility>

namespace FetchyardClient {

using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardLogical::RecordKind;
using FetchyardLogical::TaskView;

namespace {

constexpr int kNameLetters = 60;

QString Words(const char* text)
{
    return QCoreApplication::translate("Actions", text);
}

QString Refusal(const TaskView& task, const char* reason)
{
    return CutText(NameText(task), kNameLetters) + ": " + Words(reason);
}

TaskNews NewsOf(const TaskView& task)
{
    TaskNews news;
    news.row.task = task;
    return news;
}

void TellNow(const std::string& guid, ActionOutcome& outcome)
{
    TaskView view;
    if (FetchyardLogical::FindTask(guid, view)) {
        outcome.news.push_back(NewsOf(view));
        return;
    }
    TaskNews gone;
    gone.row.task.guid = guid;
    gone.is_gone = true;
    outcome.news.push_back(gone);
}

void Refuse(const TaskView& task, const char* reason, ActionOutcome& outcome)
{
    outcome.refused.push_back(Refusal(task, reason));
    TellNow(task.guid, outcome);
}

void Count(const TaskView& task, ActionOutcome& outcome)
{
    ++outcome.done;
    TellNow(task.guid, outcome);
}

void StopOne(const TaskView& task, ActionOutcome& outcome)
{
    if (FetchyardLogical::StopTask(task.guid))
        Count(task, outcome);
    else
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "has ended already"), outcome);
}

// Makes a task of an earlier run anew and puts it in the place of its entry.
void BringBack(const TaskView& task, ActionOutcome& outcome)
{
    std::shared_ptr<ZellTaskKit::CDownloadTaskBase> made;
    const std::string record = FetchyardLogical::ResumeText(task.guid);
    if (record.empty()) {
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "has no record to begin from; ask for it anew"), outcome);
        return;
    }
    if (!CDownloadBussinessManager::Instance().ResumeDownloadTask(made, record) || !made) {
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "its record can't be read"), outcome);
        return;
    }
    if (!FetchyardLogical::HandOverInPlaceOf(task.guid, made)) {
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "was brought back already"), outcome);
        return;
    }
    ++outcome.done;
    TaskView view;
    if (!FetchyardLogical::FindTask(made->GetGuid(), view))
        return;
    TaskNews news = NewsOf(view);
    news.in_place_of = task.guid;
    outcome.news.push_back(std::move(news));
}

void StartOneAgain(const TaskView& task, ActionOutcome& outcome)
{
    if (task.is_stored_only)
        BringBack(task, outcome);
    else if (FetchyardLogical::StartTaskAgain(task.guid))
        Count(task, outcome);
    else if (IsBusy(task))
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "is on its way already"), outcome);
    else
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "was deleted"), outcome);
}

void DeleteOne(const TaskView& task, ActionOutcome& outcome)
{
    if (!IsPossible(TaskAction::Delete, task))
        Refuse(task,
               QT_TRANSLATE_NOOP("Actions", "has ended, so what it made stays; remove it from the list"),
               outcome);
    else if (FetchyardLogical::DeleteTask(task.guid, FetchyardLogical::FolderFate::Remove))
        Count(task, outcome);
    else
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "can't be deleted"), outcome);
}

void RemoveOne(const TaskView& task, ActionOutcome& outcome)
{
    if (FetchyardLogical::RemoveFromList(task.guid))
        Count(task, outcome);
    else
        Refuse(task, QT_TRANSLATE_NOOP("Actions", "is on its way; stop it first"), outcome);
}

// In the order of their first hand-over, which is the order in which they would have run.
std::vector<TaskView> Views(const std::vector<std::string>& guids, ActionOutcome& outcome)
{
    std::vector<TaskView> views;
    for (const std::string& guid : guids) {
        TaskView view;
        if (FetchyardLogical::FindTask(guid, view))
            views.push_back(std::move(view));
        else
            TellNow(guid, outcome);
    }
    std::stable_sort(views.begin(), views.end(),
                     [](const TaskView& a, const TaskView& b) { return a.queue_order < b.queue_order; });
    return views;
}

}  // namespace

bool IsPossible(TaskAction action, const TaskView& task)
{
    switch (action) {
        case TaskAction::Stop:
            return IsBusy(task);
        case TaskAction::StartAgain:
            if (task.is_stored_only)
                return task.record_kind != RecordKind::None;
            return !IsBusy(task) && task.state != ZellTaskKit::Deleted;
        case TaskAction::Delete:
            // What an ended one made is what was asked for.
            return IsBusy(task) || task.is_interrupted;
        case TaskAction::Remove:
            return !IsBusy(task);
    }
    return false;
}

bool CanGoOn(const TaskView& task)
{
    return task.is_interrupted && task.record_kind != RecordKind::None;
}

ActionOutcome Act(TaskAction action, const std::vector<std::string>& guids)
{
    ActionOutcome outcome;
    for (const TaskView& task : Views(guids, outcome)) {
        switch (action) {
            case TaskAction::Stop:
                StopOne(task, outcome);
                break;
            case TaskAction::StartAgain:
                StartOneAgain(task, outcome);
                break;
            case TaskAction::Delete:
                DeleteOne(task, outcome);
                break;
            case TaskAction::Remove:
                RemoveOne(task, outcome);
                break;
        }
    }
    return outcome;
}

QString FolderToOpen(const TaskView& task, QString& reason)
{
    QString folder = QString::fromStdString(task.folder);
    if (folder.isEmpty())
        reason = Refusal(task, QT_TRANSLATE_NOOP("Actions", "has no folder yet"));
    else if (!QFileInfo(folder).isDir())
        reason =
            Refusal(task, QT_TRANSLATE_NOOP("Actions", "its folder was removed: ")) + CutText(folder, 200);
    else
        return folder;
    return {};
}

QString ReportToOpen(const TaskView& task, QString& reason)
{
    const QString folder = FolderToOpen(task, reason);
    if (folder.isEmpty())
        return {};
    const QDir dir(folder);
    const QString name = QString::fromStdString(task.name);
    for (const char* suffix : {".xlsx", ".csv", ".pdf", ".txt", ".zip", ""}) {
        const QFileInfo file(dir.filePath(name + suffix));
        if (!name.isEmpty() && file.isFile())
            return file.absoluteFilePath();
    }
    reason = Refusal(task, QT_TRANSLATE_NOOP("Actions", "there is no report in its folder"));
    return {};
}

}  // namespace FetchyardClient
