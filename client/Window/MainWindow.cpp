#include "Window/MainWindow.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QLocale>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <utility>

namespace FetchyardClient {

namespace {

constexpr int kRefreshMilliseconds = 100;
constexpr int kFilterMilliseconds = 120;

QString NativeKeys(const QAction& action)
{
    return action.shortcut().toString(QKeySequence::NativeText);
}

}  // namespace

MainWindow::MainWindow(TaskBoard& board, TaskModel& model, WindowSetup setup)
    : board_(board), model_(model), setup_(std::move(setup))
{
    setObjectName("downloadCentre");
    setWindowTitle(tr("Download centre"));
    setWindowIcon(ProgramIcon());
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    model_.SetDark(IsDark(palette()));
    MakeFileActions();
    MakeTaskActions();
    MakeMenus();
    MakeToolBar();
    MakeCentre();
    MakeNotices();
    refresh_.setSingleShot(true);
    refresh_.setInterval(kRefreshMilliseconds);
    connect(&refresh_, &QTimer::timeout, this, [this] {
        UpdateCounts();
        UpdateActions();
    });
    filter_.setSingleShot(true);
    filter_.setInterval(kFilterMilliseconds);
    connect(&filter_, &QTimer::timeout, this, &MainWindow::ApplyFilter);
    const auto refresh_soon = [this] {
        if (!refresh_.isActive())
            refresh_.start();
    };
    connect(&model_, &TaskModel::CountsChanged, this, refresh_soon);
    connect(table_, &TaskTable::SelectionChanged, this, refresh_soon);
    connect(table_, &TaskTable::Chosen, this, &MainWindow::OpenFolders);
    connect(&board_, &TaskBoard::Told, this, &MainWindow::ShowTold);
    connect(&board_, &TaskBoard::UndoableChanged, this, &MainWindow::OfferUndo);
    connect(&board_, &TaskBoard::Loaded, this, [this] {
        ApplyFilter();
        OfferGoingOn();
    });
    store_banner_->Say(setup_.store_words);
    if (board_.IsLoaded())
        OfferGoingOn();
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 190, metrics.height() * 34);
    UpdateCounts();
    UpdateActions();
    table_->View().setFocus();
}

QAction* MainWindow::MakeAction(const QString& name, const QString& text, const QKeySequence& keys, Sign sign,
                                const QString& hint)
{
    auto* action = new QAction(SignIcon(sign, palette().color(QPalette::ButtonText)), text, this);
    action->setObjectName(name);
    action->setShortcut(keys);
    action->setToolTip("<qt>" + hint + (keys.isEmpty() ? QString() : " (" + NativeKeys(*action) + ")") +
                       "</qt>");
    action->setStatusTip(hint);
    addAction(action);
    actions_[name] = action;
    return action;
}

void MainWindow::MakeFileActions()
{
    connect(MakeAction("newExport", tr("&New export\u2026"), QKeySequence::New, Sign::Add,
                       tr("Put an export together and run it")),
            &QAction::triggered, this, &MainWindow::NewExport);
    connect(MakeAction("runRequests", tr("&Run request files\u2026"), QKeySequence::Open, Sign::Report,
                       tr("Run requests that are in files")),
            &QAction::triggered, this, &MainWindow::ChooseRequests);
    connect(MakeAction("goOn", tr("&Go on with what was left unfinished"), tr("Ctrl+G"), Sign::GoOn,
                       tr("Go on with everything that an earlier run left unfinished")),
            &QAction::triggered, this, [this] {
                go_on_banner_->hide();
                board_.GoOn();
            });
    connect(MakeAction("clearFinished", tr("&Clear finished"), tr("Ctrl+Shift+Del"), Sign::Clear,
                       tr("Take all that finished or was deleted out of the list; files stay")),
            &QAction::triggered, &board_, &TaskBoard::ClearFinished);
    connect(
        MakeAction("undo", tr("&Undo"), QKeySequence::Undo, Sign::Undo, tr("Put back what was removed last")),
        &QAction::triggered, &board_, &TaskBoard::Undo);
    auto* quit = new QAction(tr("&Quit"), this);
    quit->setObjectName("quit");
    quit->setShortcut(tr("Ctrl+Q"));
    actions_["quit"] = quit;
    connect(quit, &QAction::triggered, this, &MainWindow::close);
}

void MainWindow::MakeTaskActions()
{
    connect(MakeAction("stop", tr("&Stop"), tr("Ctrl+."), Sign::Stop,
                       tr("Stop the selected tasks; what they have stays")),
            &QAction::triggered, this, [this] { board_.Do(TaskAction::Stop, table_->Selected()); });
    connect(MakeAction("startAgain", tr("Start &again"), tr("Ctrl+R"), Sign::Again,
                       tr("Run the selected tasks once more")),
            &QAction::triggered, this, [this] { board_.Do(TaskAction::StartAgain, table_->Selected()); });
    connect(MakeAction("remove", tr("&Remove from list"), QKeySequence::Delete, Sign::Remove,
                       tr("Take the selected tasks out of the list; files stay")),
            &QAction::triggered, this, [this] { board_.Remove(table_->Selected()); });
    connect(MakeAction("delete", tr("&Delete with files\u2026"), tr("Shift+Del"), Sign::Delete,
                       tr("Delete the selected unfinished tasks and the folders of their exports")),
            &QAction::triggered, this, &MainWindow::DeleteSelected);
    connect(MakeAction("openFolder", tr("Open &folder"), tr("Ctrl+Return"), Sign::Folder,
                       tr("Open the folder of the selected tasks")),
            &QAction::triggered, this, &MainWindow::OpenFolders);
    connect(MakeAction("openReport", tr("Open re&port"), tr("Ctrl+P"), Sign::Report,
                       tr("Open the report or the archive of the selected tasks")),
            &QAction::triggered, this, &MainWindow::OpenReports);
    connect(MakeAction("failedFiles", tr("Show fai&led files"), tr("Ctrl+L"), Sign::FailedFiles,
                       tr("Show which files the selected tasks could not get, and why")),
            &QAction::triggered, this, &MainWindow::ShowFailedFiles);
    connect(MakeAction("copyError", tr("&Copy error"), QKeySequence::Copy, Sign::FailedFiles,
                       tr("Copy what went wrong with the selected tasks")),
            &QAction::triggered, this, &MainWindow::CopyErrors);
}

void MainWindow::MakeMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    for (const char* name : {"newExport", "runRequests"})
        file->addAction(actions_[name]);
    file->addSeparator();
    file->addAction(actions_["quit"]);
    task_menu_ = menuBar()->addMenu(tr("&Tasks"));
    for (const char* name : {"stop", "startAgain", "remove", "delete", "", "openFolder", "openReport",
                             "failedFiles", "copyError", "", "goOn", "clearFinished", "undo"}) {
        if (*name == '\0')
            task_menu_->addSeparator();
        else
            task_menu_->addAction(actions_[name]);
    }
    MakeViewMenu();
}

void MainWindow::MakeViewMenu()
{
    QMenu* view = menuBar()->addMenu(tr("&View"));
    auto* find = view->addAction(tr("&Find by name"), this, [this] {
        search_->setFocus(Qt::ShortcutFocusReason);
        search_->selectAll();
    });
    find->setShortcut(QKeySequence::Find);
    view->addSeparator();
    auto* themes = new QActionGroup(this);
    const std::pair<Theme, QString> of_theme[] = {{Theme::System, tr("Colours of the &desktop")},
                                                  {Theme::Light, tr("&Light colours")},
                                                  {Theme::Dark, tr("Dar&k colours")}};
    for (const auto& [theme, text] : of_theme) {
        QAction* action = themes->addAction(text);
        action->setCheckable(true);
        action->setChecked(theme == setup_.theme);
        connect(action, &QAction::triggered, this, [this, chosen = theme] { emit ThemeChosen(chosen); });
        view->addAction(action);
    }
    view->addSeparator();
    auto* languages = new QActionGroup(this);
    // Each in its own language, for who can't read the present one.
    const std::pair<QString, QString> of_language[] = {
        {"", tr("Lan&guage of the desktop")}, {"en", "English"}, {"zh", QString::fromUtf8("\u4e2d\u6587")}};
    for (const auto& [language, text] : of_language) {
        QAction* action = languages->addAction(text);
        action->setCheckable(true);
        action->setChecked(language == setup_.language);
        connect(action, &QAction::triggered, this,
                [this, chosen = language] { emit LanguageChosen(chosen); });
        view->addAction(action);
    }
}

QWidget* MainWindow::MakeSearch()
{
    search_ = new QLineEdit(this);
    search_->setObjectName("search");
    search_->setPlaceholderText(tr("Search names"));
    search_->setAccessibleName(tr("Search names"));
    search_->setClearButtonEnabled(true);
    search_->addAction(SignIcon(Sign::Search, palette().color(QPalette::PlaceholderText)),
                       QLineEdit::LeadingPosition);
    search_->setMaximumWidth(fontMetrics().averageCharWidth() * 32);
    connect(search_, &QLineEdit::textChanged, this, [this] { filter_.start(); });
    connect(search_, &QLineEdit::returnPressed, this, [this] { table_->View().setFocus(); });
    states_ = new QComboBox(this);
    states_->setObjectName("states");
    states_->setAccessibleName(tr("State of the tasks shown"));
    states_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    states_->addItem(tr("All states"));
    for (int state = 0; state < kRowStates; ++state)
        states_->addItem(StateIcon(static_cast<RowState>(state), IsDark(palette())),
                         StateText(static_cast<RowState>(state)), state);
    connect(states_, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &MainWindow::ApplyFilter);
    auto* place = new QWidget(this);
    auto* line = new QHBoxLayout(place);
    line->setContentsMargins(0, 0, 0, 0);
    line->addStretch(1);
    line->addWidget(search_, 2);
    line->addWidget(states_);
    return place;
}

void MainWindow::MakeToolBar()
{
    QToolBar* bar = addToolBar(tr("Actions"));
    bar->setObjectName("actions");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const int side = fontMetrics().height();
    bar->setIconSize(QSize(side, side));
    for (const char* name :
         {"newExport", "", "stop", "startAgain", "remove", "delete", "", "openFolder", "openReport"}) {
        if (*name == '\0')
            bar->addSeparator();
        else
            bar->addAction(actions_[name]);
    }
    for (QAction* action : bar->actions()) {
        if (QWidget* button = bar->widgetForAction(action)) {
            button->setAccessibleName(action->text().remove('&'));
            if (!action->isSeparator())
                button->setFocusPolicy(Qt::TabFocus);
        }
    }
}

void MainWindow::MakeCentre()
{
    auto* centre = new QWidget(this);
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    const QColor ink = palette().color(QPalette::ButtonText);
    store_banner_ = new Banner(Banner::Tone::Warning, "storeBanner", centre);
    go_on_banner_ = new Banner(Banner::Tone::Plain, "goOnBanner", centre);
    told_banner_ = new Banner(Banner::Tone::Warning, "toldBanner", centre);
    undo_banner_ = new Banner(Banner::Tone::Plain, "undoBanner", centre);
    connect(go_on_banner_->SetAction(tr("Go on with all"), SignIcon(Sign::GoOn, ink)), &QPushButton::clicked,
            actions_["goOn"], &QAction::trigger);
    connect(undo_banner_->SetAction(tr("Undo"), SignIcon(Sign::Undo, ink)), &QPushButton::clicked,
            actions_["undo"], &QAction::trigger);
    auto* search = MakeSearch();
    const int gap = fontMetrics().height() / 3;
    search->layout()->setContentsMargins(gap, gap, gap, gap);
    table_ = new TaskTable(model_, centre);
    connect(&table_->View(), &QWidget::customContextMenuRequested, this, &MainWindow::ShowMenu);
    for (QWidget* part : {static_cast<QWidget*>(store_banner_), static_cast<QWidget*>(go_on_banner_),
                          static_cast<QWidget*>(told_banner_), search})
        column->addWidget(part);
    column->addWidget(table_, 1);
    column->addWidget(undo_banner_);
    setCentralWidget(centre);
    counts_ = new QLabel(this);
    counts_->setObjectName("counts");
    statusBar()->addPermanentWidget(counts_);
}

void MainWindow::MakeNotices()
{
    auto* menu = new QMenu(this);
    menu->addAction(tr("Show the window"), this, [this] {
        showNormal();
        raise();
        activateWindow();
    });
    menu->addAction(actions_["quit"]);
    notices_ = new Notices(*menu, this);
    connect(notices_, &Notices::Wanted, this, [this] {
        showNormal();
        raise();
        activateWindow();
    });
    connect(&board_, &TaskBoard::Ended, this, [this](const TaskRow& row) {
        if (!isActiveWindow() || isMinimized())
            notices_->TellEnd(row);
    });
}

void MainWindow::ApplyFilter()
{
    filter_.stop();
    TaskFilter filter;
    filter.text = search_->text();
    const QVariant state = states_->currentData();
    if (state.isValid())
        filter.state = static_cast<RowState>(state.toInt());
    if (filter.text != model_.Order().Filter().text || filter.state != model_.Order().Filter().state)
        model_.SetFilter(filter);
    UpdateCounts();
    UpdateActions();
}

void MainWindow::UpdateCounts()
{
    const TaskOrder& order = model_.Order();
    const QLocale locale;
    QStringList parts;
    for (int state = 0; state < kRowStates; ++state) {
        const std::size_t count = order.Count(static_cast<RowState>(state));
        const QString words = StateText(static_cast<RowState>(state));
        const QString number = locale.toString(static_cast<qulonglong>(count));
        const QString shown = count == 0 ? words : words + " (" + number + ")";
        // Each change of a text makes the box measure all of them.
        if (states_->itemText(state + 1) != shown)
            states_->setItemText(state + 1, shown);
        if (count > 0)
            parts << tr("%1 %2", "number, state").arg(number, words);
    }
    const auto total = static_cast<int>(order.Total());
    if (order.Shown() != total)
        parts << tr("%1 of %2 shown").arg(locale.toString(order.Shown()), locale.toString(total));
    counts_->setText(parts.join(QString::fromUtf8("  \u00b7  ")));
    notices_->ShowRunning(order.Count(RowState::Running));
    if (!board_.IsLoaded())
        table_->ShowWords(tr("Reading the list\u2026"));
    else if (total > 0)
        table_->ShowWords(tr("No task fits the search and the state that are chosen."));
    else
        table_->ShowWords(
            tr("Nothing here yet.\nMake a new export with %1, or drop request files on this window.")
                .arg(NativeKeys(*actions_["newExport"])));
}

void MainWindow::UpdateActions()
{
    const auto any = [this](const auto& fits) { return table_->IsAnySelected(fits); };
    const auto possible = [&](TaskAction action) {
        return any([=](const FetchyardLogical::TaskView& task) { return IsPossible(action, task); });
    };
    const auto has_folder = [](const FetchyardLogical::TaskView& task) { return !task.folder.empty(); };
    actions_["stop"]->setEnabled(possible(TaskAction::Stop));
    actions_["startAgain"]->setEnabled(possible(TaskAction::StartAgain));
    actions_["remove"]->setEnabled(possible(TaskAction::Remove));
    actions_["delete"]->setEnabled(possible(TaskAction::Delete));
    actions_["openFolder"]->setEnabled(any(has_folder));
    actions_["openReport"]->setEnabled(any(has_folder));
    actions_["failedFiles"]->setEnabled(
        any([](const FetchyardLogical::TaskView& task) { return !task.failed_files.empty(); }));
    actions_["copyError"]->setEnabled(
        any([](const FetchyardLogical::TaskView& task) { return StateOf(task) == RowState::Failed; }));
    actions_["goOn"]->setEnabled(model_.Order().Count(RowState::Interrupted) > 0);
    actions_["clearFinished"]->setEnabled(
        model_.Order().Count(RowState::Finished) + model_.Order().Count(RowState::Deleted) > 0);
    actions_["undo"]->setEnabled(board_.Undoable() > 0);
    if (model_.Order().Count(RowState::Interrupted) == 0)
        go_on_banner_->hide();
}

}  // namespace FetchyardClient
