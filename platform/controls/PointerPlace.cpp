#include "platform/controls/PointerPlace.h"

#include <QCursor>

namespace qir {

QPoint PointerPlace::position() const {
    return m_handled.value_or(QCursor::pos());
}

} // namespace qir
