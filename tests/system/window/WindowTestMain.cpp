#include "Display.h"
#include "Window/RequestDesk.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QFont>

#include <memory>

namespace {

bool IsOnlyListing(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (qstrcmp(argv[i], "--gtest_list_tests") == 0)
            return true;
    }
    return false;
}

}  // namespace

int main(int argc, char** argv)
{
    std::unique_ptr<SystemTest::Display> display;
#ifdef FETCHYARD_SANITIZED
    constexpr bool has_display = false;  // the libraries of X are not sanitized
#else
    constexpr bool has_display = true;
#endif
    if (has_display && !IsOnlyListing(argc, argv))
        display = std::make_unique<SystemTest::Display>();
    testing::InitGoogleTest(&argc, argv);
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
