#include "Window/TaskRow.h"

#include "Words.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <array>
#include <chrono>

namespace FetchyardClient {

using FetchyardLogical::RecordKind;
using FetchyardLogical::TaskView;

namespace {

// More letters than any column shows; laying out thousands of them for each redraw would be felt.
constexpr int kShownLetters = 200;
constexpr std::array<const char*, kRowStates> kStateWords = {
    QT_TRANSLATE_NOOP("Tasks", "waiting"),  QT_TRANSLATE_NOOP("Tasks", "running"),
    QT_TRANSLATE_NOOP("Tasks", "finished"), QT_TRANSLATE_NOOP("Tasks", "failed"),
    QT_TRANSLATE_NOOP("Tasks", "stopped"),  QT_TRANSLATE_NOOP("Tasks", "interrupted"),
    QT_TRANSLATE_NOOP("Tasks", "deleted")};

QString Translated(const char* text, int count = -1)
{
    return QCoreApplication::translate("Tasks", text, nullptr, count);
}

QString OneLine(const std::string& text)
{
    // Before the cut, so that a text of megabytes is not turned into letters whole; four bytes hold a letter.
    const std::size_t bytes = std::min<std::size_t>(text.size(), 4 * kShownLetters + 4);
    return CutText(QString::fromUtf8(text.data(), static_cast<int>(bytes)).simplified(), kShownLetters);
}

QString Time(long long milliseconds, bool is_long)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds);
    const QLocale locale;
    if (is_long)
        return locale.toString(time, QLocale::LongFormat);
    if (time.date() == QDate::currentDate())
        return locale.toString(time.time(), "HH:mm:ss");
    return time.toString("yyyy-MM-dd HH:mm");
}

std::chrono::milliseconds Elapsed(const TaskView& task, long long now)
{
    if (task.started == 0)
        return std::chrono::milliseconds(0);
    const long long end = task.is_running ? now : task.ended;
    return std::chrono::milliseconds(std::max(0LL, end - task.started));
}

}  // namespace

QString CutText(const QString& text, int letters)
{
    if (text.size() <= letters)
        return text;
    const int end = text.at(letters - 1).isHighSurrogate() ? letters - 1 : letters;
    return text.left(end) + QChar(0x2026);
}

bool IsBusy(const TaskView& task)
{
    return task.is_waiting || task.is_running;
}

RowState StateOf(const TaskView& task)
{
    if (task.is_interrupted)
        return RowState::Interrupted;
    if (task.is_waiting)
        return RowState::Waiting;
    switch (task.state) {
        case ZellTaskKit::Finished:
        case ZellTaskKit::UploadFinished:
            return RowState::Finished;
        case ZellTaskKit::Failed:
        case ZellTaskKit::UploadFailed:
            return RowState::Failed;
        case ZellTaskKit::Stopped:
        case ZellTaskKit::UploadStopped:
            return RowState::Stopped;
        case ZellTaskKit::Deleted:
            return RowState::Deleted;
        default:
            // One whose thread is gone told no end: a task that fell silent has failed its person.
            return task.is_running || task.state == ZellTaskKit::Unstarted ? RowState::Running
                                                                           : RowState::Failed;
    }
}

long long StartOf(const TaskView& task)
{
    return task.started != 0 && !task.is_waiting ? task.started : task.handed_over;
}

QString NameText(const TaskView& task)
{
    const QString name = OneLine(task.name);
    return name.isEmpty() ? Translated(QT_TRANSLATE_NOOP("Tasks", "(no name)")) : name;
}

QString KindText(const TaskView& task)
{
    switch (task.record_kind) {
        case RecordKind::Export:
            return Translated(QT_TRANSLATE_NOOP("Tasks", "report"));
        case RecordKind::PersonPictures:
            return Translated(QT_TRANSLATE_NOOP("Tasks", "person pictures"));
        case RecordKind::Transcoding:
            return Translated(QT_TRANSLATE_NOOP("Tasks", "conversion"));
        case RecordKind::None:
            return Translated(QT_TRANSLATE_NOOP("Tasks", "download"));
        default:
            return Translated(QT_TRANSLATE_NOOP("Tasks", "other"));
    }
}

QString StateText(RowState state)
{
    return Translated(kStateWords.at(static_cast<std::size_t>(state)));
}

QString StateText(const TaskView& task)
{
    const RowState state = StateOf(task);
    if (state == RowState::Running && task.state == ZellTaskKit::TranscodingBegin)
        return Translated(QT_TRANSLATE_NOOP("Tasks", "converting"));
    return StateText(state);
}

QString ProgressText(const TaskRow& row, long long now)
{
    const TaskView& task = row.task;
    QStringList parts;
    if (task.pages > 0)
        parts << Translated(QT_TRANSLATE_N_NOOP("Tasks", "%n page(s)"), static_cast<int>(task.pages));
    if (row.pictures > 0)
        parts << Translated(QT_TRANSLATE_N_NOOP("Tasks", "%n picture(s)"), static_cast<int>(row.pictures));
    if (row.is_measured && row.bytes > 0)
        parts << QString::fromStdString(SizeWords(row.bytes));
    if (task.is_running && row.rate >= 1)
        parts << QString::fromStdString(SizeWords(static_cast<unsigned long long>(row.rate))) + "/s";
    if (task.started != 0 && !task.is_waiting && (task.is_running || task.ended >= task.started))
        parts << QString::fromStdString(DurationWords(Elapsed(task, now)));
    return parts.join(QString::fromUtf8("  \u00b7  "));
}

QString StartText(const TaskView& task, bool is_long)
{
    return StartOf(task) == 0 ? QString() : Time(StartOf(task), is_long);
}

QString ErrorText(const TaskView& task)
{
    const RowState state = StateOf(task);
    if (state == RowState::Interrupted && task.record_kind == RecordKind::None)
        return Translated(
            QT_TRANSLATE_NOOP("Tasks", "left unfinished; a download has no record to go on from"));
    if (state == RowState::Interrupted)
        return Translated(QT_TRANSLATE_NOOP("Tasks", "left unfinished; can be gone on with"));
    if (state != RowState::Failed)
        return {};
    if (!task.error_text.empty())
        return OneLine(task.error_text);
    if (task.error.iFirstCode != 0 || task.error.iSecondCode != 0)
        return Translated(QT_TRANSLATE_NOOP("Tasks", "error %1 of module %2"))
            .arg(task.error.iSecondCode)
            .arg(task.error.iFirstCode);
    return Translated(QT_TRANSLATE_NOOP("Tasks", "the log tells why"));
}

QString FailureText(const std::string& file, const std::string& reason)
{
    return QString::fromStdString(file) + ": " + QString::fromStdString(reason);
}

QString ErrorReport(const TaskView& task)
{
    QStringList lines;
    lines << NameText(task) + ": " + StateText(task);
    const QString words = QString::fromStdString(task.error_text);
    if (!words.isEmpty())
        lines << words;
    lines << Translated(QT_TRANSLATE_NOOP("Tasks", "error %1 of module %2"))
                 .arg(task.error.iSecondCode)
                 .arg(task.error.iFirstCode);
    const std::string logins = RemainingLoginWords(task.remaining_login_count, task.remaining_login_type);
    if (!logins.empty())
        lines << QString::fromStdString(logins);
    for (const auto& [name, reason] : task.failed_files)
        lines << FailureText(name, reason);
    return lines.join('\n');
}

}  // namespace FetchyardClient
