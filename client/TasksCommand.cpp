#include "TasksCommand.h"

#include "FetchyardLogicalHost/EngineHost.h"
#include "RunCommand.h"
#include "TaskChoice.h"
#include "UnfinishedTasks.h"
#include "Words.h"

#include <nlohmann/json.hpp>
#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cstdio>

namespace FetchyardClient {

using FetchyardLogical::RecordKind;
using FetchyardLogical::TaskView;

namespace {

constexpr std::size_t kColumns = 6;
using TableRow = std::array<std::string, kColumns>;

// A letter counts once, however many bytes it has.
std::size_t Letters(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u;
    }));
}

QDateTime Moment(long long milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds);
}

std::string StateOf(const TaskView& task)
{
    return task.is_interrupted ? "interrupted" : StateWords(task.state);
}

std::string ErrorOf(const TaskView& task)
{
    return IsFailure(task.state) || IsStopped(task.state) ? task.error_text : "";
}

TableRow RowOf(std::size_t number, const TaskView& task)
{
    const std::string started =
        task.started == 0 ? "not yet" : Moment(task.started).toString("yyyy-MM-dd HH:mm:ss").toStdString();
    return {std::to_string(number), task.name, StateOf(task), ErrorOf(task), started, task.folder};
}

void PrintTable(const std::vector<TaskView>& tasks)
{
    std::vector<TableRow> rows = {{"No", "Name", "State", "Error", "Started", "Folder"}};
    for (std::size_t i = 0; i < tasks.size(); ++i)
        rows.push_back(RowOf(i + 1, tasks[i]));
    std::array<std::size_t, kColumns> widths{};
    for (const TableRow& row : rows) {
        for (std::size_t i = 0; i < kColumns; ++i)
            widths[i] = std::max(widths[i], Letters(row[i]));
    }
    for (const TableRow& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < kColumns; ++i) {
            const std::string blanks(widths[i] - Letters(row[i]), ' ');
            line += i == 0 ? blanks + row[i] : "  " + row[i] + blanks;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::printf("%s\n", line.c_str());
    }
}

std::string RecordWords(RecordKind kind)
{
    switch (kind) {
        case RecordKind::None:
            return "none";
        case RecordKind::Export:
            return "export";
        case RecordKind::PersonPictures:
            return "person pictures";
        case RecordKind::Transcoding:
            return "transcoding";
        case RecordKind::Unknown:
            break;
    }
    return "unknown";
}

// "2026-01-31T09:05:07.123Z", or null for a time that has not come.
nlohmann::ordered_json TimeOf(long long milliseconds)
{
    if (milliseconds == 0)
        return nullptr;
    return Moment(milliseconds).toUTC().toString(Qt::ISODateWithMs).toStdString();
}

nlohmann::ordered_json ObjectOf(std::size_t number, const TaskView& task)
{
    return {{"Number", number},
            {"Guid", task.guid},
            {"Name", task.name},
            {"State", StateOf(task)},
            {"StateNumber", static_cast<int>(task.state)},
            {"IsUnfinished", IsUnfinished(task)},
            {"Record", RecordWords(task.record_kind)},
            {"ErrorModule", task.error.iFirstCode},
            {"ErrorCode", task.error.iSecondCode},
            {"ErrorText", ErrorOf(task)},
            {"HandedOver", TimeOf(task.handed_over)},
            {"Started", TimeOf(task.started)},
            {"Ended", TimeOf(task.ended)},
            {"Folder", task.folder}};
}

void PrintJson(const std::vector<TaskView>& tasks)
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < tasks.size(); ++i)
        list.push_back(ObjectOf(i + 1, tasks[i]));
    // A folder may have a name that is no UTF-8.
    std::printf("%s\n", list.dump(1, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

// No store at all is an empty list: nothing has run here.
bool ReadTasks(std::vector<TaskView>& tasks)
{
    const std::string store = TaskStoreFile();
    std::string message;
    if (!QFileInfo::exists(QString::fromStdString(store)) ||
        FetchyardLogical::ReadTaskStore(store, tasks, message))
        return true;
    std::fprintf(stderr, "%s\n", message.c_str());
    return false;
}

int RemoveNamed(const std::vector<std::string>& words)
{
    std::vector<TaskView> chosen;
    if (!ChooseTasks(FetchyardLogical::ListTasks(), words, chosen))
        return kBadInput;
    bool all_gone = true;
    for (const TaskView& task : chosen) {
        const bool is_gone = FetchyardLogical::RemoveFromList(task.guid);
        std::printf("%s: %s\n", task.name.c_str(), is_gone ? "off the list" : "can't be taken off the list");
        all_gone = all_gone && is_gone;
    }
    return all_gone ? kAllWell : kSomethingFailed;
}

}  // namespace

int TasksCommand(const HostOptions& options, bool as_json)
{
    std::string reason;
    if (!UseSettings(options, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return kSomethingFailed;
    }
    std::vector<TaskView> tasks;
    if (!ReadTasks(tasks))
        return kSomethingFailed;
    if (as_json)
        PrintJson(tasks);
    else if (tasks.empty())
        std::printf("no tasks\n");
    else
        PrintTable(tasks);
    return kAllWell;
}

int RemoveCommand(const HostOptions& options, const std::vector<std::string>& words, bool finished)
{
    std::string reason;
    if (!UseSettings(options, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return kSomethingFailed;
    }
    std::string message;
    const bool is_open = FetchyardLogical::OpenTaskStore(TaskStoreFile(), message);
    if (!message.empty())
        std::fprintf(stderr, "%s\n", message.c_str());
    if (!is_open)
        return kSomethingFailed;
    int code = RemoveNamed(words);
    if (finished && code == kAllWell) {
        const std::size_t count = FetchyardLogical::ClearFinished();
        std::printf("%s finished task%s off the list\n", GroupedNumber(count).c_str(), count == 1 ? "" : "s");
    }
    const std::string trouble = FetchyardLogical::StoreTrouble();
    FetchyardLogical::CloseTaskStore();
    if (!trouble.empty()) {
        std::fprintf(stderr, "%s\n", trouble.c_str());
        code = kSomethingFailed;
    }
    return code;
}

}  // namespace FetchyardClient
