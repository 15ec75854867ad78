#include "qirtbase/journal/JournalReplay.h"

#include "base/ErrorWords.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/journal/JournalBlock.h"
#include "qirtbase/journal/KeptSteps.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/DatabaseError.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr BodyLimits imageLimits{.recordsWithoutFields = limits::records};

/// Whether only kept steps have it.
bool isOfKeptSteps(const ReadOperation &operation) {
    return operation.kind >= static_cast<std::uint8_t>(JournalOperation::KeptBegin) &&
           !operation.is(JournalOperation::RecordsReordered);
}

/// Whether the places that a change names are there.
bool hasPlaces(const ReadOperation &operation, const Database &database) {
    const auto kind = static_cast<ChangeKind>(operation.kind);
    if (kind == ChangeKind::AddTable)
        return true;
    if (operation.table >= database.tableCount())
        return false;
    const Table &table = database.table(operation.table);
    const bool namesField = kind == ChangeKind::RenameField || kind == ChangeKind::RemoveField ||
                            kind == ChangeKind::ResizeField || kind == ChangeKind::SetNumber ||
                            kind == ChangeKind::SetText || kind == ChangeKind::SetBlock;
    const bool namesRecord = kind == ChangeKind::RemoveRecord || kind == ChangeKind::SetNumber ||
                             kind == ChangeKind::SetText || kind == ChangeKind::SetBlock;
    return (!namesField || operation.field < table.fieldCount()) &&
           (!namesRecord || operation.record < table.recordCount());
}

/// The text of an operation, every character of it: a leading byte order mark too.
QString textOf(const ReadOperation &operation) {
    QString text;
    if (!readUtf8(operation.bytes, text))
        throw DatabaseError(u"a text in a journal is not in UTF-8"_s);
    return text;
}

void setBlock(const ReadOperation &operation, Database &database) {
    Table &table = database.table(operation.table);
    const auto block = decodeBlock(operation.bytes);
    if (!block || block->type() != table.field(operation.field).type() ||
        static_cast<std::size_t>(block->count()) > table.recordCount() - operation.record)
        throw DatabaseError(u"a block in a journal does not fit its field"_s);
    database.setBlock(table, operation.field, operation.record, *block);
}

void makeChange(const ReadOperation &operation, Database &database) {
    const auto text = [&] { return textOf(operation); };
    const auto table = [&]() -> Table & { return database.table(operation.table); };
    switch (static_cast<ChangeKind>(operation.kind)) {
    case ChangeKind::AddTable:
        return database.addTable(text());
    case ChangeKind::RenameTable:
        database.renameTable(operation.table, text());
        return;
    case ChangeKind::RemoveTable:
        return database.removeTable(operation.table);
    case ChangeKind::AddField:
        return database.addField(table(), text(), operation.type, operation.number);
    case ChangeKind::RenameField:
        database.renameField(table(), operation.field, text());
        return;
    case ChangeKind::RemoveField:
        return database.removeField(table(), operation.field);
    case ChangeKind::ResizeField:
        database.resizeField(table(), operation.field, operation.number);
        return;
    case ChangeKind::AddRecord:
        return database.addRecord(table());
    case ChangeKind::RemoveRecord:
        return database.removeRecord(table(), operation.record);
    case ChangeKind::SetNumber:
        database.setNumber(table(), operation.field, operation.record, operation.number);
        return;
    case ChangeKind::SetText:
        database.setText(table(), operation.field, operation.record, text());
        return;
    case ChangeKind::SetBlock:
        return setBlock(operation, database);
    case ChangeKind::AddRecords:
        return database.addRecords(table(), operation.record);
    }
}

/// What a group is by the mark at its front, which is taken off; nothing where that cannot be.
std::optional<StepMark> takeStepMark(QByteArrayView &group) {
    QByteArrayView rest = group;
    const auto operation = takeOperation(rest);
    if (!operation || !isStepMark(*operation))
        return StepMark();
    group = rest;
    return stepMarkOf(*operation);
}

/// Whether a group's operations are images; nothing when they make no sense, or are images and changes together.
std::optional<bool> holdsImages(QByteArrayView group) {
    bool images = false;
    bool changes = false;
    while (!group.isEmpty()) {
        const auto operation = takeOperation(group);
        if (!operation)
            return std::nullopt;
        const bool isImage =
            operation->is(JournalOperation::ImagePart) || operation->is(JournalOperation::TableImage) ||
            operation->is(JournalOperation::BodyImage) || operation->is(JournalOperation::RecordsReordered);
        if (isStepMark(*operation) || isOfKeptSteps(*operation))
            return std::nullopt; // not at the front, or not here
        (isImage ? images : changes) = true;
    }
    if (images && changes)
        return std::nullopt;
    return images;
}

/// Whether a group of operations that are some has the order of a table among them.
bool isOrder(QByteArrayView group) {
    bool found = false;
    while (!group.isEmpty() && !found)
        found = takeOperation(group)->is(JournalOperation::RecordsReordered);
    return found;
}

} // namespace

bool applyChange(const ReadOperation &operation, Database &database) {
    if (!hasPlaces(operation, database))
        return false;
    try {
        makeChange(operation, database);
    } catch (const std::exception &error) {
        if (isLackOfMemory(error))
            throw std::bad_alloc(); // there may be enough another time
        return false;               // it breaks a rule
    }
    return true;
}

bool JournalReplay::feed(QByteArrayView payload) {
    while (!payload.isEmpty()) {
        const QByteArrayView before = payload;
        const auto operation = takeOperation(payload);
        if (!operation || !take(*operation, before.first(before.size() - payload.size())))
            return false;
    }
    return true;
}

bool JournalReplay::take(const ReadOperation &operation, QByteArrayView bytes) {
    if (m_inKept || operation.is(JournalOperation::KeptBegin))
        return takeKept(operation, bytes);
    if (operation.is(JournalOperation::SavingAs) || operation.is(JournalOperation::Ended))
        return m_depth == 0;
    if (operation.is(JournalOperation::StepUndone) || operation.is(JournalOperation::StepRedone))
        return m_depth == 0 && takeStep(operation.is(JournalOperation::StepUndone));
    if (operation.is(JournalOperation::AsSaved)) {
        if (m_depth == 0)
            m_database.enterState(m_savedState, m_lastKind);
        return m_depth == 0;
    }
    if (operation.is(JournalOperation::GroupBegin)) {
        if (m_depth++ == 0) {
            m_group.clear();
            return true;
        }
    } else if (operation.is(JournalOperation::GroupEnd) || operation.is(JournalOperation::GroupUndo)) {
        if (m_depth == 0)
            return false;
        if (--m_depth == 0)
            return operation.is(JournalOperation::GroupUndo) || finishGroup();
    } else if (operation.is(JournalOperation::GroupRestart)) {
        m_group.clear();
        return m_depth == 1;
    } else if (isStepMark(operation) && m_depth != 1) {
        return false;
    }
    if (m_depth > 0) {
        m_group.append(bytes);
        return true;
    }
    m_group = bytes.toByteArray(); // a group of its own
    return finishGroup();
}

/// The steps of before the save, which stand before all else. They change nothing in the end; where they do not fit the
/// database what stands behind them counts all the same.
bool JournalReplay::takeKept(const ReadOperation &operation, QByteArrayView bytes) {
    if (operation.is(JournalOperation::KeptBegin)) {
        if (m_inKept || m_depth > 0 || m_groups > 0 || m_database.history().count() > 0)
            return false;
        m_inKept = true;
        m_group.clear();
        return true;
    }
    if (!operation.is(JournalOperation::KeptEnd)) {
        m_group.append(bytes);
        return true;
    }
    m_inKept = false;
    const Database saved = m_database.copy();
    try {
        if (!readKeptSteps(m_group, saved, m_database))
            begin(saved.copy());
    } catch (const std::exception &error) {
        if (isLackOfMemory(error))
            throw std::bad_alloc();
        begin(saved.copy());
    }
    m_group.clear();
    return true;
}

void JournalReplay::begin(Database database) {
    m_database = std::move(database);
    m_database.keepSteps(stepsBudget);
    m_database.takeEmptySteps(true); // each that stands in the journal was one
}

bool JournalReplay::takeStep(bool undoes) {
    const History &history = m_database.history();
    if (undoes ? history.done() == 0 : history.done() == history.count())
        return false;
    try {
        if (undoes)
            m_database.undoStep();
        else
            m_database.redoStep();
    } catch (const std::exception &) {
        throw std::bad_alloc(); // nothing else can be wrong
    }
    ++m_groups;
    return true;
}

bool JournalReplay::finishGroup() {
    if (!applyGroup())
        return false;
    m_group.clear();
    ++m_groups;
    return true;
}

bool JournalReplay::applyGroup() {
    QByteArrayView group = m_group;
    const auto mark = takeStepMark(group);
    const auto hasImages = holdsImages(group);
    if (!mark || !hasImages)
        return false;
    m_lastKind = mark->kind;
    m_database.beginMarked(*mark);
    const bool isDone = isOrder(group) ? applyOrder(group) : *hasImages ? applyImages(group) : makeChanges(group);
    if (isDone) {
        m_database.endGroup();
        return true;
    }
    while (m_database.hasOpenGroup())
        m_database.undoGroup();
    return false;
}

bool JournalReplay::makeChanges(QByteArrayView changes) {
    QByteArrayView rest = changes;
    int depth = 0;
    while (!rest.isEmpty()) {
        const auto operation = takeOperation(rest);
        if (operation->is(JournalOperation::GroupBegin)) {
            m_database.beginGroup();
            ++depth;
        } else if (operation->is(JournalOperation::GroupEnd) || operation->is(JournalOperation::GroupUndo)) {
            if (depth-- == 0)
                return false;
            if (operation->is(JournalOperation::GroupEnd))
                m_database.endGroup();
            else
                m_database.undoGroup();
        } else if (!applyChange(*operation, m_database)) {
            return false;
        }
    }
    return depth == 0;
}

/// Of one table, and nothing else.
bool JournalReplay::applyOrder(QByteArrayView group) {
    QByteArray parts;
    while (!group.isEmpty()) {
        const auto operation = takeOperation(group);
        if (operation->is(JournalOperation::ImagePart)) {
            parts.append(operation->bytes);
            continue;
        }
        if (!operation->is(JournalOperation::RecordsReordered) || !group.isEmpty() ||
            operation->table >= m_database.tableCount())
            return false;
        Table &table = m_database.table(operation->table);
        auto order = orderOf(parts, table.recordCount());
        if (!order)
            return false;
        m_database.restore(undo::RecordsReordered{&table, std::move(*order)});
        return true;
    }
    return false;
}

/// All images are decoded before the first is put in its place.
bool JournalReplay::applyImages(QByteArrayView images) {
    std::vector<std::pair<std::size_t, std::unique_ptr<Table>>> tables;
    std::optional<Database> whole;
    QByteArray image;
    for (QByteArrayView rest = images; !rest.isEmpty();) {
        const auto operation = takeOperation(rest);
        if (operation->is(JournalOperation::ImagePart)) {
            image.append(operation->bytes);
            continue;
        }
        if (operation->is(JournalOperation::TableImage)) {
            auto table = decodeTable(image, imageLimits);
            if (!table || operation->table >= m_database.tableCount())
                return false;
            tables.emplace_back(operation->table, std::move(*table));
        } else {
            auto database = decodeBody(image, imageLimits);
            if (!database)
                return false;
            whole = std::move(*database);
        }
        image.clear();
    }
    for (const auto &[index, table] : tables)
        if (m_database.findTable(table->name().text).value_or(index) != index)
            return false;
    // An image holds all values of a table: those that are there already are not kept twice, as in the session itself.
    for (auto &[index, table] : tables) {
        table->shareWith(m_database.table(index));
        m_database.replaceTable(index, std::move(table));
    }
    if (whole) {
        for (std::size_t i = 0; i < std::min(whole->tableCount(), m_database.tableCount()); ++i)
            whole->table(i).shareWith(m_database.table(i));
        m_database.replaceTables(std::move(*whole));
    }
    return true;
}

} // namespace qir
