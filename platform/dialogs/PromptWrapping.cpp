#include "platform/dialogs/PromptWrapping.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QScreen>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int widestPromptColumns = 80; // average characters
constexpr auto drawingName = "wrappedDrawing"_L1;

/// The lines that a text takes in a width. Gives their height.
qreal layOut(QTextLayout &layout, qreal width, Qt::Alignment alignment = Qt::AlignLeft) {
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // By what it is written in, whatever way the window is read: a path that begins it would be torn apart.
    option.setTextDirection(layout.text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}

/// A layout knows line ends by another character than texts do.
QString withLineSeparators(QString text) {
    text.replace(u"\r\n"_s, QString(QChar::LineSeparator));
    text.replace(u'\n', QChar::LineSeparator);
    return text;
}

int wrappedHeight(const QLabel &label, int width) {
    QTextLayout layout(withLineSeparators(label.text()), label.font());
    return static_cast<int>(std::ceil(layOut(layout, width)));
}

/// A label's text in the label's place.
class LabelText {
public:
    explicit LabelText(const QLabel &label)
        : m_layout(withLineSeparators(label.text()), label.font()) {
        const QRect place = label.contentsRect();
        const Qt::Alignment alignment = QStyle::visualAlignment(label.layoutDirection(), label.alignment());
        const qreal height =
            layOut(m_layout, place.width(), (alignment & Qt::AlignHorizontal_Mask) | Qt::AlignAbsolute);
        const qreal spare = std::max<qreal>(place.height() - height, 0);
        m_corner = place.topLeft();
        if (alignment.testFlag(Qt::AlignVCenter))
            m_corner.ry() += std::floor(spare / 2);
        else if (alignment.testFlag(Qt::AlignBottom))
            m_corner.ry() += spare;
    }

    void draw(QPainter &painter, const QList<QTextLayout::FormatRange> &selection) const {
        m_layout.draw(&painter, m_corner, selection);
    }

    /// The place between two characters that is nearest to a point.
    int placeAt(QPointF point) const {
        point -= m_corner;
        int line = 0;
        while (line + 1 < m_layout.lineCount() && point.y() >= m_layout.lineAt(line).rect().bottom())
            ++line;
        return m_layout.lineCount() == 0 ? 0 : m_layout.lineAt(line).xToCursor(point.x());
    }

    int wordStart(int place) const { return m_layout.previousCursorPosition(place + 1, QTextLayout::SkipWords); }
    int wordEnd(int place) const {
        int end = m_layout.nextCursorPosition(place, QTextLayout::SkipWords);
        while (end > place && m_layout.text()[end - 1].isSpace())
            --end;
        return end;
    }

private:
    QTextLayout m_layout;
    QPointF m_corner;
};

/// Draws a label's text so, and lets the mouse select in it what is seen there. What is selected is the label's own
/// selection, which its keys and its menu copy.
class LabelDrawing : public QObject {
public:
    explicit LabelDrawing(QLabel &label)
        : QObject(&label)
        , m_label(label) {
        setObjectName(drawingName);
        label.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (watched != &m_label)
            return false;
        switch (event->type()) {
        case QEvent::Paint:
            paint();
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            return select(static_cast<QMouseEvent &>(*event));
        default:
            return false;
        }
    }

private:
    void paint() {
        QPainter painter(&m_label);
        const QPalette &palette = m_label.palette();
        painter.setPen(palette.color(m_label.foregroundRole()));
        QList<QTextLayout::FormatRange> selection;
        if (m_label.hasSelectedText()) {
            QTextCharFormat format;
            format.setBackground(palette.brush(QPalette::Highlight));
            format.setForeground(palette.brush(QPalette::HighlightedText));
            selection.append({m_label.selectionStart(), static_cast<int>(m_label.selectedText().size()), format});
        }
        LabelText(m_label).draw(painter, selection);
    }

    /// True where the label by itself would take the place for that of another letter.
    bool select(const QMouseEvent &event) {
        const bool held = event.button() == Qt::LeftButton || event.buttons().testFlag(Qt::LeftButton);
        if (!held || !m_label.textInteractionFlags().testFlag(Qt::TextSelectableByMouse))
            return false;
        const LabelText text(m_label);
        const int place = text.placeAt(event.position());
        if (event.type() == QEvent::MouseButtonPress)
            m_begin = m_end = place;
        else if (event.type() == QEvent::MouseMove)
            m_end = place;
        if (event.type() == QEvent::MouseButtonDblClick) {
            m_begin = text.wordStart(place);
            m_end = text.wordEnd(place);
        }
        m_label.setSelection(std::min(m_begin, m_end), std::abs(m_end - m_begin));
        m_label.update();
        return true;
    }

    QLabel &m_label;
    int m_begin = 0;
    int m_end = 0;
};

} // namespace

int widestPrompt(const QLabel &label) {
    const int screen = label.screen()->availableGeometry().width();
    return std::min(label.fontMetrics().averageCharWidth() * widestPromptColumns, screen * 2 / 3);
}

void wrapWithin(QLabel &label, int width) {
    label.setWordWrap(true);
    // The label's own idea of its size is that of its longest word.
    label.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    const QMargins margins = label.contentsMargins();
    label.setMinimumSize(width + margins.left() + margins.right(),
                         wrappedHeight(label, width) + margins.top() + margins.bottom());
    if (label.findChild<QObject *>(drawingName) == nullptr)
        new LabelDrawing(label); // the label's child
}

void wrapLongWords(QLabel &label) {
    const int widest = widestPrompt(label);
    const QFontMetrics metrics = label.fontMetrics();
    const QStringList words = label.text().split(QRegularExpression(u"\\s+"_s));
    if (std::ranges::any_of(words, [&](const QString &word) { return metrics.horizontalAdvance(word) > widest; }))
        wrapWithin(label, widest);
}

void wrapWhenTooWide(QLabel &label) {
    const int widest = widestPrompt(label);
    const QSize natural = label.fontMetrics().size(0, label.text());
    if (natural.width() > widest)
        wrapWithin(label, widest);
}

void wrapAsWide(QLabel &label) {
    const int natural = label.fontMetrics().size(0, label.text()).width();
    wrapWithin(label, std::min(natural, widestPrompt(label)));
}

WrappedLabel::WrappedLabel(QWidget *parent)
    : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    new LabelDrawing(*this); // its child
}

int WrappedLabel::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    return wrappedHeight(*this, std::max(1, width - margins.left() - margins.right())) + margins.top() +
           margins.bottom();
}

QSize WrappedLabel::sizeHint() const {
    const int width = std::min(fontMetrics().size(0, text()).width(), widestPrompt(*this));
    return {width, heightForWidth(width)};
}

QSize WrappedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

} // namespace qir
