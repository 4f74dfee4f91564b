#include "station/Commands/Fonts.h"

#include "station/Drawing/Lettering.h"
#include "station/Platform/Platform.h"

#include <QGuiApplication>

namespace Station {

// Letters need Qt's fonts, which need an application; pictures are drawn in memory, so no display is needed.
// The application stays until the process ends: its platform plug-in does not free all that it made.
void StartFonts()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", Platform::DrawingScreen());
    static int count = 1;
    static char name[] = "station";
    static char* words[] = {name, nullptr};
    static const auto* application = new QGuiApplication(count, words);
    static_cast<void>(application);
    Lettering::Instance();
}

}  // namespace Station
