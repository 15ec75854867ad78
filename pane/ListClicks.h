#pragma once

namespace qir {

/// Whether clicks of the table lists are handled: not while a database is being opened, nor while lists are being
/// refilled and lined up.
class ListClicks {
public:
    bool opening() const { return m_opening; }
    bool refilling() const { return m_refills > 0; }
    bool handled() const { return !opening() && !refilling(); }

private:
    friend class OpeningScope;
    friend class RefillScope;

    bool m_opening = false;
    int m_refills = 0; // a depth
};

/// While it lives, a database is being opened: list clicks are not handled.
class OpeningScope {
public:
    explicit OpeningScope(ListClicks &clicks)
        : m_clicks(clicks) {
        m_clicks.m_opening = true;
    }
    ~OpeningScope() { m_clicks.m_opening = false; }
    OpeningScope(const OpeningScope &) = delete;
    OpeningScope &operator=(const OpeningScope &) = delete;

private:
    ListClicks &m_clicks;
};

/// While it lives, lists are refilled: their clicks are not handled and the active pane stays.
class RefillScope {
public:
    explicit RefillScope(ListClicks &clicks)
        : m_clicks(clicks) {
        ++m_clicks.m_refills;
    }
    ~RefillScope() { --m_clicks.m_refills; }
    RefillScope(const RefillScope &) = delete;
    RefillScope &operator=(const RefillScope &) = delete;

private:
    ListClicks &m_clicks;
};

} // namespace qir
