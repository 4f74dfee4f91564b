// bench_window open STORE: opens the store and prints the seconds from there until the window shows all of
// it. bench_window busy STATION FOLDER SECONDS: runs five reports of synthetic rows at a time for so long
// below a window that is shown; prints the longest stall of the window's thread in milliseconds, and then the
// share of one core that this thread took, in percent. Run with QT_QPA_PLATFORM=offscreen or on a display.
#include "LibraryHost.h"
#include "Window/ExportChoice.h"
#include "Window/MainWindow.h"

#include <QApplication>
#include <QElapsedTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

using namespace FetchyardClient;
using Clock = std::chrono::steady_clock;

constexpr int kTasksAtOnce = 5;
constexpr int kBeatMilliseconds = 10;
// Row numbers of one report; it is begun again when it has ended.
constexpr int kRows = 200'000;

double SecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

void ProcessUntil(const std::function<bool()>& done)
{
    while (!done())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
}

// The window with what stands behind it.
struct Shown
{
    TaskChanges changes;
    TaskModel model;
    TaskBoard board{changes, model};
    MainWindow window{board, model, WindowSetup()};
};

int Open(const std::string& store)
{
    std::string message;
    const Clock::time_point begin = Clock::now();
    if (!FetchyardLogical::OpenTaskStore(store, message)) {
        std::fprintf(stderr, "%s\n", message.c_str());
        return 1;
    }
    const double opened = SecondsSince(begin);
    const Clock::time_point shown_begin = Clock::now();
    Shown shown;
    shown.window.show();
    shown.board.Load();
    ProcessUntil([&] { return shown.board.IsLoaded(); });
    shown.window.grab();
    std::printf("store %.3f s, %d lines\n%.6f\n", opened, shown.model.rowCount(), SecondsSince(shown_begin));
    return 0;
}

// Of the calling thread.
double ProcessorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::string Request(int number)
{
    nlohmann::json request = MakeRequest(ExportChoice());
    nlohmann::json& data = request["FileExportRequest"]["RequestData"];
    data["ExportFileParam"]["RequestAPI"] = "/api/v1/synthetic/report";
    data["ExportFileParam"]["RequestCondition"] = R"({"PageIndex":1,"PageSize":1000,"Rows":)" +
                                                  std::to_string(kRows) + R"(,"Columns":10,"Pictures":0})";
    data["WriteFileCondition"]["ExportFileName"] = "report " + std::to_string(number);
    data["WriteFileCondition"]["ExportFileType"] = 1;
    return request.dump();
}

int Busy(const std::string& station, const std::string& folder, double seconds)
{
    HostOptions options;
    options.data_folder = folder + "/data";
    options.save_folder = folder + "/exports";
    options.station = station;
    options.own_plugins = false;
    LibraryHost host;
    std::string reason;
    if (!host.Start(options, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return 1;
    }
    Shown shown;
    auto& manager = FetchyardBussiness::CDownloadBussinessManager::Instance();
    manager.RegisterObserver(&shown.changes);
    shown.window.show();
    shown.board.Load();
    ProcessUntil([&] { return shown.board.IsLoaded(); });
    int number = 0;
    const auto begin_one = [&] { shown.board.Submit({"bench", Request(++number)}); };
    for (int i = 0; i < kTasksAtOnce; ++i)
        begin_one();
    QObject::connect(&shown.board, &TaskBoard::Ended, begin_one);
    // A timer that is late by so much stood behind something else that the thread did.
    QApplication::setQuitOnLastWindowClosed(false);
    QElapsedTimer since_beat;
    qint64 longest = 0;
    QTimer beat;
    beat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&beat, &QTimer::timeout, [&] {
        longest = std::max(longest, since_beat.nsecsElapsed());
        since_beat.restart();
    });
    since_beat.start();
    beat.start(kBeatMilliseconds);
    const double processor_before = ProcessorSeconds();
    const Clock::time_point begin = Clock::now();
    QTimer::singleShot(static_cast<int>(1000 * seconds), qApp, &QApplication::quit);
    QApplication::exec();
    beat.stop();
    const double processor = ProcessorSeconds() - processor_before;
    std::printf("%d reports; longest stall %.1f ms\n%.3f\n", number, static_cast<double>(longest) * 1e-6,
                100 * processor / SecondsSince(begin));
    manager.SyncUnregisterObserver(&shown.changes);
    std::fflush(stdout);
    std::_Exit(0);
}

}  // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const std::string kind = argc > 1 ? argv[1] : "";
    if (kind == "open" && argc == 3)
        return Open(argv[2]);
    if (kind == "busy" && argc == 5)
        return Busy(argv[2], argv[3], std::atof(argv[4]));
    std::fprintf(stderr, "bench_window open STORE | busy STATION FOLDER SECONDS\n");
    return 2;
}
