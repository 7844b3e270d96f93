#include "ui/widgets/ApplicationSetup.h"

#include <QApplication>
#include <clocale>

#include "ui/widgets/AccessibleControls.h"
#include "ui/widgets/LegibleStyle.h"
#include "ui/widgets/LogoPicture.h"

namespace velmorindal {

void setUpApplication() {
    // The toolkit has just taken the locale of the environment: numbers keep their point all the same.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setOrganizationName(QStringLiteral("Velmorindal"));
    QApplication::setApplicationName(QStringLiteral("velmorindal-setup"));
    QApplication::setDesktopFileName(QStringLiteral("velmorindal-setup"));
    QApplication::setWindowIcon(logoIcon());
    QApplication::setStyle(new LegibleStyle);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style.
    installAccessibleControls();
}

}  // namespace velmorindal
