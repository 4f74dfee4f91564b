#include "Window/Theme.h"

#include <gtest/gtest.h>
#include <QApplication>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    FetchyardClient::ApplyLanguage("en");
    return RUN_ALL_TESTS();
}
