#pragma once

#include <QString>
#include <QStringList>

namespace qir {

/// The line ends of a text whose lines are edited in a box that knows one kind of end only: a line that stays keeps its
/// own, a new one gets the kind that the text has first.
class LineEnds {
public:
    /// Of a text that the box shows as `lines`.
    LineEnds(const QString &text, QStringList lines);

    const QStringList &lines() const { return m_lines; }
    /// The text that the edited lines make.
    QString joined(const QStringList &edited) const;

private:
    QStringList m_lines;
    QStringList m_ends; // of all lines but the last
    QString m_usual;
};

} // namespace qir
