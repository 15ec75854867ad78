#pragma once

#include <QElapsedTimer>
#include <QString>

namespace qir {

/// Tells on the standard error output how far a long command has come, in a line that is written over: on a terminal
/// only, from the second second on, and wiped at the end. A pipe gets nothing.
class Progress {
public:
    /// `total` 0 is a number that is not known.
    explicit Progress(const QString &what, qint64 total = 0);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// One more of them is done.
    void step() {
        if (m_isWanted && (++m_done & mask) == 0)
            showWhenDue();
    }
    /// So many are done.
    void reach(qint64 done) {
        if (m_isWanted) {
            m_done = done;
            showWhenDue();
        }
    }

    /// No progress of any kind from now on.
    static void silence() { s_isSilent = true; }

private:
    static constexpr qint64 mask = 0xFF; // the clock is asked now and then
    void showWhenDue();

    static inline bool s_isSilent = false;
    QString m_what;
    qint64 m_total;
    qint64 m_done = 0;
    qint64 m_nextShow = 1000; // milliseconds
    qsizetype m_width = 0;    // of what is shown
    bool m_isWanted;
    QElapsedTimer m_timer;
};

} // namespace qir
