#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

#include "Announcements.h"
#include "Announcer.h"
#include "ContainerView.h"
#include "ContainerWidget.h"
#include "DialogPresenter.h"
#include "Refresher.h"

namespace velmorindal {

/// The one window of the program.
///
/// It opens in the middle of the screen, 480 x 300 pixels or as much larger as its pages need to be whole,
/// unless an earlier frame (position and size) was saved. On every screen its smallest size leaves a tenth of
/// the screen free. Its frame is saved half a second after it was changed, so that it is kept however the
/// program ends. Closing the window only calls `terminate`. Main thread only.
class MainWindow final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the window. `terminate` asks the application to end; it is called when the user
    /// closes the window or presses Ctrl+Q.
    MainWindow(ContainerView& view, std::function<void()> terminate);

    /// Saves position and size for the next start.
    void saveFrame() const;
    /// Saves a frame that saveGeometry() has returned.
    static void rememberFrame(const QByteArray& frame);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void refresh();
    /// Announces what is due while the window is active.
    void announce();
    void keepPagesWhole();
    void placeOnScreen();

    ContainerView& view_;
    std::function<void()> terminate_;
    ContainerWidget* content_;
    Announcer* announcer_;
    Announcements announcements_;
    /// Refreshes the window when readings have stopped arriving or a display did not start.
    QTimer nextLook_;
    /// Delays announcements until the focus, which is spoken first, has moved.
    QTimer afterFocus_;
    /// Runs out a moment after the frame was last changed.
    QTimer frameTimer_{this};
    DialogPresenter dialogs_;
    Refresher refresher_;
};

}  // namespace velmorindal
