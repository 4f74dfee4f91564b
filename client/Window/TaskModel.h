#pragma once

#include "Window/TaskOrder.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace FetchyardClient {

// The list of tasks for a table: a line each, sorted and filtered, some columns. Of the window's thread. A
// change of a task touches its line alone; only a change of the sorting or the filter, and news of very many
// tasks at once, lay the whole out anew, with the selection kept. It is never reset but by Load.
class TaskModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { kName, kKind, kState, kProgress, kStart, kError, kColumns };

    explicit TaskModel(QObject* parent = nullptr);

    // The whole list, filled elsewhere.
    void Load(TaskOrder order);
    void Apply(const std::vector<TaskNews>& news);
    // Takes tasks out of sight, or back.
    void SetHidden(const std::vector<std::string>& guids, bool hidden);
    void SetFilter(const TaskFilter& filter);
    void SetDark(bool is_dark);

    const TaskOrder& Order() const { return order_; }
    const TaskRow& RowAt(int row) const { return order_.Row(order_.At(row)); }
    // Null if there is no such task.
    const TaskRow* Find(const std::string& guid) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

signals:
    // How many tasks are in which state may have changed.
    void CountsChanged();

private:
    QString Text(const TaskRow& row, int column) const;
    QString ToolTip(const TaskRow& row, int column) const;
    void Lay();
    // Brings a task whose data changed to where it belongs.
    void Place(TaskOrder::Slot slot);
    void Touch(int row);
    void Drop(TaskOrder::Slot slot);

    TaskOrder order_;
    bool is_dark_ = false;
};

}  // namespace FetchyardClient
