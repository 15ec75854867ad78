#include "qirtbase/journal/JournalCodec.h"

#include "base/ErrorWords.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/DatabaseError.h"
#include "qirtbase/model/UnicodeText.h"

#include <QtEndian>

#include <cmath>
#include <exception>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace qir {

namespace {

constexpr BodyLimits imageLimits{.recordsWithoutFields = limits::records};

constexpr std::size_t saveIdSize = layout::idSize;

template<class Number>
void put(QByteArray &out, Number value) {
    char bytes[sizeof value];
    qToLittleEndian(value, bytes);
    out.append(bytes, sizeof bytes);
}

void putIndex(QByteArray &out, std::size_t index) {
    put(out, std::uint32_t(index));
}

void putBytes(QByteArray &out, QByteArrayView bytes) {
    put(out, std::uint32_t(bytes.size()));
    out.append(bytes);
}

/// Takes numbers off the front of bytes; once something is missing all that follows is missing too.
class Taker {
public:
    explicit Taker(QByteArrayView &bytes)
        : m_bytes(bytes) {}

    template<class Number>
    Number number() {
        const QByteArrayView taken = bytes(sizeof(Number));
        return taken.size() == qsizetype(sizeof(Number)) ? qFromLittleEndian<Number>(taken.data()) : Number{};
    }
    QByteArrayView bytes(std::size_t count) {
        if (!m_complete || count > std::size_t(m_bytes.size())) {
            m_complete = false;
            return {};
        }
        const QByteArrayView taken = m_bytes.first(qsizetype(count));
        m_bytes = m_bytes.sliced(qsizetype(count));
        return taken;
    }
    QByteArrayView sizedBytes() { return bytes(number<std::uint32_t>()); }
    bool isComplete() const { return m_complete; }

private:
    QByteArrayView &m_bytes;
    bool m_complete = true;
};

bool takeChange(Taker &taker, ReadOperation &operation) {
    switch (ChangeKind(operation.kind)) {
    case ChangeKind::AddTable:
        operation.bytes = taker.sizedBytes();
        return true;
    case ChangeKind::RenameTable:
        operation.table = taker.number<std::uint32_t>();
        operation.bytes = taker.sizedBytes();
        return true;
    case ChangeKind::RemoveTable:
    case ChangeKind::AddRecord:
        operation.table = taker.number<std::uint32_t>();
        return true;
    case ChangeKind::AddField:
        operation.table = taker.number<std::uint32_t>();
        operation.type = taker.number<std::uint8_t>();
        operation.number = taker.number<double>();
        operation.bytes = taker.sizedBytes();
        return true;
    case ChangeKind::RenameField:
        operation.table = taker.number<std::uint32_t>();
        operation.field = taker.number<std::uint32_t>();
        operation.bytes = taker.sizedBytes();
        return true;
    case ChangeKind::RemoveField:
        operation.table = taker.number<std::uint32_t>();
        operation.field = taker.number<std::uint32_t>();
        return true;
    case ChangeKind::ResizeField:
        operation.table = taker.number<std::uint32_t>();
        operation.field = taker.number<std::uint32_t>();
        operation.number = taker.number<double>();
        return true;
    case ChangeKind::RemoveRecord:
        operation.table = taker.number<std::uint32_t>();
        operation.record = taker.number<std::uint32_t>();
        return true;
    case ChangeKind::SetNumber:
    case ChangeKind::SetText:
        operation.table = taker.number<std::uint32_t>();
        operation.field = taker.number<std::uint32_t>();
        operation.record = taker.number<std::uint32_t>();
        if (ChangeKind(operation.kind) == ChangeKind::SetNumber)
            operation.number = taker.number<double>();
        else
            operation.bytes = taker.sizedBytes();
        return true;
    }
    return false;
}

bool takeMark(Taker &taker, ReadOperation &operation) {
    switch (JournalOperation(operation.kind)) {
    case JournalOperation::GroupBegin:
    case JournalOperation::GroupEnd:
    case JournalOperation::GroupUndo:
    case JournalOperation::GroupRestart:
    case JournalOperation::BodyImage:
    case JournalOperation::Ended:
        return true;
    case JournalOperation::ImagePart:
        operation.bytes = taker.sizedBytes();
        return true;
    case JournalOperation::TableImage:
        operation.table = taker.number<std::uint32_t>();
        return true;
    case JournalOperation::SavingAs:
        operation.bytes = taker.bytes(saveIdSize);
        return true;
    }
    return false;
}

bool isChange(const ReadOperation &operation) {
    return operation.kind < std::uint8_t(JournalOperation::GroupBegin);
}

/// Whether the places that a change names are there.
bool hasPlaces(const ReadOperation &operation, const Database &database) {
    const auto kind = ChangeKind(operation.kind);
    if (kind == ChangeKind::AddTable)
        return true;
    if (operation.table >= database.tableCount())
        return false;
    const Table &table = database.table(operation.table);
    const bool namesField = kind == ChangeKind::RenameField || kind == ChangeKind::RemoveField ||
                            kind == ChangeKind::ResizeField || kind == ChangeKind::SetNumber ||
                            kind == ChangeKind::SetText;
    const bool namesRecord =
        kind == ChangeKind::RemoveRecord || kind == ChangeKind::SetNumber || kind == ChangeKind::SetText;
    return (!namesField || operation.field < table.fieldCount()) &&
           (!namesRecord || operation.record < table.recordCount());
}

/// The text of an operation, every character of it: a leading byte order mark too.
QString textOf(const ReadOperation &operation) {
    QString text;
    if (!readUtf8(operation.bytes, text))
        throw DatabaseError(QStringLiteral("a text in a journal is not in UTF-8"));
    return text;
}

void makeChange(const ReadOperation &operation, Database &database) {
    const auto text = [&] { return textOf(operation); };
    const auto table = [&]() -> Table & { return database.table(operation.table); };
    switch (ChangeKind(operation.kind)) {
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
    }
}

/// Whether a group's operations are images; nothing when they make no sense, or are images and changes together.
std::optional<bool> holdsImages(QByteArrayView group) {
    bool images = false;
    bool changes = false;
    while (!group.isEmpty()) {
        const auto operation = takeOperation(group);
        if (!operation)
            return std::nullopt;
        const bool isImage = operation->is(JournalOperation::ImagePart) ||
                             operation->is(JournalOperation::TableImage) || operation->is(JournalOperation::BodyImage);
        (isImage ? images : changes) = true;
    }
    if (images && changes)
        return std::nullopt;
    return images;
}

} // namespace

// ----------------------------------------------------------------------------------------------------------- encoding

void encodeChange(QByteArray &out, const Change &change, std::size_t table) {
    put(out, std::uint8_t(change.kind));
    const auto text = [&] { putBytes(out, change.text.toUtf8()); };
    switch (change.kind) {
    case ChangeKind::AddTable:
        return text();
    case ChangeKind::RenameTable:
        putIndex(out, change.index);
        return text();
    case ChangeKind::RemoveTable:
        return putIndex(out, change.index);
    case ChangeKind::AddField:
        putIndex(out, table);
        put(out, std::uint8_t(change.type));
        put(out, change.number);
        return text();
    case ChangeKind::RenameField:
        putIndex(out, table);
        putIndex(out, change.index);
        return text();
    case ChangeKind::RemoveField:
        putIndex(out, table);
        return putIndex(out, change.index);
    case ChangeKind::ResizeField:
        putIndex(out, table);
        putIndex(out, change.index);
        return put(out, change.number);
    case ChangeKind::AddRecord:
        return putIndex(out, table);
    case ChangeKind::RemoveRecord:
        putIndex(out, table);
        return putIndex(out, change.record);
    case ChangeKind::SetNumber:
    case ChangeKind::SetText:
        putIndex(out, table);
        putIndex(out, change.index);
        putIndex(out, change.record);
        return change.kind == ChangeKind::SetNumber ? put(out, change.number) : text();
    }
}

void encodeMark(QByteArray &out, JournalOperation operation) {
    put(out, std::uint8_t(operation));
}

void encodeImagePart(QByteArray &out, QByteArrayView part) {
    encodeMark(out, JournalOperation::ImagePart);
    putBytes(out, part);
}

void encodeTableImage(QByteArray &out, std::size_t table) {
    encodeMark(out, JournalOperation::TableImage);
    putIndex(out, table);
}

void encodeSavingAs(QByteArray &out, const FileIdentifier &saveId) {
    encodeMark(out, JournalOperation::SavingAs);
    out.append(reinterpret_cast<const char *>(saveId.data()), qsizetype(saveId.size()));
}

// ------------------------------------------------------------------------------------------------------------ reading

std::optional<ReadOperation> takeOperation(QByteArrayView &payload) {
    Taker taker(payload);
    ReadOperation operation;
    operation.kind = taker.number<std::uint8_t>();
    const bool isKnown = isChange(operation) ? takeChange(taker, operation) : takeMark(taker, operation);
    if (!isKnown || !taker.isComplete() || !std::isfinite(operation.number))
        return std::nullopt;
    return operation;
}

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
    if (operation.is(JournalOperation::SavingAs) || operation.is(JournalOperation::Ended))
        return m_depth == 0;
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
    }
    if (m_depth > 0) {
        m_group.append(bytes);
        return true;
    }
    m_group = bytes.toByteArray(); // a group of its own
    return finishGroup();
}

bool JournalReplay::finishGroup() {
    const auto hasImages = holdsImages(m_group);
    if (!hasImages || !(*hasImages ? applyImages() : applyChanges()))
        return false;
    m_group.clear();
    ++m_groups;
    return true;
}

bool JournalReplay::applyChanges() {
    m_database.beginGroup();
    if (makeChanges()) {
        m_database.endGroup();
        return true;
    }
    while (m_database.hasOpenGroup())
        m_database.undoGroup();
    return false;
}

bool JournalReplay::makeChanges() {
    QByteArrayView rest = m_group;
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

/// All images are decoded before the first is put in its place: nothing is undone across them.
bool JournalReplay::applyImages() {
    std::vector<std::pair<std::size_t, std::unique_ptr<Table>>> tables;
    std::optional<Database> whole;
    QByteArray image;
    for (QByteArrayView rest = m_group; !rest.isEmpty();) {
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
    for (auto &[index, table] : tables)
        m_database.replaceTable(index, std::move(table));
    if (whole)
        m_database.replaceTables(std::move(*whole));
    return true;
}

} // namespace qir
