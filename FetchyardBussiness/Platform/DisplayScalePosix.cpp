#include "FetchyardBussiness/Platform/DisplayScale.h"

#include <QGuiApplication>
#include <QScreen>

namespace FetchyardBussiness::Platform {

// A program without a display has no scale: 0, for which the writers have values of their own.
DisplayDpi PrimaryDisplayDpi()
{
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return {};
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return {};
    const double ratio = screen->devicePixelRatio();
    return {static_cast<unsigned int>(qRound(screen->logicalDotsPerInchX() * ratio)),
            static_cast<unsigned int>(qRound(screen->logicalDotsPerInchY() * ratio))};
}

}  // namespace FetchyardBussiness::Platform
