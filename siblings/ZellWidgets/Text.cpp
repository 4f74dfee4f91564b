#include "ZellWidgets/ZellWidgets.h"

#include <QByteArray>
#include <QTextCodec>

#include <cstdint>
#include <limits>

namespace ZellWidgets {
namespace {

// Qt counts in int; a longer text is cut rather than wrapped to a negative length.
int QtSize(const std::string& text)
{
    constexpr std::size_t most = std::numeric_limits<int>::max() / 4;
    return static_cast<int>(text.size() < most ? text.size() : most);
}

// Most texts of a report are ASCII, for which no decoder is needed. The text if it is ASCII, otherwise null.
// Eight characters at a time: the compiler makes one vector step of the inner loop.
QString FromAscii(const char* text, int size)
{
    QString result(size, Qt::Uninitialized);
    auto* const out = reinterpret_cast<std::uint16_t*>(result.data());
    std::uint16_t all = 0;
    int i = 0;
    for (; size - i >= 8; i += 8) {
        for (int k = 0; k < 8; ++k) {
            const auto unit = static_cast<std::uint8_t>(text[i + k]);
            out[i + k] = unit;
            all = static_cast<std::uint16_t>(all | unit);
        }
    }
    for (; i < size; ++i) {
        out[i] = static_cast<std::uint8_t>(text[i]);
        all = static_cast<std::uint16_t>(all | out[i]);
    }
    if (all >= 0x80)
        result = QString();
    return result;
}

std::string ToStdString(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace

QString StringToQString(const std::string& text, QTextCodec* codec)
{
    if (codec == nullptr) {
        QString ascii = FromAscii(text.data(), QtSize(text));
        if (ascii.isNull())
            ascii = QString::fromUtf8(text.data(), QtSize(text));
        return ascii;
    }
    return codec->toUnicode(text.data(), QtSize(text));
}

std::string QStringToString(const QString& text, QTextCodec* codec)
{
    return ToStdString(codec == nullptr ? text.toUtf8() : codec->fromUnicode(text));
}

}  // namespace ZellWidgets
