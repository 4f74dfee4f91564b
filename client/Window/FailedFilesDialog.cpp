#include "Window/FailedFilesDialog.h"

#include "Window/TaskRow.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace FetchyardClient {

FailedFilesDialog::FailedFilesDialog(const std::vector<FetchyardLogical::TaskView>& tasks, QWidget* parent)
    : QDialog(parent)
{
    setObjectName("failedFilesDialog");
    setWindowTitle(tr("Failed files"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* table = new QTableWidget(0, 3, this);
    table->setAccessibleName(tr("Failed files"));
    table->setHorizontalHeaderLabels({tr("Task"), tr("File"), tr("What went wrong")});
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    constexpr int letters = 300;
    for (const auto& task : tasks) {
        for (const auto& [file, reason] : task.failed_files) {
            const int row = table->rowCount();
            const QStringList cells{NameText(task), CutText(QString::fromStdString(file), letters),
                                    CutText(QString::fromStdString(reason), letters)};
            table->insertRow(row);
            for (int column = 0; column < cells.size(); ++column)
                table->setItem(row, column, new QTableWidgetItem(cells.at(column)));
            lines_ << FailureText(file, reason);
        }
    }
    const int letter = fontMetrics().averageCharWidth();
    table->setColumnWidth(0, letter * 24);
    table->setColumnWidth(1, letter * 36);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* copy = buttons->addButton(tr("&Copy all"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, &FailedFilesDialog::Copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = new QVBoxLayout(this);
    column->addWidget(table);
    column->addWidget(buttons);
    resize(letter * 100, fontMetrics().height() * 20);
}

void FailedFilesDialog::Copy() const
{
    QApplication::clipboard()->setText(lines_.join('\n'));
}

}  // namespace FetchyardClient
