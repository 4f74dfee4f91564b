#include "ZellWidgets/ZellWidgets.h"

#include "fakes/Journal.h"

namespace ZellWidgets {

// Every caller passes a null codec.
QString StringToQString(const std::string& text, QTextCodec* codec)
{
    if (codec != nullptr)
        fakes::Append("StringToQString with a codec");
    return QString::fromStdString(text);
}

std::string QStringToString(const QString& text, QTextCodec* codec)
{
    if (codec != nullptr)
        fakes::Append("QStringToString with a codec");
    return text.toStdString();
}

}  // namespace ZellWidgets
