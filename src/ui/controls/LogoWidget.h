#pragma once

#include <QWidget>

namespace velmorindal {

/// The logo inside a circle with a red outline and a faint white shadow.
class LogoWidget final : public QWidget {
    Q_OBJECT

  public:
    LogoWidget();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace velmorindal
