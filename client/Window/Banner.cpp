#include "Window/Banner.h"

#include "Window/Theme.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace FetchyardClient {

namespace {

QColor Ground(Banner::Tone tone, bool is_dark)
{
    if (tone == Banner::Tone::Warning)
        return is_dark ? QColor(0x4a, 0x3a, 0x16) : QColor(0xff, 0xf3, 0xd1);
    return is_dark ? QColor(0x23, 0x34, 0x4c) : QColor(0xe3, 0xee, 0xfc);
}

}  // namespace

Banner::Banner(Tone tone, const QString& name, QWidget* parent)
    : QFrame(parent), label_(new QLabel(this)), action_(new QPushButton(this))
{
    setObjectName(name);
    setAccessibleName(tr("Notice"));
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Ground(tone, IsDark(colours)));
    setPalette(colours);
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label_->setMinimumWidth(1);
    action_->setVisible(false);
    action_->setObjectName(name + "Action");
    auto* close = new QToolButton(this);
    close->setObjectName(name + "Close");
    close->setAutoRaise(true);
    close->setIcon(SignIcon(Sign::Remove, colours.color(QPalette::WindowText)));
    close->setToolTip(tr("Put this notice away"));
    close->setAccessibleName(tr("Put this notice away"));
    connect(close, &QToolButton::clicked, this, [this] {
        hide();
        emit Closed();
    });
    auto* line = new QHBoxLayout(this);
    const int gap = fontMetrics().height() / 2;
    line->setContentsMargins(2 * gap, gap, gap, gap);
    line->setSpacing(gap);
    line->addWidget(label_, 1);
    line->addWidget(action_);
    line->addWidget(close);
    hide();
}

QPushButton* Banner::SetAction(const QString& words, const QIcon& icon)
{
    action_->setText(words);
    action_->setIcon(icon);
    action_->setVisible(!words.isEmpty());
    return action_;
}

void Banner::Say(const QString& words)
{
    words_ = words;
    label_->setText(words);
    label_->setAccessibleName(words);
    setVisible(!words.isEmpty());
}

}  // namespace FetchyardClient
