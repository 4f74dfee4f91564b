#include "Window/TaskTable.h"

#include <QEvent>
#include <QHeaderView>
#include <QProxyStyle>

#include <algorithm>

namespace FetchyardClient {

namespace {

// Room beside the texts of cells and titles.
class RoomyCells final : public QProxyStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        const int own = QProxyStyle::pixelMetric(metric, option, widget);
        const bool is_margin = metric == PM_FocusFrameHMargin || metric == PM_HeaderMargin;
        return is_margin && widget != nullptr ? widget->fontMetrics().height() / 3 : own;
    }
};

}  // namespace

TaskTable::TaskTable(TaskModel& model, QWidget* parent)
    : QStackedWidget(parent), model_(model), view_(new QTableView(this)), words_(new QLabel(this))
{
    view_->setObjectName("tasks");
    view_->setAccessibleName(tr("Tasks"));
    view_->setModel(&model);
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view_->setAlternatingRowColors(true);
    view_->setShowGrid(false);
    view_->setWordWrap(false);
    view_->setTabKeyNavigation(false);
    view_->setFrameShape(QFrame::NoFrame);
    view_->setTextElideMode(Qt::ElideRight);
    view_->setContextMenuPolicy(Qt::CustomContextMenu);
    view_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // A widget does not own its style. The proxy stands before a style of its own, made anew with each
    // window.
    auto* roomy = new RoomyCells();
    roomy->setParent(view_);
    view_->setStyle(roomy);
    view_->horizontalHeader()->setStyle(roomy);
    view_->verticalHeader()->hide();
    view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view_->horizontalHeader()->setHighlightSections(false);
    view_->horizontalHeader()->setStretchLastSection(true);
    view_->horizontalHeader()->setSectionsMovable(true);
    view_->horizontalHeader()->setSortIndicator(TaskModel::kStart, Qt::DescendingOrder);
    view_->setSortingEnabled(true);
    words_->setObjectName("emptyWords");
    words_->setAlignment(Qt::AlignCenter);
    words_->setWordWrap(true);
    words_->setAutoFillBackground(true);
    words_->setBackgroundRole(QPalette::Base);
    words_->setEnabled(false);
    addWidget(view_);
    addWidget(words_);
    SetWidths();
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TaskTable::SelectionChanged);
    connect(view_, &QAbstractItemView::activated, this, &TaskTable::Chosen);
}

void TaskTable::SetWidths()
{
    const QFontMetrics metrics(font());
    const int letter = metrics.averageCharWidth();
    constexpr std::array<int, TaskModel::kColumns> letters = {30, 18, 18, 62, 20, 28};
    for (int column = 0; column < TaskModel::kColumns; ++column)
        view_->setColumnWidth(column, letter * letters.at(static_cast<std::size_t>(column)));
    view_->verticalHeader()->setMinimumSectionSize(metrics.height());
    view_->verticalHeader()->setDefaultSectionSize(metrics.height() * 7 / 4);
    view_->setIconSize(QSize(metrics.height(), metrics.height()));
}

void TaskTable::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        SetWidths();
    QStackedWidget::changeEvent(event);
}

std::vector<std::string> TaskTable::Selected() const
{
    QModelIndexList rows = view_->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    std::vector<std::string> guids;
    guids.reserve(static_cast<std::size_t>(rows.size()));
    for (const QModelIndex& row : rows)
        guids.push_back(model_.RowAt(row.row()).task.guid);
    return guids;
}

void TaskTable::ShowWords(const QString& words_if_empty)
{
    if (words_->text() != words_if_empty)
        words_->setText(words_if_empty);
    QWidget* shown = model_.rowCount() == 0 ? static_cast<QWidget*>(words_) : view_;
    if (currentWidget() != shown)
        setCurrentWidget(shown);
}

}  // namespace FetchyardClient
