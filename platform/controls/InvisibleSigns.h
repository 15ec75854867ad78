#pragma once

#include <QChar>
#include <QTextLayout>

#include <memory>
#include <utility>

QT_BEGIN_NAMESPACE
class QFont;
class QPainter;
class QPointF;
class QString;
QT_END_NAMESPACE

namespace qir {

/// True for a line end of any kind.
bool isLineEnd(QChar character);

/// True for a character that takes room, or none, and shows nothing: line ends, tabs, controls, the blank that keeps
/// words together, marks of no width.
bool isInvisible(QChar character);

/// A text of one line as it is drawn in a font, laid out once: measuring the part before each character anew would
/// cost the square of its length.
class LaidOutLine {
public:
    /// `line` holds no line end.
    LaidOutLine(const QString &line, const QFont &font, Qt::LayoutDirection direction);
    ~LaidOutLine();
    Q_DISABLE_COPY_MOVE(LaidOutLine)

    /// Where the character with this index begins, in pixels from the left end of the line.
    qreal edge(qsizetype index) const;
    /// The characters that stand between two places, from the first to behind the last: where the line goes in both
    /// directions, all that there are.
    std::pair<qsizetype, qsizetype> between(qreal left, qreal right) const;

private:
    qsizetype at(qreal x) const;

    std::unique_ptr<QTextLayout> m_layout;
    QTextLine m_line;
    bool m_mixed;
};

/// True when parts of a text run from left to right and others from right to left: what stands at the ends of the line
/// need not be the first and the last characters then.
bool goesBothWays(const QString &text, Qt::LayoutDirection direction);

/// Draws a small sign for each invisible character of a text over the room that it takes: a hook for a line end, an
/// arrow for a tab, a ring for a blank, a bar for any other. `drawn` is the text as it is drawn, a blank for each line
/// end; `left` is its upper left end. Only what lies on the painter's device is looked at. The text itself stays as it
/// is drawn and measured.
void drawInvisibleSigns(QPainter &painter, const QString &text, const LaidOutLine &drawn, QPointF left, qreal height);

} // namespace qir
