#include "platform/cells/ShownLines.h"

#include <algorithm>

namespace qir {

int ShownLines::line(int section) const {
    if (!m_some || m_lines.empty())
        return section + 1;
    const int last = static_cast<int>(m_lines.size()) - 1;
    return section <= last ? m_lines[static_cast<std::size_t>(section)] : m_lines.back() + section - last;
}

int ShownLines::sectionFrom(int line) const {
    if (!m_some)
        return line - 1;
    return static_cast<int>(std::ranges::lower_bound(m_lines, line) - m_lines.begin());
}

std::optional<int> ShownLines::section(int line) const {
    if (line < 1)
        return std::nullopt;
    const int section = sectionFrom(line);
    const bool there =
        !m_some || (section < static_cast<int>(m_lines.size()) && m_lines[static_cast<std::size_t>(section)] == line);
    return there ? std::optional(section) : std::nullopt;
}

void ShownLines::cut(int whole) {
    m_lines.erase(std::ranges::upper_bound(m_lines, whole), m_lines.end());
}

void ShownLines::insert(int line) {
    if (m_some && line >= 1 && !holds(line))
        m_lines.insert(m_lines.begin() + sectionFrom(line), line);
}

} // namespace qir
