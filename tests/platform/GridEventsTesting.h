#pragma once

#include "tests/platform/GridTesting.h"
#include "tests/support/Hands.h"

#include <QObject>

#include <memory>

namespace qir::testing {

/// A shown grid and what it raises, anew for each test function.
class WithShownGrid : public QObject {
    Q_OBJECT

protected Q_SLOTS:
    void init() {
        m_grid = shownGrid();
        m_log = std::make_unique<GridLog>(*m_grid);
    }
    void cleanup() { m_grid.reset(); }

protected:
    void press(const QPoint &at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {}) {
        hands::press(m_grid->viewport(), button, modifiers, at);
    }
    void dragTo(const QPoint &at) { hands::move(m_grid->viewport(), at, Qt::LeftButton); }
    void wheel(int steps) { hands::turnWheel(m_grid->viewport(), {50, 50}, {0, 120 * steps}); }

    std::unique_ptr<Grid> m_grid;
    std::unique_ptr<GridLog> m_log;
};

} // namespace qir::testing
