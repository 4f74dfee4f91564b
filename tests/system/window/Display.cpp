#include "Display.h"

#include <stdexcept>

namespace SystemTest {

Display::Display()
{
    server_.setStandardErrorFile(QProcess::nullDevice());
    // It chooses a free number and prints it when it can be connected to.
    server_.start("Xvfb",
                  {"-displayfd", "1", "-screen", "0", "2880x1800x24", "-nolisten", "tcp", "-noreset"});
    constexpr int most_milliseconds = 60000;
    QByteArray number;
    while (!number.contains('\n') && server_.waitForReadyRead(most_milliseconds))
        number += server_.readAllStandardOutput();
    if (!number.contains('\n'))
        throw std::runtime_error("Xvfb does not start");
    qputenv("DISPLAY", ":" + number.trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
}

Display::~Display()
{
    server_.terminate();
    server_.waitForFinished();
}

}  // namespace SystemTest
