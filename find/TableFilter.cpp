#include "find/TableFilter.h"

#include "app/shared/utility.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace qir {

namespace {

constexpr int fewestTables = 15;

} // namespace

void TableFilter::connectPane(int pane) {
    QLineEdit &filter = *m_editor.pane(pane).controls().filter;
    connect(&filter, &QLineEdit::textChanged, this, [this](const QString &text) { filterAlike(text); });
    filter.installEventFilter(this);
}

bool TableFilter::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::KeyPress || static_cast<const QKeyEvent &>(*event).key() != Qt::Key_Escape)
        return QObject::eventFilter(watched, event);
    for (const int pane : {0, 1}) {
        if (watched != m_editor.pane(pane).controls().filter)
            continue;
        filterAlike({});
        m_editor.ListaTabelle(pane).setFocus(Qt::OtherFocusReason);
    }
    return true;
}

void TableFilter::filterAlike(const QString &text) {
    for (const int pane : {0, 1}) {
        QLineEdit &filter = *m_editor.pane(pane).controls().filter;
        if (filter.text() != text)
            filter.setText(text); // which comes back here with nothing left to set
    }
    for (const int pane : {0, 1})
        apply(pane);
    m_applied = !text.isEmpty();
}

void TableFilter::apply(int pane) {
    ListBox &list = m_editor.ListaTabelle(pane);
    const QString text = m_editor.pane(pane).controls().filter->text().trimmed();
    for (int line = 0; line < list.ListCount(); ++line) {
        const bool hidden = !TogliMarcatori(list.List(line)).contains(text, Qt::CaseInsensitive);
        if (list.isRowHidden(line) != hidden)
            list.setRowHidden(line, hidden);
    }
}

void TableFilter::follow() {
    int most = 0;
    for (const int pane : {0, 1})
        most = std::max(most, m_editor.DtbAperto(pane) ? m_editor.ListaTabelle(pane).ListCount() : 0);
    if (most < fewestTables && m_applied)
        filterAlike({});
    bool changed = false;
    for (const int pane : {0, 1}) {
        const PaneControls &controls = m_editor.pane(pane).controls();
        const bool shown = most >= fewestTables && m_editor.DtbAperto(pane);
        if (controls.filter->isHidden() == shown) {
            if (!shown && controls.filter->hasFocus())
                controls.ListaTabelle->setFocus(Qt::OtherFocusReason);
            controls.filter->setVisible(shown);
            changed = true;
        }
        if (m_applied)
            apply(pane);
    }
    if (changed)
        Q_EMIT resized();
}

} // namespace qir
