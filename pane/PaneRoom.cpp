#include "pane/PaneRoom.h"

#include <algorithm>

namespace qir {

namespace {

constexpr int wide = 1400; // pixels

} // namespace

void PaneRoom::setListShare(Placing placing, double share) {
    (placing == Placing::Above ? m_above : m_beside) = std::clamp(share, 0.0, 1.0);
}

PaneRoom::Placing PaneRoom::placingIn(int windowWidth) const {
    return m_wantsBeside && windowWidth > wide ? Placing::Beside : Placing::Above;
}

} // namespace qir
