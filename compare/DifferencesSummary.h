#pragma once

#include "compare/SummaryModel.h"
#include "pane/EditorContext.h"

#include <QObject>
#include <QPointer>

QT_BEGIN_NAMESPACE
class QDialog;
class QModelIndex;
QT_END_NAMESPACE

namespace qir {

class DifferenceWalk;

/// The window beside the main one that tells of each table how it differs, as long as it is open kept up to date with
/// what commands do.
class DifferencesSummary : public QObject {
    Q_OBJECT

public:
    DifferencesSummary(EditorContext &editor, const DifferingTables &tables, DifferenceWalk &walk);

    /// Its row for the menus.
    void addCommands();
    void DifferencesSummaryMenu_Click();
    /// A command has ended: reads the shown table's numbers, and all tables where the lists were filled anew.
    void follow();

private:
    void build();
    void readAll();
    TableSummary read(const QString &left, const QString &right) const;
    void readShownTable();
    void goToTable(const QString &name);

    EditorContext &m_editor;
    const DifferingTables &m_tables;
    DifferenceWalk &m_walk;
    SummaryModel m_model;
    QPointer<QDialog> m_window;
    bool m_outdated = true; // other tables than the shown one may have changed
    bool m_reading = false;
};

} // namespace qir
