#pragma once

#include <QEvent>

namespace velmorindal {

/// The type of an event that this program posts to itself, a different one for each `Purpose`.
template <typename Purpose>
QEvent::Type eventType() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

}  // namespace velmorindal
