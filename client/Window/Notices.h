#pragma once

#include "Window/TaskModel.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

namespace FetchyardClient {

// The desktop's notices of ends that nobody looked at, and the icon in its tray, with the number of tasks
// that run. Where there is no tray it does nothing. Ends that come together are told together.
class Notices final : public QObject
{
    Q_OBJECT

public:
    // menu is shown at the tray's icon and outlives this.
    Notices(QMenu& menu, QObject* parent);

    void TellEnd(const TaskRow& row);
    void ShowRunning(std::size_t count);

    // Title and words of a notice about these ends.
    static QString TitleOf(const std::vector<TaskRow>& ended);
    static QString WordsOf(const std::vector<TaskRow>& ended);

signals:
    // The icon or a notice was pressed.
    void Wanted();
    // A notice as it goes to the desktop; also where there is no tray.
    void Told(const QString& title, const QString& words);

private:
    void Tell();

    std::unique_ptr<QSystemTrayIcon> tray_;
    QTimer together_;
    std::vector<TaskRow> ended_;
    std::size_t running_ = 0;
};

}  // namespace FetchyardClient
