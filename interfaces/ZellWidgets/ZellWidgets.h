#pragma once

#include "ZellWidgets/Export.h"

#include <QString>

#include <string>

class QTextCodec;

namespace ZellWidgets {

// The one instance of T for the user interface, made at the first use and never destroyed. T is exported by
// its own library and offers a static T& UiInstance().
template <typename T>
class CUiSingleton
{
public:
    static T& Instance() { return T::UiInstance(); }
};

// Between Qt's text and std::string, with the codec, or as UTF-8 if it is null. Bytes that are not valid
// UTF-8 become U+FFFD.
ZELLWIDGETS_API QString StringToQString(const std::string& text, QTextCodec* codec);
ZELLWIDGETS_API std::string QStringToString(const QString& text, QTextCodec* codec);

}  // namespace ZellWidgets
