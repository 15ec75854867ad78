#pragma once

#include "pane/EditorContext.h"

#include <QList>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QPushButton;
QT_END_NAMESPACE

namespace qir {

/// What a pane without a database offers below its hint: opening a file, making one, and the menus of files used last.
/// The pane's frame owns it.
class EmptyPane : public QWidget {
    Q_OBJECT

public:
    EmptyPane(EditorContext &editor, int pane, const QList<QMenu *> &menus);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPushButton *addButton(const QString &name, const QString &text);
    /// What is chosen here is meant for this pane, also where none was active.
    void activate();
    /// Below the hint's text, where there is room for it.
    void place();

    EditorContext &m_editor;
    int m_pane;
};

} // namespace qir
