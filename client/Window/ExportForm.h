#pragma once

#include "Job.h"
#include "Window/ExportChoice.h"
#include "Window/RequestDesk.h"
#include "Window/StationLook.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

#include <map>

namespace FetchyardClient {

// Puts an export together: fields, the request that they make beside them, and what is wrong at the field
// where it is wrong. The request can be saved for the command line, or run.
class ExportForm final : public QDialog
{
    Q_OBJECT

public:
    ExportForm(const std::map<unsigned int, std::string>& sites, const std::string& save_folder,
               QWidget* parent);

    // What the fields say at the moment.
    ExportChoice Choice() const;
    // What became of a request; the form looks at those of its own.
    void ShowSubmission(const FetchyardClient::Submission& submission);
    // Writes the request to a file; says so, or why not.
    void SaveTo(const QString& path);

signals:
    void Run(const FetchyardClient::RequestSource& source);

private:
    QWidget* MakeFields();
    void AddSourceFields(QFormLayout& form);
    void AddFilterFields(QFormLayout& form);
    void AddResultFields(QFormLayout& form);
    QWidget* MakePreview();
    QWidget* MakeButtons();
    QWidget* WithViolation(ExportField field, QWidget* editor);
    template <typename Editor>
    Editor* Named(Editor* editor, const char* name);
    void WatchFields();

    void Refresh();
    void ShowStation(bool answers, const QString& words);
    void LookAtStation();
    void ChooseFolder();
    void Save();
    void RunRequest();

    std::map<unsigned int, std::string> addresses_;
    QComboBox* site_ = nullptr;
    QLabel* station_ = nullptr;
    QComboBox* report_ = nullptr;
    QLineEdit* name_ = nullptr;
    QLineEdit* folder_ = nullptr;
    QCheckBox* has_begin_ = nullptr;
    QDateTimeEdit* begin_ = nullptr;
    QCheckBox* has_end_ = nullptr;
    QDateTimeEdit* end_ = nullptr;
    QLineEdit* cameras_ = nullptr;
    QLineEdit* types_ = nullptr;
    QComboBox* level_ = nullptr;
    QLineEdit* text_ = nullptr;
    QComboBox* format_ = nullptr;
    QComboBox* pictures_ = nullptr;
    QCheckBox* videos_ = nullptr;
    QCheckBox* packed_ = nullptr;
    QLineEdit* password_ = nullptr;
    QPlainTextEdit* preview_ = nullptr;
    QLabel* verdict_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* run_ = nullptr;
    std::map<ExportField, QLabel*> violations_;
    QTimer refresh_;
    StationLook look_;
    std::string label_;  // of the request that was run last
};

}  // namespace FetchyardClient
