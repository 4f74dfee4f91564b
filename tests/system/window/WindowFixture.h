#pragma once

#include "LibraryHost.h"
#include "tests/system/StationFixture.h"
#include "Window/ExportChoice.h"
#include "Window/MainWindow.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <functional>
#include <memory>

namespace SystemTest {

// The window over a library that is hosted in this process, beside a station.
class WindowFixture : public StationFixture
{
protected:
    WindowFixture();
    ~WindowFixture() override;

    // Starts the library and shows the window.
    void Show();
    // Ends the window and the library, as a person who quits.
    void Leave();
    static FetchyardClient::ExportChoice Choice(const std::string& name);
    // Runs a request and waits until it is in the list.
    void Run(const FetchyardClient::ExportChoice& choice);
    // Makes the station take so long for each page that a task can be found on its way.
    void SlowDown() const;

    // Waits, with the window alive, until the condition holds; false after a minute.
    static bool WaitFor(const std::function<bool()>& condition);
    bool WaitForState(const std::string& name, FetchyardClient::RowState state);
    // The line of a task, -1 if it is not shown.
    int Line(const std::string& name) const;
    // Clicks on the task's line, with the keys held.
    void Click(const std::string& name, Qt::KeyboardModifiers keys = Qt::NoModifier);
    // Presses the keys of an action, once it is possible.
    void PressKeysOf(const QString& action);
    // Clicks on the button of that object name, wherever it is shown.
    void PressButton(const QString& name);
    QString Words(const QString& banner) const;
    bool IsShown(const QString& banner) const;
    std::string Folder(const std::string& below) const;
    // Keeps a picture of a widget for people.
    static void Keep(QWidget& widget, const QString& name);

    FetchyardClient::MainWindow& Window() { return *window_; }

    QTemporaryDir folder_;
    std::vector<QUrl> opened_;
    std::unique_ptr<FetchyardClient::LibraryHost> host_;
    std::unique_ptr<FetchyardClient::TaskChanges> changes_;
    std::unique_ptr<FetchyardClient::TaskModel> model_;
    std::unique_ptr<FetchyardClient::TaskBoard> board_;
    std::unique_ptr<FetchyardClient::MainWindow> window_;
};

}  // namespace SystemTest
