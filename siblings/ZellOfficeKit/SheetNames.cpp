#include "SheetNames.h"

#include <QString>

namespace ZellOfficeKit {
namespace {

constexpr int kMostUnits = 31;

bool IsForbidden(QChar letter)
{
    constexpr char kForbidden[] = "[]:*?/\\";
    if (letter.unicode() < 0x20 || letter.unicode() >= 0xFFFE)
        return true;
    for (const char* at = kForbidden; *at != '\0'; ++at) {
        if (letter == QLatin1Char(*at))
            return true;
    }
    return false;
}

QString CutTo(const QString& name, int units)
{
    if (name.size() <= units)
        return name;
    // Half a surrogate pair is no character.
    return name.left(name.at(units - 1).isHighSurrogate() ? units - 1 : units);
}

QString MadeValid(const std::string& wanted)
{
    QString name = QString::fromStdString(wanted);
    for (QChar& letter : name) {
        if (IsForbidden(letter))
            letter = QLatin1Char('_');
    }
    name = CutTo(name, kMostUnits);
    if (name.isEmpty())
        return QStringLiteral("Sheet");
    if (name.front() == QLatin1Char('\''))
        name.front() = QLatin1Char('_');
    if (name.back() == QLatin1Char('\''))
        name.back() = QLatin1Char('_');
    // The one name that readers keep for themselves.
    if (name.compare(QLatin1String("History"), Qt::CaseInsensitive) == 0)
        name += QLatin1Char('_');
    return name;
}

}  // namespace

std::string CSheetNames::Take(const std::string& wanted)
{
    const QString name = MadeValid(wanted);
    return Occupy(name) ? name.toStdString() : TakeNumbered(name, 2);
}

std::string CSheetNames::TakeContinuation(const std::string& name, int number)
{
    return TakeNumbered(QString::fromStdString(name), number);
}

std::string CSheetNames::TakeNumbered(const QString& stem, int number)
{
    for (;; ++number) {
        const QString tail = QStringLiteral(" (%1)").arg(number);
        const QString name = CutTo(stem, kMostUnits - tail.size()) + tail;
        if (Occupy(name))
            return name.toStdString();
    }
}

bool CSheetNames::Occupy(const QString& name)
{
    return taken_.insert(name.toCaseFolded().toStdString()).second;
}

}  // namespace ZellOfficeKit
