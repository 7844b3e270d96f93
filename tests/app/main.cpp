#include <gmock/gmock.h>

#include <QApplication>
#include <QSettings>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>

#include "ApplicationSetup.h"
#include "TemporaryDirectory.h"

namespace {

constexpr const char* twoScreens = R"({"screens": [
    {"name": "first", "x": 0, "y": 0, "width": 800, "height": 800},
    {"name": "small", "x": 800, "y": 0, "width": 400, "height": 300}]})";

int runTests(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // The tests need no display, and remember nothing for the programs of this user.
    const velmorindal::TemporaryDirectory directory;
    const auto screens = directory.path() / "screens.json";
    std::ofstream{screens} << twoScreens;
    qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString("offscreen:configfile=" + screens.string()));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(directory.path().string()));
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
