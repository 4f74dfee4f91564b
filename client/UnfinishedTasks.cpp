#include "UnfinishedTasks.h"

#include "Platform/Terminal.h"
#include "Words.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace FetchyardClient {

using FetchyardLogical::RecordKind;
using FetchyardLogical::TaskView;

namespace {

// More names than these make a line that nobody reads.
constexpr std::size_t kMostNamed = 3;

void AddOption(std::string& command, const char* option, const std::string& value)
{
    if (!value.empty())
        command += std::string(" ") + option + " " + ShellWord(value);
}

std::string Assigned(const std::string& name, const std::string& value)
{
    return name + "=" + value;
}

std::string Tasks(std::size_t count)
{
    return GroupedNumber(count) + (count == 1 ? " task" : " tasks");
}

}  // namespace

bool IsUnfinished(const TaskView& task)
{
    return task.is_interrupted || IsStopped(task.state);
}

bool HasRecord(const TaskView& task)
{
    return task.record_kind != RecordKind::None;
}

std::string ResumeCommand(const HostOptions& options, const std::vector<std::string>& guids)
{
    std::string command = "fetchyard resume";
    if (guids.empty())
        command += " --all";
    for (const std::string& guid : guids)
        command += " " + guid;
    AddOption(command, "--data", options.data_folder);
    AddOption(command, "--station", options.station);
    for (const auto& [site, address] : options.sites)
        AddOption(command, "--site", Assigned(std::to_string(site), address));
    AddOption(command, "--save", options.save_folder);
    AddOption(command, "--user", options.user);
    for (const auto& [id, module] : options.plugins)
        AddOption(command, "--plugin", Assigned(id, module));
    if (!options.own_plugins)
        command += " --no-own-plugins";
    AddOption(command, "--log", options.log_file);
    return command;
}

void TellEarlierTasks(const HostOptions& options)
{
    std::size_t unfinished = 0;
    std::size_t with_record = 0;
    for (const TaskView& task : FetchyardLogical::ListTasks()) {
        if (!task.is_stored_only || !IsUnfinished(task))
            continue;
        ++unfinished;
        with_record += HasRecord(task) ? 1U : 0U;
    }
    if (unfinished == 0)
        return;
    const std::string are = unfinished == 1 ? " is unfinished" : " are unfinished";
    const std::string go_on = with_record == 0 ? "and left no record to go on from; see fetchyard tasks"
                                               : "- to go on: " + ResumeCommand(options, {});
    std::printf("%s of an earlier run%s %s\n", Tasks(unfinished).c_str(), are.c_str(), go_on.c_str());
    std::fflush(stdout);
}

void TellHowToGoOn(const HostOptions& options, const std::vector<std::string>& guids)
{
    const std::set<std::string> own(guids.begin(), guids.end());
    std::vector<std::string> stopped;
    std::size_t lost = 0;
    bool others = false;
    for (const TaskView& task : FetchyardLogical::ListTasks()) {
        const bool is_own = own.count(task.guid) > 0;
        if (!IsUnfinished(task))
            continue;
        if (!HasRecord(task))
            lost += is_own ? 1U : 0U;
        else if (is_own)
            stopped.push_back(task.guid);
        else
            others = true;
    }
    if (!stopped.empty()) {
        const bool name_them = others && stopped.size() <= kMostNamed;
        std::printf("to go on: %s\n",
                    ResumeCommand(options, name_them ? stopped : std::vector<std::string>()).c_str());
    }
    if (lost > 0)
        std::printf("%s of single files left no record to go on from: run the request again\n",
                    Tasks(lost).c_str());
}

}  // namespace FetchyardClient
