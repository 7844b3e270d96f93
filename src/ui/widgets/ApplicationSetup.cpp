#include "ui/widgets/ApplicationSetup.h"

#include <QApplication>
#include <QIcon>
#include <clocale>

#include "ui/widgets/AccessibleControls.h"
#include "ui/widgets/LegibleStyle.h"

namespace velmorindal {

void setUpApplication() {
    // The toolkit has just taken the locale of the environment: numbers keep their point all the same.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setOrganizationName(QStringLiteral("Velmorindal"));
    QApplication::setApplicationName(QStringLiteral("velmorindal-setup"));
    QApplication::setDesktopFileName(QStringLiteral("velmorindal-setup"));
    QApplication::setWindowIcon(QIcon{QStringLiteral(":/velmorindal/Logo.svg")});
    QApplication::setStyle(new LegibleStyle);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style.
    installAccessibleControls();
}

}  // namespace velmorindal
