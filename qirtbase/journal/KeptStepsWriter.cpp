#include "qirtbase/journal/KeptSteps.h"

#include "base/ByteWriter.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/KeptTables.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostPayload = qsizetype{64} << 10;
constexpr qsizetype partSize = qsizetype{1} << 20;
constexpr qsizetype mostOfOperation = partSize + 64; // so that a record has room for it behind others

/// The step takes more room than there is.
struct TooLarge {};

/// A run of operations, cut into payloads of records.
class Payloads {
public:
    std::size_t size() const { return m_size; }
    /// For one operation. Throws TooLarge where no record can hold it.
    template<class Encode>
    void add(Encode encode) {
        if (m_payloads.empty() || m_payloads.back().size() >= mostPayload)
            m_payloads.emplace_back();
        const qsizetype before = m_payloads.back().size();
        encode(m_payloads.back());
        const qsizetype size = m_payloads.back().size() - before;
        if (size > mostOfOperation)
            throw TooLarge();
        m_size += static_cast<std::size_t>(size);
    }
    void addParts(QByteArrayView bytes) {
        for (qsizetype at = 0; at < bytes.size(); at += partSize)
            add([&](QByteArray &out) {
                encodeImagePart(out, bytes.sliced(at, std::min(partSize, bytes.size() - at)));
            });
    }
    std::vector<QByteArray> take() { return std::move(m_payloads); }

private:
    std::vector<QByteArray> m_payloads;
    std::size_t m_size = 0;
};

/// Says how entries are applied one after the other, starting from a list of tables as it is saved.
class EntryWriter {
public:
    EntryWriter(const Database &saved, KeptTablesWriter &kept)
        : m_kept(kept)
        , m_savedState(saved.history().state()) {
        for (std::size_t i = 0; i < saved.tableCount(); ++i)
            m_tables.push_back(&saved.table(i));
    }

    /// Throws TooLarge.
    Payloads write(const Step &step, StepKind kind, std::size_t limit) {
        m_out = {};
        m_limit = limit;
        m_out.add([&](QByteArray &out) { encodeStepMark(out, {.kind = kind, .name = step.name, .time = step.time}); });
        const std::size_t count = step.entries.size();
        requireRoom();
        for (std::size_t i = 0; i < count; ++i) {
            std::visit(*this, step.entries[kind == StepKind::Undone ? count - 1 - i : i]);
            requireRoom();
        }
        if ((kind == StepKind::Undone ? step.before : step.after) == m_savedState)
            m_out.add([](QByteArray &out) { encodeMark(out, JournalOperation::AsSaved); });
        requireRoom();
        return std::move(m_out);
    }

    void operator()(const undo::CellChanged &entry) {
        Change change{.kind = ChangeKind::SetNumber, .index = entry.field, .record = entry.record};
        if (const auto *text = std::get_if<QString>(&entry.before)) {
            change.kind = ChangeKind::SetText;
            change.text = *text;
        } else {
            change.number = std::get<double>(entry.before);
        }
        add(change, entry.table);
    }
    void operator()(const undo::RecordsAppended &entry) {
        place(JournalOperation::RecordsDropped, indexOf(entry.table), entry.count);
    }
    void operator()(const undo::RecordsDropped &entry) {
        add({.kind = ChangeKind::AddRecords, .record = entry.count}, entry.table);
    }
    void operator()(const undo::RecordInserted &entry) {
        add({.kind = ChangeKind::RemoveRecord, .record = entry.record}, entry.table);
    }
    void operator()(const undo::RecordRemoved &entry) {
        QByteArray values;
        ByteWriter writer(values);
        for (const CellValue &value : entry.values) {
            const auto *text = std::get_if<QString>(&value);
            writer.number(static_cast<std::uint8_t>(text ? 1 : 0));
            if (text)
                writer.sizedBytes<std::uint32_t>(text->toUtf8());
            else
                writer.number(std::get<double>(value));
        }
        m_out.add([&](QByteArray &out) { encodeRecordBack(out, indexOf(entry.table), entry.record, values); });
    }
    void operator()(const undo::FieldInserted &entry) {
        add({.kind = ChangeKind::RemoveField, .index = entry.index}, entry.table);
    }
    void operator()(const undo::FieldRemoved &entry) {
        parts(m_kept.encode(*entry.field, room()));
        place(JournalOperation::FieldBack, indexOf(entry.table), entry.index);
    }
    void operator()(const undo::FieldRenamed &entry) {
        const QString name = entry.before.text();
        add({.kind = ChangeKind::RenameField, .index = entry.index, .text = name}, entry.table);
    }
    void operator()(const undo::FieldResized &entry) {
        if (!entry.column) {
            add({.kind = ChangeKind::ResizeField, .index = entry.index, .number = static_cast<double>(entry.before)},
                entry.table);
            return;
        }
        parts(m_kept.encode(Field{FieldName(Name::checked(u"Field"_s)), entry.before, *entry.column}, room()));
        place(JournalOperation::TextsAsTheyWere, indexOf(entry.table), entry.index);
    }
    void operator()(const undo::TableInserted &entry) {
        add({.kind = ChangeKind::RemoveTable, .index = entry.index}, nullptr);
        m_tables.erase(m_tables.begin() + static_cast<std::ptrdiff_t>(entry.index));
    }
    void operator()(const undo::TableRemoved &entry) {
        parts(m_kept.encode({entry.table.get()}, room()));
        place(JournalOperation::TableBack, entry.index);
        m_tables.insert(m_tables.begin() + static_cast<std::ptrdiff_t>(entry.index), entry.table.get());
    }
    void operator()(const undo::TableRenamed &entry) {
        add({.kind = ChangeKind::RenameTable, .index = indexOf(entry.table), .text = entry.before.text}, nullptr);
    }
    void operator()(const undo::TableImage &entry) {
        parts(m_kept.encode({entry.before.get()}, room()));
        place(JournalOperation::TableAsItWas, indexOf(entry.table));
    }
    void operator()(const undo::RecordsReordered &entry) {
        if (entry.order.size() * sizeof(std::uint32_t) > room())
            throw TooLarge();
        QByteArray order;
        ByteWriter(order).numbers(std::span(entry.order));
        parts(order);
        place(JournalOperation::RecordsReordered, indexOf(entry.table));
    }
    void operator()(const undo::AllTables &entry) {
        m_tables.clear();
        for (const auto &table : entry.before)
            m_tables.push_back(table.get());
        parts(m_kept.encode(m_tables, room()));
        m_out.add([](QByteArray &out) { encodeMark(out, JournalOperation::TablesAsTheyWere); });
    }

private:
    void requireRoom() const {
        if (m_out.size() > m_limit)
            throw TooLarge();
    }
    std::size_t room() const { return m_limit - std::min(m_limit, m_out.size()); }
    /// Entries about one table come in runs.
    std::size_t indexOf(const Table *table) {
        if (m_last >= m_tables.size() || m_tables[m_last] != table)
            m_last = static_cast<std::size_t>(std::ranges::find(m_tables, table) - m_tables.begin());
        return m_last;
    }
    void add(const Change &change, const Table *table) {
        m_out.add([&](QByteArray &out) { encodeChange(out, change, table ? indexOf(table) : 0); });
    }
    void place(JournalOperation operation, std::size_t table, std::optional<std::size_t> inTable = {}) {
        m_out.add([&](QByteArray &out) { encodePlace(out, operation, table, inTable); });
    }
    void parts(const std::optional<QByteArray> &bytes) {
        if (!bytes)
            throw TooLarge();
        m_out.addParts(*bytes);
    }

    KeptTablesWriter &m_kept;
    std::uint64_t m_savedState;
    std::vector<const Table *> m_tables;
    std::size_t m_last = 0;
    Payloads m_out;
    std::size_t m_limit = 0;
};

/// The payloads of a run of steps, as long as they have room.
class StepsWriter {
public:
    StepsWriter(const Database &database, std::size_t limit)
        : m_database(database)
        , m_kept(database)
        , m_left(limit) {}

    KeptStepRecords write() {
        const History &history = m_database.history();
        KeptStepRecords records;
        const std::size_t undone = history.count() - history.done();
        const std::size_t forThose = m_left;
        m_left /= 4; // the ways back are worth more
        const std::size_t limit = m_left;
        records.undone = run(StepKind::Step, undone, [&](std::size_t n) { return history.done() + n; });
        m_left += forThose - limit;
        records.done = run(StepKind::Undone, history.done(), [&](std::size_t n) { return history.done() - 1 - n; });
        if (records.undone + records.done > 0)
            records.payloads = joined();
        return records;
    }

private:
    /// Gives how many there was room for.
    template<class IndexOf>
    std::size_t run(StepKind kind, std::size_t count, IndexOf indexOf) {
        EntryWriter entries(m_database, m_kept);
        for (std::size_t n = 0; n < count; ++n) {
            try {
                Payloads written = entries.write(m_database.history().step(indexOf(n)), kind, m_left);
                m_left -= written.size();
                m_kept.keep();
                m_steps.push_back(written.take());
            } catch (const TooLarge &) {
                m_kept.giveUp();
                return n;
            }
        }
        return count;
    }

    std::vector<QByteArray> joined() {
        std::vector<QByteArray> payloads(1);
        encodeMark(payloads.back(), JournalOperation::KeptBegin);
        for (std::vector<QByteArray> &step : m_steps)
            for (QByteArray &payload : step) {
                if (payloads.back().size() >= mostPayload)
                    payloads.emplace_back();
                payloads.back().append(std::exchange(payload, {}));
            }
        encodeMark(payloads.back(), JournalOperation::KeptEnd);
        return payloads;
    }

    const Database &m_database;
    KeptTablesWriter m_kept;
    std::size_t m_left;
    std::vector<std::vector<QByteArray>> m_steps;
};

} // namespace

KeptStepRecords encodeKeptSteps(const Database &database, std::size_t limit) {
    return StepsWriter(database, limit).write();
}

} // namespace qir
