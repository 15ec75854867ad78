#pragma once

#include "pane/EditorContext.h"

#include <QStringList>

namespace qir {

class TableMarks;

/// True when two table names are equal once their markers are removed, code unit by code unit.
bool NomiTabelleUguali(const QString &name1, const QString &name2);

/// True when name 1 sorts strictly after name 2, both without markers, code unit by code unit.
bool NomeTabella1_MaggioreDi_NomeTabella2(const QString &name1, const QString &name2);

/// Lines the two table lists up, so that a table stands on the same line in both panes.
class TableListAlignment {
public:
    TableListAlignment(EditorContext &editor, TableMarks &marks)
        : m_editor(editor)
        , m_marks(marks) {}

    /// Refills both lists from their databases; with two databases open also inserts a placeholder line for each table
    /// that one of them lacks and marks the tables that differ. List clicks are not handled meanwhile. Yields.
    void MostraTabelleDiverseInLista();
    /// The names of the tables of both databases, sorted, each once. Yields.
    void CreaListaUnicaTabella(QStringList &elencoUnico);
    /// Inserts a placeholder line for every name that a list lacks.
    void CreaSpaziInListeTabelle(const QStringList &elencoUnico);

private:
    EditorContext &m_editor;
    TableMarks &m_marks;
};

} // namespace qir
