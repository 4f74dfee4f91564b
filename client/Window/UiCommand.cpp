#include "Window/UiCommand.h"

#include "RunCommand.h"
#include "Window/MainWindow.h"
#include "Window/TaskChanges.h"

#include <QApplication>
#include <QHeaderView>
#include <QMessageBox>
#include <QSettings>

#include <csignal>
#include <cstdio>
#include <utility>

namespace FetchyardClient {

using FetchyardBussiness::CDownloadBussinessManager;

namespace {

constexpr char kThemeKey[] = "theme";
constexpr char kLanguageKey[] = "language";
constexpr int kSignalMilliseconds = 200;

volatile std::sig_atomic_t is_asked_to_leave = 0;

void OnLeave(int signal)
{
    // The next one ends the program at once.
    std::signal(signal, SIG_DFL);
    is_asked_to_leave = 1;
}

Theme ThemeOf(const QString& word)
{
    if (word == "dark")
        return Theme::Dark;
    return word == "light" ? Theme::Light : Theme::System;
}

QString WordOf(Theme theme)
{
    if (theme == Theme::Dark)
        return "dark";
    return theme == Theme::Light ? "light" : "system";
}

// The window, made anew when its language or its colours change.
class WindowHolder
{
public:
    WindowHolder(TaskBoard& board, TaskModel& model, WindowSetup setup, QSettings& kept)
        : board_(board), model_(model), setup_(std::move(setup)), kept_(kept)
    {
    }

    void Show()
    {
        const QByteArray geometry = window_ ? window_->saveGeometry() : QByteArray();
        const QByteArray columns = window_ ? window_->Table().View().horizontalHeader()->saveState()
                                           : kept_.value("columns").toByteArray();
        window_.reset();
        ApplyTheme(setup_.theme);
        ApplyLanguage(setup_.language);
        window_ = std::make_unique<MainWindow>(board_, model_, setup_);
        if (!geometry.isEmpty())
            window_->restoreGeometry(geometry);
        window_->Table().View().horizontalHeader()->restoreState(columns);
        QObject::connect(
            window_.get(), &MainWindow::ThemeChosen, window_.get(),
            [this](Theme theme) {
                setup_.theme = theme;
                kept_.setValue(kThemeKey, WordOf(theme));
                Show();
            },
            Qt::QueuedConnection);
        QObject::connect(
            window_.get(), &MainWindow::LanguageChosen, window_.get(),
            [this](const QString& language) {
                setup_.language = language;
                kept_.setValue(kLanguageKey, language.isEmpty() ? "system" : language);
                Show();
            },
            Qt::QueuedConnection);
        window_->show();
    }

    MainWindow& Window() { return *window_; }

private:
    TaskBoard& board_;
    TaskModel& model_;
    WindowSetup setup_;
    QSettings& kept_;
    std::unique_ptr<MainWindow> window_;
};

WindowSetup MakeSetup(const UiOptions& options, const std::string& store_words, const QSettings& kept)
{
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    WindowSetup setup;
    setup.sites = settings.sites;
    setup.save_folder = settings.save_path;
    setup.store_words = QString::fromStdString(store_words);
    setup.theme = ThemeOf(options.theme.empty() ? kept.value(kThemeKey).toString()
                                                : QString::fromStdString(options.theme));
    const QString language = options.language.empty() ? kept.value(kLanguageKey).toString()
                                                      : QString::fromStdString(options.language);
    setup.language = language == "system" ? QString() : language;
    return setup;
}

int RunWindow(const UiOptions& options, const std::string& store_words)
{
    QSettings kept(QString::fromStdString(ZellClientHost::GetClientSettings().data_path + "window.ini"),
                   QSettings::IniFormat);
    TaskChanges changes;
    CDownloadBussinessManager::Instance().RegisterObserver(&changes);
    int code = kAllWell;
    {
        TaskModel model;
        TaskBoard board(changes, model);
        WindowHolder holder(board, model, MakeSetup(options, store_words, kept), kept);
        holder.Show();
        board.Load();
        for (const std::string& path : options.requests)
            board.SubmitFile(QString::fromStdString(path));
        QTimer signals_seen;
        QObject::connect(&signals_seen, &QTimer::timeout, &signals_seen, [&holder] {
            if (is_asked_to_leave != 0) {
                is_asked_to_leave = 0;
                holder.Window().StopAllAndClose();
            }
        });
        signals_seen.start(kSignalMilliseconds);
        std::signal(SIGINT, OnLeave);
        std::signal(SIGTERM, OnLeave);
        code = QApplication::exec();
        kept.setValue("columns", holder.Window().Table().View().horizontalHeader()->saveState());
    }
    CDownloadBussinessManager::Instance().SyncUnregisterObserver(&changes);
    return code;
}

}  // namespace

int UiCommand(const UiOptions& options)
{
    std::string reason;
    LibraryHost host;
    if (!host.Start(options.host, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        QMessageBox::critical(nullptr, "Fetchyard", QString::fromStdString(reason));
        return kSomethingFailed;
    }
    return RunWindow(options, host.StoreMessage());
}

}  // namespace FetchyardClient
