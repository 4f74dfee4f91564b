#include "Display.h"
#include "Window/RequestDesk.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QFont>

#include <memory>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // A build asks for the names of the tests where there is no display.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    std::unique_ptr<SystemTest::Display> display;
#ifdef FETCHYARD_SANITIZED
    constexpr bool has_display = false;  // the libraries of X are not sanitized
#else
    constexpr bool has_display = true;
#endif
    if (has_display)
        display = std::make_unique<SystemTest::Display>();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    int code = 0;
    {
        const QApplication application(argc, argv);
        QApplication::setFont(QFont("DejaVu Sans", 10));
        qRegisterMetaType<FetchyardClient::Submission>("FetchyardClient::Submission");
        code = RUN_ALL_TESTS();
    }
    return code;
}
