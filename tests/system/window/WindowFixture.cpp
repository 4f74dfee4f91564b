#include "WindowFixture.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QPixmap>
#include <QTest>

namespace SystemTest {

using namespace FetchyardClient;
using FetchyardBussiness::CDownloadBussinessManager;

namespace {

constexpr int kMostMilliseconds = 60000;

}  // namespace

WindowFixture::WindowFixture()
{
    ApplyLanguage("en");
    ApplyTheme(Theme::Light);
}

WindowFixture::~WindowFixture()
{
    Leave();
}

std::string WindowFixture::Folder(const std::string& below) const
{
    return folder_.path().toStdString() + "/" + below;
}

void WindowFixture::Show()
{
    HostOptions options;
    options.data_folder = Folder("data/");
    options.save_folder = Folder("exports/");
    options.station = Address();
    std::string reason;
    host_ = std::make_unique<LibraryHost>();
    ASSERT_TRUE(host_->Start(options, reason)) << reason;
    changes_ = std::make_unique<TaskChanges>();
    CDownloadBussinessManager::Instance().RegisterObserver(changes_.get());
    model_ = std::make_unique<TaskModel>();
    board_ = std::make_unique<TaskBoard>(*changes_, *model_);
    WindowSetup setup;
    setup.sites = {{0, Address()}};
    setup.save_folder = options.save_folder;
    setup.store_words = QString::fromStdString(host_->StoreMessage());
    setup.theme = Theme::Light;
    setup.open = [this](const QUrl& url) {
        opened_.push_back(url);
        return true;
    };
    window_ = std::make_unique<MainWindow>(*board_, *model_, setup);
    window_->show();
    QApplication::setActiveWindow(window_.get());
    board_->Load();
    ASSERT_TRUE(WaitFor([this] { return board_->IsLoaded(); }));
}

void WindowFixture::Leave()
{
    window_.reset();
    board_.reset();
    model_.reset();
    if (changes_)
        CDownloadBussinessManager::Instance().SyncUnregisterObserver(changes_.get());
    changes_.reset();
    host_.reset();
}

ExportChoice WindowFixture::Choice(const std::string& name)
{
    ExportChoice choice;
    choice.name = name;
    choice.format = 1;
    return choice;
}

void WindowFixture::Run(const ExportChoice& choice)
{
    board_->Submit({choice.name, MakeRequest(choice).dump()});
    ASSERT_TRUE(WaitFor([&] { return Line(choice.name) >= 0; }));
}

void WindowFixture::SlowDown() const
{
    SetFault({{"Path", "/api/v1/events/report"},
              {"Kind", "delay"},
              {"DelayMs", 600},
              {"After", 0},
              {"Count", -1}});
}

bool WindowFixture::WaitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, kMostMilliseconds);
}

int WindowFixture::Line(const std::string& name) const
{
    for (int row = 0; row < model_->rowCount(); ++row) {
        if (model_->RowAt(row).task.name == name)
            return row;
    }
    return -1;
}

bool WindowFixture::WaitForState(const std::string& name, RowState state)
{
    return WaitFor([&] {
        const int line = Line(name);
        return line >= 0 && StateOf(model_->RowAt(line).task) == state &&
               (state == RowState::Running || state == RowState::Waiting ||
                !IsBusy(model_->RowAt(line).task));
    });
}

void WindowFixture::Click(const std::string& name, Qt::KeyboardModifiers keys)
{
    QTableView& view = window_->Table().View();
    ASSERT_TRUE(WaitFor([&] { return view.isVisible(); }));
    const QModelIndex index = model_->index(Line(name), TaskModel::kName);
    ASSERT_TRUE(index.isValid()) << name;
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, keys, view.visualRect(index).center());
}

void WindowFixture::PressKeysOf(const QString& action)
{
    auto* found = window_->findChild<QAction*>(action);
    ASSERT_NE(found, nullptr);
    ASSERT_TRUE(WaitFor([&] { return found->isEnabled(); })) << action.toStdString();
    // Where nobody manages windows, none is active behind a dialog that was closed, and shortcuts are deaf.
    if (!window_->isActiveWindow())
        QApplication::setActiveWindow(window_.get());
    const int keys = found->shortcut()[0];
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : window_.get(),
                    static_cast<Qt::Key>(keys & ~Qt::KeyboardModifierMask),
                    static_cast<Qt::KeyboardModifiers>(keys & Qt::KeyboardModifierMask));
}

void WindowFixture::PressButton(const QString& name)
{
    QAbstractButton* button = nullptr;
    ASSERT_TRUE(WaitFor([&] {
        for (QWidget* widget : QApplication::allWidgets()) {
            auto* candidate = qobject_cast<QAbstractButton*>(widget);
            if (candidate != nullptr && candidate->objectName() == name && candidate->isVisible() &&
                candidate->isEnabled())
                button = candidate;
        }
        return button != nullptr;
    })) << name.toStdString();
    QTest::mouseClick(button, Qt::LeftButton);
}

QString WindowFixture::Words(const QString& banner) const
{
    return window_->findChild<Banner*>(banner)->Words();
}

bool WindowFixture::IsShown(const QString& banner) const
{
    return window_->findChild<Banner*>(banner)->isVisible();
}

void WindowFixture::Keep(QWidget& widget, const QString& name)
{
    QDir().mkpath(SCREENSHOTS);
    QCoreApplication::processEvents();
    EXPECT_TRUE(widget.grab().save(QDir(SCREENSHOTS).filePath(name + ".png")));
}

}  // namespace SystemTest
