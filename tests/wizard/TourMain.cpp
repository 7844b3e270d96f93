#include <QApplication>
#include <QSettings>
#include <QStandardPaths>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string_view>

#include "diagnostics/Print.h"
#include "support/TemporaryDirectory.h"
#include "ui/widgets/ApplicationSetup.h"
#include "wizard/Tour.h"

namespace {

void useDarkPalette() {
    QPalette dark;
    dark.setColor(QPalette::Window, QColor{0x20, 0x22, 0x26});
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Base, QColor{0x18, 0x1A, 0x1D});
    dark.setColor(QPalette::AlternateBase, QColor{0x26, 0x29, 0x2E});
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Button, QColor{0x32, 0x36, 0x3C});
    dark.setColor(QPalette::ButtonText, Qt::white);
    dark.setColor(QPalette::Highlight, QColor{0x3D, 0x7E, 0xFF});
    dark.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(QPalette::Disabled, role, QColor{0x9A, 0x9E, 0xA6});
    }
    QApplication::setPalette(dark);
}

void doubleTheFont() {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * 2);
    QApplication::setFont(font);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view look = argc == 3 ? argv[2] : "normal";
    if (argc < 2 || argc > 3 || (look != "normal" && look != "dark" && look != "double-font")) {
        velmorindal::writeLine(2, "usage: velmorindal-tour DIRECTORY [normal|dark|double-font]");
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);
    QStandardPaths::setTestModeEnabled(true);
    int argumentCount = 1;
    const QApplication application{argumentCount, argv};
    velmorindal::setUpApplication();
    // The window opens as it does for the first time.
    QSettings{}.clear();
    if (look == "dark") {
        useDarkPalette();
    } else if (look == "double-font") {
        doubleTheFont();
    }
    try {
        const std::filesystem::path pictures{argv[1]};
        std::filesystem::create_directories(pictures);
        const velmorindal::TemporaryDirectory work;
        velmorindal::Tour tour{pictures, work.path()};
        tour.programADevice();
        tour.loadTheSettingsAgain();
        tour.meetTheFailures();
        velmorindal::print(tour.pictureCount(), "pictures are in", pictures.string());
    } catch (const std::exception& exception) {
        velmorindal::writeLine(2, exception.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
