#include "platform/dialogs/PromptWrapping.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QRegularExpression>
#include <QScreen>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int widestPromptColumns = 80; // average characters

/// The lines that a text takes in a width. Gives their height.
qreal layOut(QTextLayout &layout, qreal width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
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

/// Draws a label's text in the label's place.
class LabelDrawing : public QObject {
public:
    explicit LabelDrawing(QLabel &label)
        : QObject(&label)
        , m_label(label) {
        label.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (watched != &m_label || event->type() != QEvent::Paint)
            return false;
        const QRect place = m_label.contentsRect();
        QTextLayout layout(withLineSeparators(m_label.text()), m_label.font());
        layOut(layout, place.width());
        QPainter painter(&m_label);
        painter.setPen(m_label.palette().color(m_label.foregroundRole()));
        layout.draw(&painter, place.topLeft());
        return true;
    }

private:
    QLabel &m_label;
};

} // namespace

int widestPrompt(const QLabel &label) {
    const int screen = label.screen()->availableGeometry().width();
    return std::min(label.fontMetrics().averageCharWidth() * widestPromptColumns, screen * 2 / 3);
}

void wrapWithin(QLabel &label, int width) {
    QTextLayout layout(withLineSeparators(label.text()), label.font());
    const int height = static_cast<int>(std::ceil(layOut(layout, width)));
    label.setWordWrap(true);
    // The label's own idea of its size is that of its longest word.
    label.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    label.setMinimumSize(width, height);
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

} // namespace qir
