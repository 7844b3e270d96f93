#include <gmock/gmock.h>

#include <QApplication>
#include <QSettings>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "ApplicationSetup.h"
#include "TemporaryDirectory.h"

namespace {

int runTests(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // The tests need no display, and remember nothing for the programs of this user.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const velmorindal::TemporaryDirectory settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(settings.path().string()));
    const QApplication application{argc, argv};
    velmorindal::setUpApplication();
    return RUN_ALL_TESTS();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return runTests(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
