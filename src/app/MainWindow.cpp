#include "MainWindow.h"

#include <QCloseEvent>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>
#include <chrono>
#include <utility>

#include "FocusRing.h"
#include "Look.h"
#include "ToQt.h"

namespace velmorindal {

namespace {

constexpr QSize openingSize{480, 300};
/// The key under which position and size are stored.
constexpr auto frameName = "Main Window";
/// While the window is dragged, its frame is not written at each step.
constexpr std::chrono::milliseconds frameSettles{500};

}  // namespace

MainWindow::MainWindow(ContainerView& view, std::function<void()> terminate)
    : view_{view},
      terminate_{std::move(terminate)},
      content_{new ContainerWidget{view}},
      announcer_{new Announcer{this}},
      announcements_{view, content_->focusPlan()},
      dialogs_{view, *this},
      refresher_{{&view.objectWillChange, &view.velmorindal.objectWillChange}, [this] { refresh(); }} {
    nextLook_.setSingleShot(true);
    afterFocus_.setSingleShot(true);
    connect(&afterFocus_, &QTimer::timeout, this, &MainWindow::announce);
    connect(&nextLook_, &QTimer::timeout, this, &MainWindow::refresh);
    frameTimer_.setObjectName(QStringLiteral("frame"));
    frameTimer_.setSingleShot(true);
    frameTimer_.setInterval(frameSettles);
    connect(&frameTimer_, &QTimer::timeout, this, &MainWindow::saveFrame);
    setWindowTitle(QStringLiteral("Velmorindal Setup"));
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content_);
    new FocusRing{this};
    connect(new QShortcut{Qt::CTRL | Qt::Key_Q, this}, &QShortcut::activated, this, [this] { terminate_(); });
    keepPagesWhole();
    placeOnScreen();
}

void MainWindow::refresh() {
    content_->refresh();
    dialogs_.refresh();
    announce();
    if (const auto wait = view_.calibrationPanel.untilNextLook()) {
        nextLook_.start(*wait);
    }
}

void MainWindow::announce() {
    // A screen reader does not finish announcements of a window that is not active.
    if (!isActiveWindow()) {
        announcements_.dropHums();
        return;
    }
    if (const auto text = announcements_.due()) {
        announcer_->say(toQString(*text));
    }
}

void MainWindow::keepPagesWhole() {
    // A page scrolls where the screen is too small. A tenth is left to the desktop's bars and the frame.
    const QSize room = screen()->availableSize() * 9 / 10;
    content_->measure();
    setMinimumSize(content_->wholeSize(openingSize, room).boundedTo(room));
}

void MainWindow::placeOnScreen() {
    // Restoring moves a frame that lies outside every screen back onto one.
    const QByteArray frame = QSettings{}.value(QLatin1String{frameName}).toByteArray();
    if (restoreGeometry(frame)) {
        // Again, within the smallest size for the screen that it is on now.
        keepPagesWhole();
        restoreGeometry(frame);
        return;
    }
    resize(minimumSize());
    QRect place{QPoint{}, size()};
    place.moveCenter(screen()->availableGeometry().center());
    move(place.topLeft());
}

void MainWindow::saveFrame() const {
    rememberFrame(saveGeometry());
}

void MainWindow::rememberFrame(const QByteArray& frame) {
    // Written when this temporary is destroyed: the process may end without unwinding.
    QSettings{}.setValue(QLatin1String{frameName}, frame);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    terminate_();
}

void MainWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (isVisible()) {
        frameTimer_.start();
    }
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible()) {
        frameTimer_.start();
    }
}

void MainWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &MainWindow::keepPagesWhole, Qt::UniqueConnection);
}

void MainWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    frameTimer_.stop();
}

void MainWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        keepPagesWhole();
    }
    if (event->type() == QEvent::ActivationChange) {
        // The focus moves to the window now and is spoken first.
        afterFocus_.start(0);
    }
}

}  // namespace velmorindal
