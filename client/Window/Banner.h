#pragma once

#include "Window/Icons.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace FetchyardClient {

// A strip with words, and a button or two, above or below the table. Hidden until it has something to say.
class Banner final : public QFrame
{
    Q_OBJECT

public:
    enum class Tone { Plain, Warning };

    Banner(Tone tone, const QString& name, QWidget* parent);

    // Names the button that does something about it; none with an empty text.
    QPushButton* SetAction(const QString& words, const QIcon& icon);
    void Say(const QString& words);
    const QString& Words() const { return words_; }

signals:
    // The person put it away.
    void Closed();

private:
    QLabel* label_;
    QPushButton* action_;
    QString words_;
};

}  // namespace FetchyardClient
