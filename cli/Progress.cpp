#include "cli/Progress.h"

#include "cli/tables/TextTable.h"

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

Progress::Progress(const QString &what, qint64 total)
    : m_what(printableText(what))
    , m_total(total)
    , m_isWanted(!s_isSilent && ::isatty(STDERR_FILENO) == 1) {
    m_timer.start();
}

Progress::~Progress() {
    if (m_width > 0)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(m_width), "");
}

void Progress::showWhenDue() {
    constexpr qint64 interval = 200; // milliseconds
    if (m_timer.elapsed() < m_nextShow)
        return;
    m_nextShow = m_timer.elapsed() + interval;
    const QString text = m_total > 0
                             ? u"%1: %2 of %3 (%4%)"_s.arg(m_what).arg(m_done).arg(m_total).arg(m_done * 100 / m_total)
                             : u"%1: %2"_s.arg(m_what).arg(m_done);
    std::fprintf(stderr, "\r%-*s", static_cast<int>(m_width), text.toUtf8().constData());
    std::fflush(stderr);
    m_width = std::max(m_width, text.toUtf8().size());
}

} // namespace qir
