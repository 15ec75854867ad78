#pragma once

#include "compare/conflicts/ConflictStanding.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <vector>

namespace qir {

/// The conflicts of a merge as rows of a view, with what the database has there now and what was chosen for each.
class ConflictList : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Table, Record, Field, Base, Ours, Theirs, State, ColumnCount };
    enum class Choice : std::uint8_t { None, Ours, Theirs, AsItIs };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows other conflicts; nothing is chosen for them yet.
    void setConflicts(std::vector<Conflict> conflicts, std::vector<ConflictStanding> standings);
    /// The database has changed: one standing for each conflict.
    void setStandings(std::vector<ConflictStanding> standings);
    void choose(int row, Choice choice);

    const std::vector<Conflict> &conflicts() const { return m_conflicts; }
    const Conflict &conflict(int row) const { return m_conflicts[index(row)]; }
    const ConflictStanding &standing(int row) const { return m_standings[index(row)]; }
    /// What is stored there is what was chosen, or was THEIRS all along in a record that is known: there is nothing
    /// more to decide.
    bool isResolved(int row) const;
    int resolvedCount() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &cell, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    static std::size_t index(int row) { return static_cast<std::size_t>(row); }
    QString text(int row, int column) const;
    static QString recordText(const Conflict &conflict);
    QString stateText(int row) const;
    QString standingText(int row) const;
    QString otherText(int row) const;
    QString identityText(int row) const;

    std::vector<Conflict> m_conflicts;
    std::vector<ConflictStanding> m_standings; // of each
    std::vector<Choice> m_choices;
};

} // namespace qir
