#include "Window/Notices.h"

#include "Window/Icons.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace FetchyardClient {

namespace {

constexpr int kTogetherMilliseconds = 500;
constexpr std::size_t kMostNames = 3;

QIcon TrayIcon(std::size_t running)
{
    constexpr int side = 64;
    QPixmap picture = ProgramIcon().pixmap(side, side);
    if (running == 0)
        return QIcon(picture);
    const QString number = running > 99 ? QString("99+") : QString::number(running);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect place(side / 4, side / 2 - 4, side * 3 / 4, side / 2 + 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xc0, 0x2a, 0x1f));
    painter.drawRoundedRect(place, 10, 10);
    QFont font = painter.font();
    font.setPixelSize(running > 99 ? side / 3 - 2 : side / 2 - 4);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(place, Qt::AlignCenter, number);
    painter.end();
    return QIcon(picture);
}

bool IsBad(const TaskRow& row)
{
    return StateOf(row.task) == RowState::Failed;
}

}  // namespace

Notices::Notices(QMenu& menu, QObject* parent) : QObject(parent)
{
    together_.setSingleShot(true);
    together_.setInterval(kTogetherMilliseconds);
    connect(&together_, &QTimer::timeout, this, &Notices::Tell);
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    tray_ = std::make_unique<QSystemTrayIcon>(TrayIcon(0));
    tray_->setContextMenu(&menu);
    connect(tray_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason != QSystemTrayIcon::Context)
            emit Wanted();
    });
    connect(tray_.get(), &QSystemTrayIcon::messageClicked, this, &Notices::Wanted);
    ShowRunning(0);
    tray_->show();
}

void Notices::ShowRunning(std::size_t count)
{
    if (!tray_ || (count == running_ && !tray_->toolTip().isEmpty()))
        return;
    running_ = count;
    tray_->setIcon(TrayIcon(count));
    tray_->setToolTip(count == 0 ? tr("Fetchyard: nothing runs")
                                 : tr("Fetchyard: %n task(s) run", nullptr, static_cast<int>(count)));
}

void Notices::TellEnd(const TaskRow& row)
{
    ended_.push_back(row);
    if (!together_.isActive())
        together_.start();
}

QString Notices::TitleOf(const std::vector<TaskRow>& ended)
{
    const auto bad = static_cast<int>(std::count_if(ended.begin(), ended.end(), IsBad));
    if (ended.size() == 1)
        return CutText(NameText(ended.front().task), 60) + ": " + StateText(ended.front().task);
    if (bad == 0)
        return tr("%n task(s) ended", nullptr, static_cast<int>(ended.size()));
    return tr("%n task(s) ended, %1 of them failed", nullptr, static_cast<int>(ended.size())).arg(bad);
}

QString Notices::WordsOf(const std::vector<TaskRow>& ended)
{
    if (ended.size() == 1) {
        const QString error = ErrorText(ended.front().task);
        return error.isEmpty() ? QString::fromStdString(ended.front().task.folder) : error;
    }
    QStringList names;
    for (std::size_t i = 0; i < std::min(ended.size(), kMostNames); ++i)
        names << CutText(NameText(ended[i].task), 40) + ": " + StateText(ended[i].task);
    if (ended.size() > kMostNames)
        names << tr("and %n more", nullptr, static_cast<int>(ended.size() - kMostNames));
    return names.join('\n');
}

void Notices::Tell()
{
    const std::vector<TaskRow> ended = std::move(ended_);
    ended_.clear();
    const QString title = TitleOf(ended);
    const QString words = WordsOf(ended);
    const bool bad = std::any_of(ended.begin(), ended.end(), IsBad);
    if (tray_)
        tray_->showMessage(title, words, bad ? QSystemTrayIcon::Warning : QSystemTrayIcon::Information);
    emit Told(title, words);
}

}  // namespace FetchyardClient
