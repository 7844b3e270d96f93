#include "ui/widgets/MainWindow.h"

#include <QCloseEvent>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

#include "ui/widgets/FocusRing.h"
#include "ui/widgets/Look.h"

namespace velmorindal {

namespace {

constexpr QSize openingSize{480, 300};
/// The name under which the frame is remembered.
constexpr auto frameName = "Main Window";

}  // namespace

MainWindow::MainWindow(ContainerView& view, std::function<void()> terminate)
    : terminate_{std::move(terminate)},
      content_{new ContainerWidget{view}},
      dialogs_{view, *this},
      refresher_{{&view.objectWillChange, &view.velmorindal.objectWillChange}, [this] {
                     content_->refresh();
                     dialogs_.refresh();
                 }} {
    setWindowTitle(QStringLiteral("Velmorindal Setup"));
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content_);
    new FocusRing{this};
    connect(new QShortcut{Qt::CTRL | Qt::Key_Q, this}, &QShortcut::activated, this, [this] { terminate_(); });
    keepPagesWhole();
    placeOnScreen();
}

void MainWindow::keepPagesWhole() {
    // A page scrolls where the screen itself is too small; a tenth is left to the desktop's bars and the
    // frame.
    setMinimumSize(content_->wholeSize(openingSize).boundedTo(screen()->availableSize() * 9 / 10));
}

void MainWindow::placeOnScreen() {
    // Restoring moves a frame that lies outside every screen back onto one.
    if (restoreGeometry(QSettings{}.value(QLatin1String{frameName}).toByteArray())) {
        return;
    }
    resize(minimumSize());
    QRect frame{QPoint{}, size()};
    frame.moveCenter(screen()->availableGeometry().center());
    move(frame.topLeft());
}

void MainWindow::saveFrame() const {
    QSettings settings;
    settings.setValue(QLatin1String{frameName}, saveGeometry());
    // The process may end without unwinding.
    settings.sync();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    terminate_();
}

void MainWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        keepPagesWhole();
    }
}

}  // namespace velmorindal
