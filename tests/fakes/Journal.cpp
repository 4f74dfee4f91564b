#include "fakes/Journal.h"

#include "fakes/Script.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace fakes {
namespace {

struct Failures
{
    int first = 0;
    int count = 0;

    bool Covers(int number) const
    {
        return number >= first && first > 0 && (count < 0 || number < first + count);
    }
};

struct State
{
    std::mutex mutex;
    bool recording = true;
    std::vector<std::string> lines;
    std::vector<std::pair<std::string, std::string>> aliases;
    std::map<std::string, int> calls;
    std::map<std::string, Failures> failures;
    std::map<std::pair<std::string, int>, std::function<void()>> actions;
    Script script;
};

State& TheState()
{
    static auto* state = new State;
    return *state;
}

std::string WithAliases(const State& state, std::string line)
{
    for (const auto& [text, alias] : state.aliases) {
        for (auto at = line.find(text); at != std::string::npos; at = line.find(text, at + alias.size()))
            line.replace(at, text.size(), alias);
    }
    return line;
}

// A blank at the end of a line would be invisible in a literal trace.
void ShowTrailingBlanks(std::string& line)
{
    const auto end = line.find_last_not_of(' ');
    const auto blanks = line.size() - (end == std::string::npos ? 0 : end + 1);
    line.resize(line.size() - blanks);
    for (std::size_t i = 0; i < blanks; ++i)
        line += "\xC2\xB7";
}

void AppendLocked(State& state, const std::string& line)
{
    if (!state.recording)
        return;
    std::string shown = WithAliases(state, line);
    ShowTrailingBlanks(shown);
    state.lines.push_back(std::move(shown));
}

}  // namespace

void Append(const std::string& line)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    AppendLocked(state, line);
}

bool Call(const std::string& operation, const std::string& arguments)
{
    State& state = TheState();
    std::function<void()> action;
    bool succeeds = true;
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        const int number = ++state.calls[operation];
        succeeds = !state.failures[operation].Covers(number);
        const auto found = state.actions.find({operation, number});
        if (found != state.actions.end())
            action = found->second;
        std::string line = operation;
        if (!arguments.empty())
            line += " " + arguments;
        AppendLocked(state, succeeds ? line : line + " -> fails");
    }
    if (action)
        action();
    return succeeds;
}

int NextNumber(const std::string& series)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    return ++state.calls[series];
}

std::vector<std::string> Take()
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    return std::exchange(state.lines, {});
}

std::string TakeText()
{
    std::string text;
    for (const std::string& line : Take())
        text += line + "\n";
    return text;
}

void SetRecording(bool on)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.recording = on;
}

void SetAlias(const std::string& text, const std::string& alias)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.aliases.emplace_back(text, alias);
}

int CountOf(const std::string& operation)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    return state.calls[operation];
}

void FailCalls(const std::string& operation, int first, int count)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.failures[operation] = Failures{first, count};
}

void OnCall(const std::string& operation, int number, std::function<void()> action)
{
    State& state = TheState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.actions[{operation, number}] = std::move(action);
}

void Reset()
{
    State& state = TheState();
    Script former;  // goes in as a fresh one, comes out to be destroyed behind the lock: it may hold tasks
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.recording = true;
    state.lines.clear();
    state.aliases.clear();
    state.calls.clear();
    state.failures.clear();
    state.actions.clear();
    std::swap(former, state.script);
}

Script& TheScript()
{
    return TheState().script;
}

}  // namespace fakes
