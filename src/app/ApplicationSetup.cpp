#include "ApplicationSetup.h"

#include <QAccessibleWidget>
#include <QApplication>

#include "AccessibleControls.h"
#include "LegibleStyle.h"
#include "LogoPicture.h"
#include "MainWindow.h"

namespace velmorindal {

namespace {

QAccessibleInterface* makeWindowInterface(const QString& /*className*/, QObject* object) {
    auto* window = qobject_cast<MainWindow*>(object);
    return window == nullptr ? nullptr : new QAccessibleWidget{window, QAccessible::Window};
}

}  // namespace

void setUpApplication() {
    QApplication::setOrganizationName(QStringLiteral("Velmorindal"));
    QApplication::setApplicationName(QStringLiteral("velmorindal-setup"));
    QApplication::setDesktopFileName(QStringLiteral("velmorindal-setup"));
    QApplication::setWindowIcon(logoIcon());
    QApplication::setStyle(new LegibleStyle);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style.
    installAccessibleControls();
    QAccessible::installFactory(makeWindowInterface);
}

}  // namespace velmorindal
