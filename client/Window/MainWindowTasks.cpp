// What the window's actions do, as far as that takes more than handing them on.
#include "Window/ExportForm.h"
#include "Window/FailedFilesDialog.h"
#include "Window/MainWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace FetchyardClient {

namespace {

// More folders at once are a slip of the hand.
constexpr std::size_t kMostOpened = 5;
constexpr int kMostLines = 4;
constexpr int kMostDropped = 100;
constexpr int kLineLetters = 400;

std::vector<const TaskRow*> Rows(const TaskModel& model, const std::vector<std::string>& guids,
                                 std::size_t most)
{
    std::vector<const TaskRow*> rows;
    for (const std::string& guid : guids) {
        const TaskRow* row = rows.size() < most ? model.Find(guid) : nullptr;
        if (row != nullptr)
            rows.push_back(row);
    }
    return rows;
}

}  // namespace

void MainWindow::ShowTold(const QStringList& lines, bool is_bad)
{
    if (!is_bad) {
        statusBar()->showMessage(lines.join("  "), 10000);
        return;
    }
    QStringList shown;
    for (const QString& line : lines.mid(0, kMostLines))
        shown << CutText(line, kLineLetters);
    if (lines.size() > kMostLines)
        shown << tr("and %n more", nullptr, lines.size() - kMostLines);
    told_banner_->Say(shown.join('\n'));
}

void MainWindow::OfferGoingOn()
{
    const std::size_t count = board_.CanGoOnCount();
    if (count > 0)
        go_on_banner_->Say(
            tr("%n task(s) of an earlier run were left unfinished.", nullptr, static_cast<int>(count)));
}

void MainWindow::OfferUndo()
{
    const std::size_t count = board_.Undoable();
    undo_banner_->Say(count == 0 ? QString()
                                 : tr("%n task(s) removed from the list. Their files stay.", nullptr,
                                      static_cast<int>(count)));
    UpdateActions();
}

void MainWindow::ShowMenu(const QPoint& place)
{
    UpdateActions();
    task_menu_->popup(table_->View().viewport()->mapToGlobal(place));
}

void MainWindow::NewExport()
{
    if (form_ == nullptr) {
        form_ = new ExportForm(setup_.sites, setup_.save_folder, this);
        connect(form_, &ExportForm::Run, &board_, &TaskBoard::Submit);
        connect(&board_, &TaskBoard::Submitted, form_, &ExportForm::ShowSubmission);
    }
    form_->show();
    form_->raise();
    form_->activateWindow();
}

void MainWindow::ChooseRequests()
{
    auto* dialog =
        new QFileDialog(this, tr("Run request files"), QString(), tr("Requests (*.json);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) {
        for (const QString& path : paths)
            board_.SubmitFile(path);
    });
    dialog->open();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    for (const QUrl& url : urls.mid(0, kMostDropped)) {
        if (url.isLocalFile())
            board_.SubmitFile(url.toLocalFile());
        else
            ShowTold({tr("%1 is not on this computer").arg(url.toDisplayString())}, true);
    }
    if (urls.size() > kMostDropped)
        ShowTold({tr("%n file(s) too many: only the first %1 are run", nullptr, urls.size() - kMostDropped)
                      .arg(kMostDropped)},
                 true);
    event->acceptProposedAction();
}

void MainWindow::DeleteSelected()
{
    const std::vector<std::string> guids = table_->Selected();
    const std::vector<const TaskRow*> rows = Rows(model_, guids, kMostOpened);
    if (rows.empty())
        return;
    QStringList names;
    for (const TaskRow* row : rows)
        names << CutText(NameText(row->task), 60);
    if (guids.size() > rows.size())
        names << tr("and %n more", nullptr, static_cast<int>(guids.size() - rows.size()));
    auto* box = new QMessageBox(
        QMessageBox::Warning, tr("Delete with files"),
        tr("Delete %n task(s) and the folders of their exports?", nullptr, static_cast<int>(guids.size())),
        QMessageBox::Cancel, this);
    box->setObjectName("deleteBox");
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(names.join('\n') + "\n\n" + tr("This can't be undone."));
    QPushButton* yes = box->addButton(tr("&Delete"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::buttonClicked, this, [this, yes, guids](QAbstractButton* button) {
        if (button == yes)
            board_.Do(TaskAction::Delete, guids);
    });
    box->open();
}

void MainWindow::Open(const QString& path)
{
    const QUrl url = QUrl::fromLocalFile(path);
    const bool opened = setup_.open ? setup_.open(url) : QDesktopServices::openUrl(url);
    if (!opened)
        ShowTold({tr("The desktop has no program to open %1").arg(path)}, true);
}

void MainWindow::OpenFolders()
{
    for (const TaskRow* row : Rows(model_, table_->Selected(), kMostOpened)) {
        QString reason;
        const QString folder = FolderToOpen(row->task, reason);
        if (folder.isEmpty())
            ShowTold({reason}, true);
        else
            Open(folder);
    }
}

void MainWindow::OpenReports()
{
    for (const TaskRow* row : Rows(model_, table_->Selected(), kMostOpened)) {
        QString reason;
        const QString report = ReportToOpen(row->task, reason);
        if (report.isEmpty())
            ShowTold({reason}, true);
        else
            Open(report);
    }
}

void MainWindow::ShowFailedFiles()
{
    std::vector<FetchyardLogical::TaskView> tasks;
    constexpr std::size_t most = 100;
    for (const TaskRow* row : Rows(model_, table_->Selected(), most))
        tasks.push_back(row->task);
    (new FailedFilesDialog(tasks, this))->open();
}

void MainWindow::CopyErrors()
{
    QStringList reports;
    constexpr std::size_t most = 1000;
    for (const TaskRow* row : Rows(model_, table_->Selected(), most)) {
        if (StateOf(row->task) == RowState::Failed)
            reports << ErrorReport(row->task);
    }
    QApplication::clipboard()->setText(reports.join("\n\n"));
    statusBar()->showMessage(tr("Copied what went wrong with %n task(s)", nullptr, reports.size()), 5000);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    const std::size_t busy =
        model_.Order().Count(RowState::Running) + model_.Order().Count(RowState::Waiting);
    if (is_closing_ || busy == 0) {
        event->accept();
        return;
    }
    event->ignore();
    auto* box = new QMessageBox(
        QMessageBox::Question, tr("Quit"),
        tr("%n task(s) are on their way. Stop them and quit?", nullptr, static_cast<int>(busy)),
        QMessageBox::Cancel, this);
    box->setObjectName("quitBox");
    box->setInformativeText(tr("What they have stays, and exports can be started again later."));
    QPushButton* yes = box->addButton(tr("&Stop and quit"), QMessageBox::AcceptRole);
    box->setDefaultButton(yes);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::buttonClicked, this, [this, yes](QAbstractButton* button) {
        if (button == yes)
            StopAllAndClose();
    });
    box->open();
}

void MainWindow::StopAllAndClose()
{
    for (const RowState state : {RowState::Waiting, RowState::Running})
        board_.Do(TaskAction::Stop, model_.Order().GuidsIn(state));
    centralWidget()->setEnabled(false);
    statusBar()->showMessage(tr("Stopping\u2026"));
    connect(&model_, &TaskModel::CountsChanged, this, &MainWindow::CloseWhenIdle);
    CloseWhenIdle();
}

void MainWindow::CloseWhenIdle()
{
    if (is_closing_ || model_.Order().Count(RowState::Running) + model_.Order().Count(RowState::Waiting) > 0)
        return;
    is_closing_ = true;
    close();
}

}  // namespace FetchyardClient
