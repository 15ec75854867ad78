#pragma once

#include <optional>
#include <vector>

namespace qir {

/// Which rows (or columns) of a grid stand in its view: all of them, or some. They are counted as the grid counts them,
/// from 1; their places in the view, the sections of its headers, are counted from 0.
class ShownLines {
public:
    ShownLines() = default; ///< All.
    /// These alone, ascending.
    explicit ShownLines(std::vector<int> lines)
        : m_some(true)
        , m_lines(std::move(lines)) {}

    bool isAll() const { return !m_some; }
    /// How many stand in the view of a grid that has `whole` of them.
    int count(int whole) const { return m_some ? static_cast<int>(m_lines.size()) : whole; }
    bool holds(int line) const { return section(line).has_value(); }
    /// The line at a place, counted on beyond the last one.
    int line(int section) const;
    /// The place of a line; nothing where it is not shown, and for line 0, the fixed one.
    std::optional<int> section(int line) const;
    /// The place of the first shown line that is not before this one; behind the last place when there is none.
    int sectionFrom(int line) const;

    /// Drops what stands beyond `whole` lines.
    void cut(int whole);
    /// Adds a line.
    void insert(int line);

    friend bool operator==(const ShownLines &, const ShownLines &) = default;

private:
    bool m_some = false;
    std::vector<int> m_lines; // while only some are shown
};

} // namespace qir
