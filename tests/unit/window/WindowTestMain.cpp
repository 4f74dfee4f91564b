#include "Window/Theme.h"

#include <gtest/gtest.h>
#include <QAbstractItemModel>
#include <QApplication>
#include <QPersistentModelIndex>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // A build asks for the names of the tests where there is no display.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const QApplication application(argc, argv);
    // What spies keep of signals.
    qRegisterMetaType<QList<QPersistentModelIndex>>();
    qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>();
    FetchyardClient::ApplyLanguage("en");
    return RUN_ALL_TESTS();
}
