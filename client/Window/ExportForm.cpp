#include "Window/ExportForm.h"

#include "Window/Icons.h"
#include "Window/TaskRow.h"
#include "Window/Theme.h"

#include <QDateTime>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QSaveFile>
#include <QScrollArea>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

namespace FetchyardClient {

namespace {

constexpr int kRefreshMilliseconds = 120;

std::string Utc(const QCheckBox& has, const QDateTimeEdit& time)
{
    return has.isChecked() ? time.dateTime().toUTC().toString("yyyy-MM-ddTHH:mm:ssZ").toStdString()
                           : std::string();
}

void Colour(QLabel& label, RowState like)
{
    QPalette colours = label.palette();
    colours.setColor(QPalette::WindowText, StateColour(like, IsDark(colours)));
    label.setPalette(colours);
}

QDateTimeEdit* TimeEditor(const QDateTime& time, QWidget* parent)
{
    auto* editor = new QDateTimeEdit(time, parent);
    editor->setDisplayFormat("yyyy-MM-dd HH:mm:ss");
    editor->setCalendarPopup(true);
    editor->setEnabled(false);
    return editor;
}

}  // namespace

ExportForm::ExportForm(const std::map<unsigned int, std::string>& sites, const std::string& save_folder,
                       QWidget* parent)
    : QDialog(parent), addresses_(sites), look_(this)
{
    setObjectName("exportForm");
    setWindowTitle(tr("New export"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* halves = new QSplitter(Qt::Horizontal, this);
    halves->addWidget(MakeFields());
    halves->addWidget(MakePreview());
    halves->setStretchFactor(0, 3);
    halves->setStretchFactor(1, 2);
    halves->setChildrenCollapsible(false);
    auto* column = new QVBoxLayout(this);
    column->addWidget(halves, 1);
    column->addWidget(MakeButtons());
    folder_->setPlaceholderText(QString::fromStdString(save_folder));
    refresh_.setSingleShot(true);
    refresh_.setInterval(kRefreshMilliseconds);
    connect(&refresh_, &QTimer::timeout, this, &ExportForm::Refresh);
    connect(&look_, &StationLook::Seen, this, &ExportForm::ShowStation);
    WatchFields();
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 130, metrics.height() * 36);
    Refresh();
    LookAtStation();
    name_->setFocus();
}

template <typename Editor>
Editor* ExportForm::Named(Editor* editor, const char* name)
{
    editor->setObjectName(name);
    return editor;
}

// The editor, and below it room for what is wrong with it.
QWidget* ExportForm::WithViolation(ExportField field, QWidget* editor)
{
    auto* place = new QWidget(this);
    auto* column = new QVBoxLayout(place);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(fontMetrics().height() / 8);
    column->addWidget(editor);
    auto* words = new QLabel(place);
    words->setTextFormat(Qt::PlainText);
    words->setWordWrap(true);
    words->setObjectName("violation" + QString::number(static_cast<int>(field)));
    Colour(*words, RowState::Failed);
    words->hide();
    column->addWidget(words);
    violations_[field] = words;
    return place;
}

void ExportForm::AddSourceFields(QFormLayout& form)
{
    site_ = Named(new QComboBox(this), "site");
    site_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const auto& [site, address] : addresses_)
        site_->addItem(QString("%1: %2").arg(site).arg(QString::fromStdString(address)), site);
    station_ = Named(new QLabel(this), "stationState");
    station_->setTextFormat(Qt::PlainText);
    station_->setWordWrap(true);
    auto* place = WithViolation(ExportField::Site, site_);
    place->layout()->addWidget(station_);
    form.addRow(tr("S&tation"), place);
    report_ = Named(new QComboBox(this), "report");
    report_->setEditable(true);
    report_->addItems({"/api/v1/events/report", "/api/v1/events/generated-report"});
    report_->setToolTip(tr("Path of the report at the station"));
    form.addRow(tr("&Report"), WithViolation(ExportField::Report, report_));
    name_ = Named(new QLineEdit(this), "name");
    name_->setPlaceholderText(tr("made of the present time"));
    form.addRow(tr("&Name"), WithViolation(ExportField::Name, name_));
    folder_ = Named(new QLineEdit(this), "folder");
    auto* choose = Named(new QToolButton(this), "chooseFolder");
    choose->setIcon(SignIcon(Sign::Folder, palette().color(QPalette::ButtonText)));
    choose->setToolTip(tr("Choose the folder"));
    choose->setAccessibleName(tr("Choose the folder"));
    connect(choose, &QToolButton::clicked, this, &ExportForm::ChooseFolder);
    auto* line = new QWidget(this);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(folder_, 1);
    layout->addWidget(choose);
    line->setFocusProxy(folder_);
    form.addRow(tr("&Folder"), WithViolation(ExportField::Folder, line));
}

void ExportForm::AddFilterFields(QFormLayout& form)
{
    const QDateTime midnight(QDate::currentDate(), QTime(0, 0));
    has_begin_ = Named(new QCheckBox(tr("from"), this), "hasBegin");
    begin_ = Named(TimeEditor(midnight.addDays(-7), this), "begin");
    has_end_ = Named(new QCheckBox(tr("to"), this), "hasEnd");
    end_ = Named(TimeEditor(midnight.addDays(1), this), "end");
    begin_->setAccessibleName(tr("From"));
    end_->setAccessibleName(tr("To"));
    connect(has_begin_, &QCheckBox::toggled, begin_, &QWidget::setEnabled);
    connect(has_end_, &QCheckBox::toggled, end_, &QWidget::setEnabled);
    auto* range = new QWidget(this);
    auto* grid = new QGridLayout(range);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(has_begin_, 0, 0);
    grid->addWidget(begin_, 0, 1);
    grid->addWidget(has_end_, 1, 0);
    grid->addWidget(end_, 1, 1);
    grid->setColumnStretch(1, 1);
    form.addRow(tr("Time"), WithViolation(ExportField::Range, range));
    cameras_ = Named(new QLineEdit(this), "cameras");
    cameras_->setPlaceholderText(tr("all; or numbers, as 1, 2, 7"));
    form.addRow(tr("&Cameras"), WithViolation(ExportField::Cameras, cameras_));
    types_ = Named(new QLineEdit(this), "types");
    types_->setPlaceholderText(tr("all; or as Intrusion, Line crossing"));
    form.addRow(tr("&Kinds of events"), WithViolation(ExportField::Types, types_));
    level_ = Named(new QComboBox(this), "level");
    level_->addItem(tr("any"), 0);
    for (int level = 1; level <= 5; ++level)
        level_->addItem(tr("%1 and above").arg(level), level);
    form.addRow(tr("&Level"), WithViolation(ExportField::Level, level_));
    text_ = Named(new QLineEdit(this), "text");
    text_->setPlaceholderText(tr("part of a text, a person or a plate"));
    form.addRow(tr("Te&xt"), WithViolation(ExportField::Text, text_));
}

void ExportForm::AddResultFields(QFormLayout& form)
{
    format_ = Named(new QComboBox(this), "format");
    format_->addItems({tr("Excel workbook"), tr("CSV"), tr("PDF"), tr("Text")});
    form.addRow(tr("For&mat"), WithViolation(ExportField::Format, format_));
    pictures_ = Named(new QComboBox(this), "pictures");
    pictures_->addItems({tr("none"), tr("linked"), tr("embedded")});
    form.addRow(tr("&Pictures"), WithViolation(ExportField::Pictures, pictures_));
    videos_ = Named(new QCheckBox(tr("&videos of these cameras in this time"), this), "videos");
    form.addRow(tr("Videos"), WithViolation(ExportField::Videos, videos_));
    packed_ = Named(new QCheckBox(tr("pac&k everything into an archive"), this), "packed");
    form.addRow(tr("Archive"), packed_);
    password_ = Named(new QLineEdit(this), "password");
    password_->setEchoMode(QLineEdit::Password);
    password_->setPlaceholderText(tr("none"));
    password_->setEnabled(false);
    connect(packed_, &QCheckBox::toggled, password_, &QWidget::setEnabled);
    form.addRow(tr("Pass&word"), WithViolation(ExportField::Password, password_));
}

QWidget* ExportForm::MakeFields()
{
    auto* fields = new QWidget(this);
    auto* form = new QFormLayout(fields);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setLabelAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    AddSourceFields(*form);
    AddFilterFields(*form);
    AddResultFields(*form);
    for (int row = 0; row < form->rowCount(); ++row) {
        auto* label = qobject_cast<QLabel*>(form->itemAt(row, QFormLayout::LabelRole)->widget());
        QWidget* place = form->itemAt(row, QFormLayout::FieldRole)->widget();
        QWidget* editor = place->layout() != nullptr ? place->layout()->itemAt(0)->widget() : place;
        label->setBuddy(editor);
        if (editor->accessibleName().isEmpty())
            editor->setAccessibleName(label->text().remove('&'));
    }
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(fields);
    return scroll;
}

QWidget* ExportForm::MakePreview()
{
    auto* place = new QWidget(this);
    auto* column = new QVBoxLayout(place);
    column->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(tr("The re&quest that this makes"), place);
    preview_ = Named(new QPlainTextEdit(place), "preview");
    preview_->setReadOnly(true);
    preview_->setTabChangesFocus(true);
    preview_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    preview_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    preview_->setWordWrapMode(QTextOption::WrapAnywhere);
    preview_->setAccessibleName(tr("The request that this makes"));
    label->setBuddy(preview_);
    verdict_ = Named(new QLabel(place), "verdict");
    verdict_->setTextFormat(Qt::PlainText);
    verdict_->setWordWrap(true);
    column->addWidget(label);
    column->addWidget(preview_, 1);
    column->addWidget(verdict_);
    return place;
}

QWidget* ExportForm::MakeButtons()
{
    auto* place = new QWidget(this);
    auto* line = new QHBoxLayout(place);
    line->setContentsMargins(0, 0, 0, 0);
    save_ = Named(new QPushButton(tr("&Save request\u2026"), place), "save");
    run_ =
        Named(new QPushButton(SignIcon(Sign::GoOn, palette().color(QPalette::ButtonText)), tr("R&un"), place),
              "run");
    auto* close = Named(new QPushButton(tr("Cl&ose"), place), "close");
    run_->setDefault(true);
    save_->setAutoDefault(false);
    close->setAutoDefault(false);
    connect(save_, &QPushButton::clicked, this, &ExportForm::Save);
    connect(run_, &QPushButton::clicked, this, &ExportForm::RunRequest);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    line->addStretch(1);
    line->addWidget(save_);
    line->addWidget(run_);
    line->addWidget(close);
    return place;
}

void ExportForm::WatchFields()
{
    const auto soon = [this] { refresh_.start(); };
    for (QLineEdit* editor : {name_, folder_, cameras_, types_, text_, password_})
        connect(editor, &QLineEdit::textChanged, this, soon);
    for (QComboBox* editor : {site_, report_, level_, format_, pictures_})
        connect(editor, &QComboBox::currentTextChanged, this, soon);
    for (QCheckBox* editor : {has_begin_, has_end_, videos_, packed_})
        connect(editor, &QCheckBox::toggled, this, soon);
    for (QDateTimeEdit* editor : {begin_, end_})
        connect(editor, &QDateTimeEdit::dateTimeChanged, this, soon);
    connect(site_, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ExportForm::LookAtStation);
}

ExportChoice ExportForm::Choice() const
{
    ExportChoice choice;
    choice.site = site_->currentData().toInt();
    choice.report = report_->currentText().trimmed().toStdString();
    choice.name = name_->text().toStdString();
    choice.save_folder = folder_->text().toStdString();
    choice.begin = Utc(*has_begin_, *begin_);
    choice.end = Utc(*has_end_, *end_);
    choice.cameras = cameras_->text().toStdString();
    choice.event_types = types_->text().toStdString();
    choice.least_level = level_->currentData().toInt();
    choice.text = text_->text().toStdString();
    choice.format = format_->currentIndex();
    choice.pictures = static_cast<ExportChoice::Pictures>(pictures_->currentIndex());
    choice.with_videos = videos_->isChecked();
    choice.is_packed = packed_->isChecked();
    choice.archive_password = password_->text().toStdString();
    return choice;
}

void ExportForm::Refresh()
{
    refresh_.stop();
    const ExportChoice choice = Choice();
    const QString request = QString::fromStdString(
        MakeRequest(choice).dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
    if (preview_->toPlainText() != request)
        preview_->setPlainText(request);
    for (const auto& [field, label] : violations_)
        label->hide();
    QStringList others;
    const std::vector<FieldViolation> violations = CheckChoice(choice);
    for (const FieldViolation& violation : violations) {
        const auto label = violations_.find(violation.field);
        if (label == violations_.end()) {
            others << QString::fromStdString(violation.words);
            continue;
        }
        label->second->setText(QString::fromStdString(violation.words));
        label->second->show();
    }
    if (addresses_.empty())
        others << tr("The client knows no station; start it with --station");
    const bool fits = violations.empty() && others.isEmpty();
    run_->setEnabled(fits);
    save_->setEnabled(fits);
    Colour(*verdict_, fits ? RowState::Finished : RowState::Failed);
    if (!others.isEmpty())
        verdict_->setText(others.join('\n'));
    else
        verdict_->setText(fits ? tr("The request fits its schema.")
                               : tr("Look at the fields marked on the left."));
}

void ExportForm::LookAtStation()
{
    const auto address = addresses_.find(site_->currentData().toUInt());
    station_->setText(address == addresses_.end() ? QString() : tr("Asking the station\u2026"));
    Colour(*station_, RowState::Waiting);
    look_.LookAt(address == addresses_.end() ? std::string() : address->second);
}

void ExportForm::ShowStation(bool answers, const QString& words)
{
    Colour(*station_, answers ? RowState::Finished : RowState::Failed);
    station_->setText(answers ? tr("The station answers.")
                              : tr("The station does not answer: %1").arg(words));
}

void ExportForm::ChooseFolder()
{
    auto* dialog = new QFileDialog(this, tr("Folder for the export"), folder_->text());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, folder_, &QLineEdit::setText);
    dialog->open();
}

void ExportForm::SaveTo(const QString& path)
{
    QSaveFile file(path);
    const QByteArray text = QByteArray::fromStdString(MakeRequest(Choice()).dump(2) + "\n");
    const bool saved = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    Colour(*verdict_, saved ? RowState::Finished : RowState::Failed);
    verdict_->setText(saved ? tr("Saved. Run it with: fetchyard run %1").arg(path)
                            : tr("%1 can't be written: %2").arg(path, file.errorString()));
}

void ExportForm::Save()
{
    auto* dialog =
        new QFileDialog(this, tr("Save request"), QString(), tr("Requests (*.json);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix("json");
    dialog->selectFile((name_->text().isEmpty() ? tr("export") : CutText(name_->text(), 80)) + ".json");
    connect(dialog, &QFileDialog::fileSelected, this, &ExportForm::SaveTo);
    dialog->open();
}

void ExportForm::RunRequest()
{
    Refresh();
    if (!run_->isEnabled())
        return;
    label_ = name_->text().isEmpty() ? tr("the new export").toStdString() : name_->text().toStdString();
    run_->setEnabled(false);
    emit Run({label_, MakeRequest(Choice()).dump()});
}

void ExportForm::ShowSubmission(const Submission& submission)
{
    if (label_.empty() || submission.label != label_)
        return;
    label_.clear();
    if (submission.violations.empty() && submission.reason.empty()) {
        close();
        return;
    }
    run_->setEnabled(true);
    Colour(*verdict_, RowState::Failed);
    verdict_->setText(QString::fromStdString(submission.reason.empty() ? submission.violations.front().words
                                                                       : submission.reason));
}

}  // namespace FetchyardClient
