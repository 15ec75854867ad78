#include "compare/DifferenceWords.h"

#include "compare/CellDifferences.h"
#include "platform/controls/DifferenceSigns.h"
#include "platform/grid/Grid.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace qir {

namespace {

using DrawSign = void (*)(QPainter &, const QRectF &);

/// A sign in the colour of the text beside it, whatever the colour scheme.
class SignIcon : public QIconEngine {
public:
    explicit SignIcon(DrawSign draw)
        : m_draw(draw) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override {
        if (m_draw == nullptr)
            return;
        painter->save();
        painter->setPen(
            QGuiApplication::palette().color(mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text));
        m_draw(*painter, rect);
        painter->restore();
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, picture.rect(), mode, state);
        return picture;
    }
    QIconEngine *clone() const override { return new SignIcon(*this); }

private:
    DrawSign m_draw;
};

QIcon signIcon(DrawSign draw) {
    return QIcon(new SignIcon(draw));
}

} // namespace

void DifferenceWords::install() {
    for (const int pane : {0, 1}) {
        ListBox *list = &m_editor.ListaTabelle(pane);
        list->setSigns([this, pane](int line) { return ofLine(pane, line); });
        QObject::connect(&m_tables, &DifferingTables::changed, list->viewport(), qOverload<>(&QWidget::update));
        m_editor.Tabella(pane).setCellWords([this](int row, int column) { return ofCell(row, column); });
    }
}

ListBox::LineSign DifferenceWords::ofLine(int pane, int line) const {
    switch (m_tables.standing(line)) {
    case Standing::Unknown:
        break;
    case Standing::Equal: // the texts stand below each other
        return {signIcon(nullptr), {}};
    case Standing::Differ:
        return {signIcon(drawDiffersSign), tr("differs")};
    case Standing::OnlyLeft:
    case Standing::OnlyRight: {
        const bool here = (m_tables.standing(line) == Standing::OnlyLeft) == (pane == 0);
        return here ? ListBox::LineSign{signIcon(drawOnlyHereSign), tr("only here")}
                    : ListBox::LineSign{signIcon(drawMissingHereSign), tr("missing here")};
    }
    }
    return {};
}

QString DifferenceWords::ofCell(int row, int column) const {
    if (!m_editor.gridsShowSameTable())
        return {};
    const TableSizes sizes = shownSizes(m_editor);
    const bool inLeft = row <= sizes.leftRecords && column <= sizes.leftFields;
    const bool inRight = row <= sizes.rightRecords && column <= sizes.rightFields;
    const auto text = [&](int pane) { return m_editor.Tabella(pane).TextMatrix(row, column); };
    if (inLeft && inRight)
        return tr("left: %1, right: %2").arg(text(0), text(1));
    if (inLeft)
        return tr("left: %1, missing on the right").arg(text(0));
    return inRight ? tr("missing on the left, right: %1").arg(text(1)) : QString();
}

} // namespace qir
