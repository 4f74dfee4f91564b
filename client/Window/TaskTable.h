#pragma once

#include "Window/TaskModel.h"

#include <QLabel>
#include <QStackedWidget>
#include <QTableView>

namespace FetchyardClient {

// The table of tasks, or words in its place where there is none to show.
class TaskTable final : public QStackedWidget
{
    Q_OBJECT

public:
    TaskTable(TaskModel& model, QWidget* parent);

    QTableView& View() { return *view_; }
    // Guids of the selected lines, from top to bottom.
    std::vector<std::string> Selected() const;
    // Whether a selected line fits; looks at the first thousand.
    template <typename Fits>
    bool IsAnySelected(const Fits& fits) const
    {
        constexpr int most = 1000;
        const QModelIndexList rows = view_->selectionModel()->selectedRows();
        for (int i = 0; i < std::min(rows.size(), most); ++i) {
            if (fits(model_.RowAt(rows.at(i).row()).task))
                return true;
        }
        return false;
    }
    // Shows the table, or why it is empty.
    void ShowWords(const QString& words_if_empty);

signals:
    void SelectionChanged();
    // Enter, or a double click, on a line.
    void Chosen();

protected:
    void changeEvent(QEvent* event) override;

private:
    void SetWidths();

    TaskModel& model_;
    QTableView* view_;
    QLabel* words_;
};

}  // namespace FetchyardClient
