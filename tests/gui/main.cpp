// SPDX-License-Identifier: MIT
// Starts the tests of the program as main() starts the program: same locale, codec and platform.
#include "shell/tStartup.h"
#include "support/tMath.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    prepareLocale();
    T_MathLib_Initialize(0);
    prepareApplication();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    resetNumberLocale();
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
