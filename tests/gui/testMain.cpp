// SPDX-License-Identifier: MIT
// The program's tests run inside one application under a real X server.
#include <QApplication>
#include <clocale>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    QApplication application(argc, argv);
    setlocale(LC_ALL, "C");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
