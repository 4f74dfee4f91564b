#include "DemoCommand.h"
#include "KeyCommands.h"
#include "Platform/Terminal.h"
#include "ResumeCommand.h"
#include "RunCommand.h"
#include "TasksCommand.h"
#include "Window/UiCommand.h"

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace FetchyardClient;

// What the help, and the completion that is made of it, says of a value.
constexpr char kRequestFile[] = "FILE.json";

// "--site 7=http://host:port"
std::string ReadSites(const std::vector<std::string>& texts, HostOptions& options)
{
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        const bool digits = equals != std::string::npos && equals > 0 && equals < 10 &&
                            text.find_first_not_of("0123456789") == equals;
        if (!digits)
            return "--site " + text + " is not NUMBER=ADDRESS";
        options.sites[static_cast<unsigned int>(std::stoul(text.substr(0, equals)))] =
            text.substr(equals + 1);
    }
    return "";
}

// "--plugin clipvault.c=/path/of/module"
std::string ReadPlugins(const std::vector<std::string>& texts, HostOptions& options)
{
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
            return "--plugin " + text + " is not ID=MODULE";
        options.plugins[text.substr(0, equals)] = text.substr(equals + 1);
    }
    return "";
}

struct CommandLine
{
    RunOptions run;
    std::vector<std::string> plugins;
    std::vector<std::string> sites;
    std::vector<std::string> requests;
    std::string out_folder = "fetchyard-demo";
    std::string key_target;
    UiOptions ui;
    std::vector<std::string> tasks;
    bool all_tasks = false;
    bool finished_tasks = false;
    bool as_json = false;
};

void AddHostOptions(CLI::App& app, CommandLine& line)
{
    HostOptions& host = line.run.host;
    app.add_option("--data", host.data_folder, "data folder of the client (default: the user's)")
        ->type_name("FOLDER");
    app.add_option("--station", host.station, "address of the station, as http://127.0.0.1:8080")
        ->type_name("ADDRESS");
    app.add_option("--site", line.sites, "address of a further site, as 7=http://127.0.0.1:8081")
        ->type_name("NUMBER=ADDRESS");
    app.add_option("--plugin", line.plugins, "a plug-in's module, as clipvault.c=/path/of/module")
        ->type_name("ID=MODULE");
    app.add_flag_callback(
        "--no-own-plugins", [&host] { host.own_plugins = false; },
        "leave out the plug-ins that come with the client");
    app.add_option("--save", host.save_folder, "where exports go that name no folder")->type_name("FOLDER");
    app.add_option("--user", host.user,
                   "account at the station; the password is read from FETCHYARD_PASSWORD")
        ->type_name("NAME");
    app.add_option("--log", host.log_file, "log file (default: fetchyard.log in the data folder)")
        ->type_name("FILE");
    app.add_flag("--verbose", host.verbose, "log everything, not only errors");
}

// Qt's part of the program. The words of the command line are the client's: Qt would take "--plugin" and
// others for its own. And its remarks, on a missing runtime folder for one, are none of the person's
// business.
std::unique_ptr<QGuiApplication> MakeApplication(bool has_window, char** argv)
{
    static int only_the_name = 1;
    QLoggingCategory::setFilterRules("default.warning=false");
    QCoreApplication::setApplicationName("fetchyard");
    // Names the desktop entry, whose icon a desktop shows for the window.
    QGuiApplication::setDesktopFileName("fetchyard");
    if (has_window) {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
            Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
        return std::make_unique<QApplication>(only_the_name, argv);
    }
    // Pictures in a workbook are scaled for the screen. Without a window there is one all the same, at 100 %,
    // so that a workbook looks the same wherever it was made.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_FONT_DPI"))
        qputenv("QT_FONT_DPI", "96");
    return std::make_unique<QGuiApplication>(only_the_name, argv);
}

void AddUiWord(CLI::App& app, CommandLine& line)
{
    CLI::App* ui = app.add_subcommand("ui", "show the download centre, a window");
    ui->add_option("request", line.requests, "request files to run at once")->type_name(kRequestFile);
    ui->add_option("--colours", line.ui.theme, "system, light or dark (default: as chosen last)")
        ->type_name("WORD")
        ->check(CLI::IsMember({"system", "light", "dark"}));
    ui->add_option("--language", line.ui.language, "system, en or zh (default: as chosen last)")
        ->type_name("WORD")
        ->check(CLI::IsMember({"system", "en", "zh"}));
}

int RunUi(CommandLine& line)
{
    line.ui.host = line.run.host;
    line.ui.requests = line.requests;
    return UiCommand(line.ui);
}

// The words about tasks that are kept.
struct TaskWords
{
    CLI::App* tasks = nullptr;
    CLI::App* resume = nullptr;
    CLI::App* remove = nullptr;

    bool AreParsed() const { return tasks->parsed() || resume->parsed() || remove->parsed(); }
};

// False, with the code to end with, if there is nothing to do or the words are wrong; it is said then.
bool Parse(CLI::App& app, std::vector<std::string> words, int& code)
{
    // The parser takes the words from the last to the first.
    std::reverse(words.begin(), words.end());
    try {
        app.parse(std::move(words));
        return true;
    } catch (const CLI::ParseError& error) {
        code = app.exit(error);
        return false;
    }
}

bool ReadHostWords(CommandLine& line)
{
    std::string wrong = ReadSites(line.sites, line.run.host);
    if (wrong.empty())
        wrong = ReadPlugins(line.plugins, line.run.host);
    if (!wrong.empty())
        std::cerr << wrong << "\n";
    return wrong.empty();
}

TaskWords AddTaskWords(CLI::App& app, CommandLine& line)
{
    TaskWords words;
    words.tasks = app.add_subcommand("tasks", "list the tasks of all runs, with their states");
    words.tasks->add_flag("--json", line.as_json, "for a program to read");
    words.resume = app.add_subcommand(
        "resume", "bring unfinished tasks back from their records and wait for their ends");
    words.resume->add_option("task", line.tasks, "numbers, as tasks lists them, or guids")->type_name("TASK");
    words.resume->add_flag("--all", line.all_tasks, "all that were interrupted or stopped");
    words.remove = app.add_subcommand("remove", "take tasks off the list; their files stay");
    words.remove->add_option("task", line.tasks, "numbers, as tasks lists them, or guids")->type_name("TASK");
    words.remove->add_flag("--finished", line.finished_tasks, "all that finished or were deleted");
    return words;
}

int RunTaskWords(const TaskWords& words, const CommandLine& line)
{
    const HostOptions& host = line.run.host;
    if (words.tasks->parsed())
        return TasksCommand(host, line.as_json);
    const bool is_resume = words.resume->parsed();
    if (line.tasks.empty() && !line.all_tasks && !line.finished_tasks) {
        std::cerr << "which tasks? " << (is_resume ? "--all, or" : "--finished, or")
                  << " numbers as fetchyard tasks lists them\n";
        return kBadInput;
    }
    return is_resume ? ResumeTasks(host, line.tasks, line.all_tasks)
                     : RemoveCommand(host, line.tasks, line.finished_tasks);
}

}  // namespace

int main(int argc, char** argv)
{
    CommandLine line;
    CLI::App app("Runs downloads and exports of a video-security station.", "fetchyard");
    app.set_version_flag("--version", "fetchyard " FETCHYARD_VERSION, "print the version and exit");
    app.require_subcommand(1);
    app.allow_windows_style_options(false);  // a path may begin with a slash
    app.fallthrough();
    AddHostOptions(app, line);
    CLI::App* run = app.add_subcommand("run", "run request files and wait for their ends");
    run->add_option("request", line.requests, "request files")->required()->type_name(kRequestFile);
    run->add_flag("--encipher", line.run.encipher_passwords,
                  "\"PassWord\" in the requests is in clear: cipher it");
    run->add_flag("--discard", line.run.discard_at_interrupt,
                  "an interrupt deletes the exports instead of keeping what they have");
    CLI::App* check = app.add_subcommand("check", "check request files against their schema");
    check->add_option("request", line.requests, "request files")->required()->type_name(kRequestFile);
    CLI::App* demo = app.add_subcommand("demo", "export events of a seeded station in several forms");
    demo->add_option("--out", line.out_folder, "folder for the results")
        ->type_name("FOLDER")
        ->capture_default_str();
    CLI::App* cipher = app.add_subcommand("cipher", "cipher a password from standard input for a request");
    CLI::App* share = app.add_subcommand("share-key", "copy the key of ciphered passwords, for a station");
    share->add_option("target", line.key_target, "file to write; another one is not replaced")
        ->required()
        ->type_name("FILE");
    AddUiWord(app, line);
    const TaskWords task_words = AddTaskWords(app, line);
    int code = kAllWell;
    if (!Parse(app, CommandWords(argc, argv), code))
        return code;
    const bool has_window = app.got_subcommand("ui");
    if (has_window && !HasDisplay()) {
        std::cerr << "there is no display to show a window on\n";
        return kSomethingFailed;
    }
    const std::unique_ptr<QGuiApplication> application = MakeApplication(has_window, argv);

    if (!ReadHostWords(line))
        return kBadInput;
    if (check->parsed())
        return CheckCommand(line.requests);
    if (demo->parsed())
        return DemoCommand(line.run.host, line.out_folder);
    if (cipher->parsed())
        return CipherCommand(line.run.host);
    if (share->parsed())
        return ShareKeyCommand(line.run.host, line.key_target);
    if (has_window)
        return RunUi(line);
    if (task_words.AreParsed())
        return RunTaskWords(task_words, line);
    std::vector<RequestSource> requests;
    if (run->parsed() && !ReadRequests(line.requests, requests))
        return kBadInput;
    return RunRequests(line.run, requests);
}
