#pragma once

#include "Window/Banner.h"
#include "Window/Notices.h"
#include "Window/TaskBoard.h"
#include "Window/TaskTable.h"
#include "Window/Theme.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <map>
#include <string>

class QUrl;

namespace FetchyardClient {

class ExportForm;

// What the window is told of the client around it.
struct WindowSetup
{
    std::map<unsigned int, std::string> sites;  // addresses of the stations
    std::string save_folder;
    QString store_words;  // why the list is not kept, or what was set aside; empty if all is well
    Theme theme = Theme::System;
    QString language;
    // How files and folders are opened; the desktop's way if empty.
    std::function<bool(const QUrl&)> open;
};

// The window of the download centre. It shows what the model holds and hands on to the board what the person
// wants; it decides nothing about tasks.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(TaskBoard& board, TaskModel& model, WindowSetup setup);

    TaskTable& Table() { return *table_; }
    // Stops what is on its way, and closes when all has ended.
    void StopAllAndClose();

signals:
    void ThemeChosen(FetchyardClient::Theme theme);
    void LanguageChosen(const QString& language);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QAction* MakeAction(const QString& name, const QString& text, const QKeySequence& keys, Sign sign,
                        const QString& hint);
    void MakeFileActions();
    void MakeTaskActions();
    void MakeMenus();
    void MakeViewMenu();
    void MakeToolBar();
    void MakeCentre();
    void MakeNotices();
    QWidget* MakeSearch();

    void UpdateActions();
    void UpdateCounts();
    void ApplyFilter();
    void OfferGoingOn();
    void OfferUndo();
    void ShowTold(const QStringList& lines, bool is_bad);
    void ShowMenu(const QPoint& place);

    void NewExport();
    void ChooseRequests();
    void DeleteSelected();
    void OpenFolders();
    void OpenReports();
    void ShowFailedFiles();
    void CopyErrors();
    void Open(const QString& path);
    void CloseWhenIdle();

    TaskBoard& board_;
    TaskModel& model_;
    WindowSetup setup_;
    std::map<QString, QAction*> actions_;
    TaskTable* table_ = nullptr;
    Banner* store_banner_ = nullptr;
    Banner* go_on_banner_ = nullptr;
    Banner* told_banner_ = nullptr;
    Banner* undo_banner_ = nullptr;
    QLineEdit* search_ = nullptr;
    QComboBox* states_ = nullptr;
    QLabel* counts_ = nullptr;
    QMenu* task_menu_ = nullptr;
    Notices* notices_ = nullptr;
    QTimer refresh_;
    QTimer filter_;
    QPointer<ExportForm> form_;
    bool is_closing_ = false;
};

}  // namespace FetchyardClient
