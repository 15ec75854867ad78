#pragma once

namespace qir {

/// How the panes share their room between list and grid: the same in both of them, as given until the user moves the
/// border.
class PaneRoom {
public:
    /// The list stands above the grid, or, where the user wants it and the window is wide, beside it.
    enum class Placing { Above, Beside };

    /// The part of the frame's height, or width, that the list has; 0 as given.
    double listShare(Placing placing) const { return placing == Placing::Above ? m_above : m_beside; }
    void setListShare(Placing placing, double share);

    bool wantsBeside() const { return m_wantsBeside; }
    void setWantsBeside(bool wants) { m_wantsBeside = wants; }
    Placing placingIn(int windowWidth) const;

private:
    double m_above = 0;
    double m_beside = 0;
    bool m_wantsBeside = false;
};

} // namespace qir
