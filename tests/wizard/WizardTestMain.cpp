#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>
#include <csignal>

#include "ApplicationSetup.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::signal(SIGPIPE, SIG_IGN);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // A test must not change the window frame that is remembered for this machine's user.
    QStandardPaths::setTestModeEnabled(true);
    const QApplication application{argc, argv};
    velmorindal::setUpApplication();
    return RUN_ALL_TESTS();
}
