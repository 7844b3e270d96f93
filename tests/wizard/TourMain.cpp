#include <QApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QWidget>
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "ApplicationSetup.h"
#include "Print.h"
#include "TemporaryDirectory.h"
#include "Tour.h"

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

void useBlackAndYellow() {
    QPalette palette;
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button}) {
        palette.setColor(role, Qt::black);
    }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, Qt::yellow);
        palette.setColor(QPalette::Disabled, role, QColor{0xA0, 0xA0, 0x60});
    }
    palette.setColor(QPalette::Highlight, Qt::yellow);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    QApplication::setPalette(palette);
}

template <int points>
void useFontOf() {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    QApplication::setFont(font);
}

void doubleTheFont() {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * 2);
    QApplication::setFont(font);
}

void readFromTheRight() {
    QApplication::setLayoutDirection(Qt::RightToLeft);
}

void keepSmallest(QWidget& window) {
    window.resize(window.minimumSize());
}

void makeLongAndNarrow(QWidget& window) {
    window.resize(window.minimumWidth(), 1000);
}

void fillScreen(QWidget& window) {
    window.showFullScreen();
}

/// A look of the wizard that the tour can be taken in.
struct Look {
    std::string_view name;
    /// Before there is an application: what the desktop says of its screen.
    double scale = 1.0;
    void (*setUp)() = [] {};
    void (*arrange)(QWidget& window) = keepSmallest;
    int screenWidth = 1920;
    int screenHeight = 1080;
};

constexpr std::array looks{
    Look{.name = "normal"}, Look{.name = "dark", .setUp = useDarkPalette},
    Look{.name = "double-font", .setUp = doubleTheFont}, Look{.name = "double-scale", .scale = 2.0},
    Look{.name = "long-and-narrow", .arrange = makeLongAndNarrow},
    Look{.name = "full-screen", .arrange = fillScreen},
    Look{.name = "black-and-yellow", .setUp = useBlackAndYellow},
    Look{.name = "10-points", .setUp = useFontOf<10>}, Look{.name = "12-points", .setUp = useFontOf<12>},
    Look{.name = "16-points", .setUp = useFontOf<16>}, Look{.name = "4-points", .setUp = useFontOf<4>},
    Look{.name = "72-points", .setUp = useFontOf<72>}, Look{.name = "one-and-a-half-scale", .scale = 1.5},
    Look{.name = "triple-scale", .scale = 3.0, .screenWidth = 3840, .screenHeight = 2160},
    // What a panel leaves of 600 lines.
    Look{.name = "netbook", .screenWidth = 1024, .screenHeight = 560},
    Look{.name = "netbook-11-points", .setUp = useFontOf<11>, .screenWidth = 1024, .screenHeight = 560},
    Look{.name = "laptop-16-points", .setUp = useFontOf<16>, .screenWidth = 1366, .screenHeight = 728},
    Look{.name = "tiny-screen", .screenWidth = 640, .screenHeight = 480},
    Look{.name = "right-to-left", .setUp = readFromTheRight}};

/// Gives the platform without a display a screen.
void describeScreen(const std::filesystem::path& file, const Look& look) {
    std::ofstream{file} << R"({"screens": [{"name": "screen", "x": 0, "y": 0, "width": )" << look.screenWidth
                        << R"(, "height": )" << look.screenHeight
                        << R"(, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString("offscreen:configfile=" + file.string()));
}

std::string usage() {
    std::string text = "usage: velmorindal-tour DIRECTORY [LOOK], LOOK one of:";
    for (const Look& look : looks) {
        text.append(" ").append(look.name);
    }
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view name = argc == 3 ? argv[2] : "normal";
    const auto* const look = std::ranges::find(looks, name, &Look::name);
    if (argc < 2 || argc > 3 || look == looks.end()) {
        velmorindal::writeLine(2, usage());
        return 2;
    }
    const velmorindal::TemporaryDirectory work;
    describeScreen(work.path() / "screen.json", *look);
    qputenv("QT_SCALE_FACTOR", QByteArray::number(look->scale));
    std::signal(SIGPIPE, SIG_IGN);
    QStandardPaths::setTestModeEnabled(true);
    int argumentCount = 1;
    const QApplication application{argumentCount, argv};
    velmorindal::setUpApplication();
    // The window opens as it does for the first time.
    QSettings{}.clear();
    look->setUp();
    try {
        const std::filesystem::path pictures{argv[1]};
        std::filesystem::create_directories(pictures);
        velmorindal::Tour tour{pictures, work.path(), look->arrange};
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
