#include "Window/TaskModel.h"

#include "Window/Icons.h"

#include <QDateTime>

#include <utility>

namespace FetchyardClient {

namespace {

// With more news than this at once, one sorting of all is cheaper than so many moves.
constexpr std::size_t kMostMoves = 400;
constexpr int kToolTipLetters = 1000;

QString Plain(const std::string& text)
{
    // A tool tip takes what looks like markup for markup, and there the end of a line is but a blank.
    QString words = CutText(QString::fromStdString(text), kToolTipLetters).toHtmlEscaped();
    return "<qt>" + words.replace('\n', "<br>") + "</qt>";
}

}  // namespace

TaskModel::TaskModel(QObject* parent) : QAbstractTableModel(parent) {}

void TaskModel::Load(TaskOrder order)
{
    beginResetModel();
    order_ = std::move(order);
    endResetModel();
    emit CountsChanged();
}

void TaskModel::Lay()
{
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<TaskOrder::Slot> slots_of;
    slots_of.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& at : before)
        slots_of.push_back(order_.At(at.row()));
    order_.Sort();
    QModelIndexList after;
    after.reserve(before.size());
    for (int i = 0; i < before.size(); ++i) {
        const int row = order_.PositionOf(slots_of[static_cast<std::size_t>(i)]);
        after << (row == TaskOrder::kNone ? QModelIndex() : index(row, before.at(i).column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void TaskModel::Touch(int row)
{
    emit dataChanged(index(row, 0), index(row, kColumns - 1));
}

void TaskModel::Place(TaskOrder::Slot slot)
{
    const int row = order_.PositionOf(slot);
    const bool belongs = order_.BelongsToShown(slot);
    if (row == TaskOrder::kNone) {
        if (!belongs)
            return;
        const int to = order_.Wanted(slot);
        beginInsertRows(QModelIndex(), to, to);
        order_.Insert(to, slot);
        endInsertRows();
        return;
    }
    if (!belongs) {
        beginRemoveRows(QModelIndex(), row, row);
        order_.Erase(row);
        endRemoveRows();
        return;
    }
    if (!order_.IsInOrder(row)) {
        const int to = order_.Wanted(slot);
        beginMoveRows(QModelIndex(), row, row, QModelIndex(), to);
        order_.Move(row, to);
        endMoveRows();
    }
    Touch(order_.PositionOf(slot));
}

void TaskModel::Drop(TaskOrder::Slot slot)
{
    order_.SetHidden(slot, true);
    Place(slot);
    order_.Forget(slot);
}

void TaskModel::Apply(const std::vector<TaskNews>& news)
{
    const bool at_once = news.size() > kMostMoves;
    std::vector<TaskOrder::Slot> gone;
    for (const TaskNews& one : news) {
        if (!one.is_gone) {
            const TaskOrder::Slot slot = order_.Update(one);
            if (!at_once)
                Place(slot);
            continue;
        }
        const TaskOrder::Slot slot = order_.Find(one.row.task.guid);
        if (slot == TaskOrder::kNone)
            continue;
        if (at_once) {
            order_.SetHidden(slot, true);
            gone.push_back(slot);
        } else {
            Drop(slot);
        }
    }
    if (at_once) {
        Lay();
        for (const TaskOrder::Slot slot : gone)
            order_.Forget(slot);
    }
    if (!news.empty())
        emit CountsChanged();
}

void TaskModel::SetHidden(const std::vector<std::string>& guids, bool hidden)
{
    const bool at_once = guids.size() > kMostMoves;
    for (const std::string& guid : guids) {
        const TaskOrder::Slot slot = order_.Find(guid);
        if (slot == TaskOrder::kNone)
            continue;
        order_.SetHidden(slot, hidden);
        if (!at_once)
            Place(slot);
    }
    if (at_once)
        Lay();
    emit CountsChanged();
}

void TaskModel::SetFilter(const TaskFilter& filter)
{
    order_.SetFilter(filter);
    Lay();
}

void TaskModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= kColumns)
        return;
    constexpr std::array<SortKey, kColumns> keys = {SortKey::Name,     SortKey::Kind,  SortKey::State,
                                                    SortKey::Progress, SortKey::Start, SortKey::Error};
    order_.SetSorting(keys.at(static_cast<std::size_t>(column)), order == Qt::DescendingOrder);
    Lay();
}

void TaskModel::SetDark(bool is_dark)
{
    is_dark_ = is_dark;
    if (rowCount() > 0)
        emit dataChanged(index(0, kState), index(rowCount() - 1, kState));
}

const TaskRow* TaskModel::Find(const std::string& guid) const
{
    const TaskOrder::Slot slot = order_.Find(guid);
    return slot == TaskOrder::kNone ? nullptr : &order_.Row(slot);
}

int TaskModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : order_.Shown();
}

int TaskModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QString TaskModel::Text(const TaskRow& row, int column) const
{
    switch (column) {
        case kName:
            return NameText(row.task);
        case kKind:
            return KindText(row.task);
        case kState:
            return StateText(row.task);
        case kProgress:
            return ProgressText(row, QDateTime::currentMSecsSinceEpoch());
        case kStart:
            return StartText(row.task, false);
        default:
            return ErrorText(row.task);
    }
}

QString TaskModel::ToolTip(const TaskRow& row, int column) const
{
    switch (column) {
        case kName:
            return Plain(row.task.folder.empty() ? row.task.name : row.task.name + "\n" + row.task.folder);
        case kStart:
            return StartText(row.task, true);
        case kError:
            return row.task.error_text.empty() ? ErrorText(row.task) : Plain(row.task.error_text);
        default:
            return Text(row, column);
    }
}

QVariant TaskModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const TaskRow& row = RowAt(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return Text(row, index.column());
        case Qt::ToolTipRole:
            return ToolTip(row, index.column());
        case Qt::AccessibleTextRole:
            return headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString() + ": " +
                   Text(row, index.column());
        case Qt::DecorationRole:
            return index.column() == kState ? QVariant(StateIcon(StateOf(row.task), is_dark_)) : QVariant();
        case Qt::ForegroundRole:
            return index.column() == kState ? QVariant(StateColour(StateOf(row.task), is_dark_)) : QVariant();
        default:
            return {};
    }
}

QVariant TaskModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeading | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
        case kName:
            return tr("Name");
        case kKind:
            return tr("Kind");
        case kState:
            return tr("State");
        case kProgress:
            return tr("Progress");
        case kStart:
            return tr("Started");
        default:
            return tr("What went wrong");
    }
}

}  // namespace FetchyardClient
