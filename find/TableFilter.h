#pragma once

#include "pane/EditorContext.h"

#include <QObject>

namespace qir {

/// The line above long table lists that leaves only those lines to see whose names hold a text. Both lists are filtered
/// alike, so that they stay level; a line keeps its index, and the selected one stays selected, seen or not.
class TableFilter : public QObject {
    Q_OBJECT

public:
    explicit TableFilter(EditorContext &editor)
        : m_editor(editor) {}

    void connectPane(int pane);
    /// Lists may be other ones: shows or hides the filter line and its lines. To be called when a command has ended.
    void follow();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void resized(); ///< The filter line was shown or hidden.

private:
    void filterAlike(const QString &text);
    void apply(int pane);

    EditorContext &m_editor;
    bool m_applied = false; // lines may be hidden
};

} // namespace qir
