#include <QApplication>
#include <QStandardPaths>
#include <gtest/gtest.h>

// Every test program runs without a display and with a QApplication, so widget tests and
// event-driven I/O work alike.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    // A logbook that falls back to the user's data folder lands in a test folder instead.
    QStandardPaths::setTestModeEnabled(true);
    return RUN_ALL_TESTS();
}
