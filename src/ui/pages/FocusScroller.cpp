#include "FocusScroller.h"

#include <QApplication>
#include <QScrollBar>

namespace velmorindal {

FocusScroller::FocusScroller(QWidget* content, const QString& accessibleName) {
    setAccessibleName(accessibleName);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    layoutMade_.setSingleShot(true);
    connect(&layoutMade_, &QTimer::timeout, this, &FocusScroller::showFocusOfWindow);
    for (const QScrollBar* bar : {verticalScrollBar(), horizontalScrollBar()}) {
        connect(bar, &QScrollBar::rangeChanged, this, &FocusScroller::adaptToRange);
    }
    // The toolkit scrolls when the Tab key moves the focus, but not when arrow keys, access keys or the
    // program move it.
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*before*/, QWidget* now) { showFocus(now); });
}

FocusScroller::~FocusScroller() {
    // The toolkit moves the focus and the bars while it destroys the rest of this object.
    disconnect(qApp, nullptr, this, nullptr);
    for (const QScrollBar* bar : {verticalScrollBar(), horizontalScrollBar()}) {
        disconnect(bar, nullptr, this, nullptr);
    }
}

void FocusScroller::adaptToRange() {
    const bool scrolled = verticalScrollBar()->maximum() > 0 || horizontalScrollBar()->maximum() > 0;
    setFocusPolicy(scrolled ? Qt::StrongFocus : Qt::NoFocus);
    layoutMade_.start();
}

void FocusScroller::showFocusOfWindow() {
    showFocus(window()->focusWidget());
}

void FocusScroller::showFocus(QWidget* focused) {
    if (focused != nullptr && widget()->isAncestorOf(focused)) {
        ensureWidgetVisible(focused);
    }
}

}  // namespace velmorindal
