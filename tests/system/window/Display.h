#pragma once

#include <QProcess>

namespace SystemTest {

// An X server without a screen, on a display that nobody else has, for the life of the object. Programs that
// are started, and a QApplication that is made, afterwards use it.
class Display
{
public:
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

private:
    QProcess server_;
};

}  // namespace SystemTest
