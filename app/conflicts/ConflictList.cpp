#include "app/conflicts/ConflictList.h"

#include "db/StoredText.h"

#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

using Kind = ConflictStanding::Kind;
using Identity = ConflictStanding::Identity;

QString listText(const QVariantList &values) {
    QStringList texts;
    for (const QVariant &value : values)
        texts.append(valueText(value));
    return texts.join(u", "_s);
}

QString sideText(const QVariantList &values) {
    return values.isEmpty() ? ConflictList::tr("(nothing)") : listText(values);
}

} // namespace

void ConflictList::setConflicts(std::vector<Conflict> conflicts, std::vector<ConflictStanding> standings) {
    beginResetModel();
    m_conflicts = std::move(conflicts);
    m_standings = std::move(standings);
    m_choices.assign(m_conflicts.size(), Choice::None);
    endResetModel();
}

void ConflictList::setStandings(std::vector<ConflictStanding> standings) {
    m_standings = std::move(standings);
    if (!m_conflicts.empty())
        Q_EMIT dataChanged(createIndex(0, State), createIndex(rowCount() - 1, State));
}

void ConflictList::choose(int row, Choice choice) {
    m_choices[index(row)] = choice;
    Q_EMIT dataChanged(createIndex(row, State), createIndex(row, State));
}

bool ConflictList::isResolved(int row) const {
    const Kind kind = standing(row).kind;
    switch (m_choices[index(row)]) {
    case Choice::AsItIs:
        return true;
    case Choice::Ours: // what cannot be told is as the merge has left it
        return kind == Kind::Ours || kind == Kind::Whole;
    case Choice::Theirs:
        return kind == Kind::Theirs;
    case Choice::None:
        break;
    }
    return kind == Kind::Theirs &&
           (standing(row).identity == Identity::Known || conflict(row).what == Conflict::What::Field);
}

int ConflictList::resolvedCount() const {
    int count = 0;
    for (int row = 0; row < rowCount(); ++row)
        count += isResolved(row) ? 1 : 0;
    return count;
}

int ConflictList::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_conflicts.size());
}

int ConflictList::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ConflictList::data(const QModelIndex &cell, int role) const {
    if (!cell.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return text(cell.row(), cell.column());
    if (role != Qt::ToolTipRole)
        return {};
    const QString &reason = conflict(cell.row()).reason;
    return reason.isEmpty() ? text(cell.row(), cell.column()) : text(cell.row(), cell.column()) + u'\n' + reason;
}

QVariant ConflictList::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList names{tr("Table"), tr("Record"), tr("Field"), tr("Base"), tr("Ours"), tr("Theirs"), tr("State")};
    return names.value(section);
}

QString ConflictList::text(int row, int column) const {
    const Conflict &shown = conflict(row);
    switch (column) {
    case Table:
        return shown.table;
    case Record:
        return recordText(shown);
    case Field:
        return shown.field;
    case Base:
        return sideText(shown.base);
    case Ours:
        return sideText(shown.ours);
    case Theirs:
        return sideText(shown.theirs);
    default:
        return stateText(row);
    }
}

QString ConflictList::recordText(const Conflict &conflict) {
    if (!conflict.key.isEmpty())
        return listText(conflict.key);
    return conflict.record > 0 ? QString::number(conflict.record) : QString();
}

QString ConflictList::stateText(int row) const {
    if (!isResolved(row))
        return standingText(row);
    if (standing(row).kind == Kind::Theirs)
        return tr("resolved: theirs");
    return m_choices[index(row)] == Choice::Ours ? tr("resolved: ours") : tr("resolved: as it is");
}

QString ConflictList::otherText(int row) const {
    switch (conflict(row).what) {
    case Conflict::What::Cell:
    case Conflict::What::Field:
        return tr("open; the database has %1 now").arg(standing(row).now);
    case Conflict::What::Record:
        return tr("open; the database has another record now");
    case Conflict::What::Table:
        break;
    }
    return tr("open; the table is another one now");
}

QString ConflictList::identityText(int row) const {
    const bool differs = standing(row).identity == Identity::Differs;
    if (conflict(row).what == Conflict::What::Field)
        return differs ? tr("open; the records are not as the merge has left them")
                       : tr("open; only their order tells the records");
    return differs ? tr("open; the record is not as the merge has left it")
                   : tr("open; only its number tells the record");
}

QString ConflictList::standingText(int row) const {
    const ConflictStanding &now = standing(row);
    const bool isHere = now.kind == Kind::Ours || now.kind == Kind::Theirs || now.kind == Kind::Other;
    if (isHere && now.identity != Identity::Known)
        return identityText(row);
    switch (now.kind) {
    case Kind::Other:
        return otherText(row);
    case Kind::Missing:
        return tr("open; the database has no such place now");
    case Kind::Several:
        return tr("open; it is not clear which record is meant");
    case Kind::Whole:
        return tr("open; only ours can be taken here");
    default:
        return tr("open");
    }
}

} // namespace qir
