#pragma once

#include <QWidget>
#include <array>
#include <cstddef>

namespace velmorindal {

/// One text only for a screen reader: a notification that is spoken when it is shown, without moving
/// the focus.
class SpokenText final : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
};

/// Has texts spoken by a screen reader.
///
/// Each text is an object that is shown: the versions of Qt and Orca that we support pass on no other
/// announcement. A screen reader asks for a text only when it comes to it, so an object keeps its text until
/// 15 more have been said.
class Announcer final : public QWidget {
    Q_OBJECT

  public:
    explicit Announcer(QWidget* parent);

    /// Hands `text` to the screen reader. Does not wait until it is spoken.
    void say(const QString& text);

  private:
    std::array<SpokenText*, 16> texts_{};
    std::size_t next_ = 0;
};

}  // namespace velmorindal
