#pragma once

#include <QComboBox>

#include "ModelTypes.h"

namespace velmorindal {

/// A pop-up list of every key that can be chosen.
class KeyList final : public QComboBox {
    Q_OBJECT

  public:
    explicit KeyList(const QString& accessibleName);

    /// The chosen key.
    OutputKey key() const;
    void setKey(OutputKey key);

  signals:
    /// A key press has chosen another entry of the closed list, which screen readers do not announce.
    void stepped(const QString& entry);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// The wheel scrolls the page and does not change the key below the pointer.
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace velmorindal
