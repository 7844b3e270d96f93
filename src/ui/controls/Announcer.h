#pragma once

#include <QWidget>
#include <array>
#include <cstddef>

namespace velmorindal {

/// One text for a screen reader alone: a notification that is spoken when it becomes shown, without moving
/// the focus.
class SpokenText final : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
};

/// Says texts aloud.
///
/// Each is an object that becomes shown: the versions of Qt and Orca that we support pass on no other
/// announcement. A screen reader asks for the words only when it comes to them, so every text keeps its
/// object until many more have been said.
class Announcer final : public QWidget {
    Q_OBJECT

  public:
    explicit Announcer(QWidget* parent);

    void say(const QString& text);

  private:
    std::array<SpokenText*, 16> texts_{};
    std::size_t next_ = 0;
};

}  // namespace velmorindal
