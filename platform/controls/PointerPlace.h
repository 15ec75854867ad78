#pragma once

#include <QPoint>

#include <optional>

namespace qir {

/// Where the mouse pointer is, in global coordinates: while a mouse event is being handled where that event happened
/// (the pointer may have moved on), otherwise where the pointer is now.
class PointerPlace {
public:
    QPoint position() const;
    bool isHandling() const { return m_handled.has_value(); }

    /// Marks the time in which a mouse event is handled.
    class Handling {
    public:
        Handling(PointerPlace &place, const QPoint &globalPosition)
            : m_place(place)
            , m_before(place.m_handled) {
            m_place.m_handled = globalPosition;
        }
        ~Handling() { m_place.m_handled = m_before; }
        Handling(const Handling &) = delete;
        Handling &operator=(const Handling &) = delete;

    private:
        PointerPlace &m_place;
        std::optional<QPoint> m_before;
    };

private:
    std::optional<QPoint> m_handled;
};

} // namespace qir
