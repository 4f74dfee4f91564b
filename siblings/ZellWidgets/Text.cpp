#include "ZellWidgets/ZellWidgets.h"

#include <QByteArray>
#include <QTextCodec>

#include <limits>

namespace ZellWidgets {
namespace {

// Qt counts in int; a longer text is cut rather than wrapped to a negative length.
int QtSize(const std::string& text)
{
    constexpr std::size_t most = std::numeric_limits<int>::max() / 4;
    return static_cast<int>(text.size() < most ? text.size() : most);
}

std::string ToStdString(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace

QString StringToQString(const std::string& text, QTextCodec* codec)
{
    if (codec == nullptr)
        return QString::fromUtf8(text.data(), QtSize(text));
    return codec->toUnicode(text.data(), QtSize(text));
}

std::string QStringToString(const QString& text, QTextCodec* codec)
{
    return ToStdString(codec == nullptr ? text.toUtf8() : codec->fromUnicode(text));
}

}  // namespace ZellWidgets
