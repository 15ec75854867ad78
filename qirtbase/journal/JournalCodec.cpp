#include "qirtbase/journal/JournalCodec.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/journal/JournalBlock.h"

#include <cmath>
#include <utility>

namespace qir {

namespace {

/// Writes operations.
class OperationWriter {
public:
    OperationWriter(QByteArray &out, std::uint8_t kind)
        : m_out(out) {
        number(kind);
    }
    OperationWriter(QByteArray &out, JournalOperation operation)
        : OperationWriter(out, static_cast<std::uint8_t>(operation)) {}

    template<class Number>
    OperationWriter &number(Number value) {
        m_out.number(value);
        return *this;
    }
    OperationWriter &index(std::size_t index) { return number(static_cast<std::uint32_t>(index)); }
    void bytes(QByteArrayView bytes) { m_out.sizedBytes<std::uint32_t>(bytes); }
    void saveId(const FileIdentifier &id) { m_out.array(id); }

private:
    ByteWriter m_out;
};

bool takeChange(ByteReader &reader, ReadOperation &operation) {
    switch (static_cast<ChangeKind>(operation.kind)) {
    case ChangeKind::AddTable:
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case ChangeKind::RenameTable:
        operation.table = reader.number<std::uint32_t>();
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case ChangeKind::RemoveTable:
    case ChangeKind::AddRecord:
        operation.table = reader.number<std::uint32_t>();
        return true;
    case ChangeKind::AddField:
        operation.table = reader.number<std::uint32_t>();
        operation.type = reader.number<std::uint8_t>();
        operation.number = reader.number<double>();
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case ChangeKind::RenameField:
        operation.table = reader.number<std::uint32_t>();
        operation.field = reader.number<std::uint32_t>();
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case ChangeKind::RemoveField:
        operation.table = reader.number<std::uint32_t>();
        operation.field = reader.number<std::uint32_t>();
        return true;
    case ChangeKind::ResizeField:
        operation.table = reader.number<std::uint32_t>();
        operation.field = reader.number<std::uint32_t>();
        operation.number = reader.number<double>();
        return true;
    case ChangeKind::RemoveRecord:
        operation.table = reader.number<std::uint32_t>();
        operation.record = reader.number<std::uint32_t>();
        return true;
    case ChangeKind::SetNumber:
    case ChangeKind::SetText:
        operation.table = reader.number<std::uint32_t>();
        operation.field = reader.number<std::uint32_t>();
        operation.record = reader.number<std::uint32_t>();
        if (static_cast<ChangeKind>(operation.kind) == ChangeKind::SetNumber)
            operation.number = reader.number<double>();
        else
            operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case ChangeKind::SetBlock:
        operation.table = reader.number<std::uint32_t>();
        operation.field = reader.number<std::uint32_t>();
        operation.record = reader.number<std::uint32_t>();
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case ChangeKind::AddRecords:
        operation.table = reader.number<std::uint32_t>();
        operation.record = reader.number<std::uint32_t>();
        return true;
    }
    return false;
}

bool takeMark(ByteReader &reader, ReadOperation &operation) {
    switch (static_cast<JournalOperation>(operation.kind)) {
    case JournalOperation::GroupBegin:
    case JournalOperation::GroupEnd:
    case JournalOperation::GroupUndo:
    case JournalOperation::GroupRestart:
    case JournalOperation::BodyImage:
    case JournalOperation::Ended:
    case JournalOperation::KeptBegin:
    case JournalOperation::KeptEnd:
    case JournalOperation::TablesAsTheyWere:
    case JournalOperation::AsSaved:
        return true;
    case JournalOperation::ImagePart:
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case JournalOperation::TableImage:
    case JournalOperation::TableBack:
    case JournalOperation::TableAsItWas:
    case JournalOperation::RecordsReordered:
        operation.table = reader.number<std::uint32_t>();
        return true;
    case JournalOperation::FieldBack:
    case JournalOperation::TextsAsTheyWere:
        operation.table = reader.number<std::uint32_t>();
        operation.field = reader.number<std::uint32_t>();
        return true;
    case JournalOperation::RecordsDropped:
    case JournalOperation::RecordBack:
        operation.table = reader.number<std::uint32_t>();
        operation.record = reader.number<std::uint32_t>();
        if (operation.is(JournalOperation::RecordBack))
            operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    case JournalOperation::SavingAs:
        operation.bytes = reader.bytes(layout::idSize);
        return true;
    case JournalOperation::StepUndone:
    case JournalOperation::StepRedone:
        return true;
    case JournalOperation::Step:
        operation.joins = reader.number<std::uint8_t>() != 0;
        [[fallthrough]];
    case JournalOperation::Undone:
        operation.time = reader.number<std::int64_t>();
        operation.bytes = reader.sizedBytes<std::uint32_t>();
        return true;
    }
    return false;
}

} // namespace

// ----------------------------------------------------------------------------------------------------------- encoding

void encodeChange(QByteArray &out, const Change &change, std::size_t table) {
    OperationWriter operation(out, static_cast<std::uint8_t>(change.kind));
    switch (change.kind) {
    case ChangeKind::AddTable:
        operation.bytes(change.text.toUtf8());
        break;
    case ChangeKind::RenameTable:
        operation.index(change.index).bytes(change.text.toUtf8());
        break;
    case ChangeKind::RemoveTable:
        operation.index(change.index);
        break;
    case ChangeKind::AddField:
        operation.index(table)
            .number(static_cast<std::uint8_t>(change.type))
            .number(change.number)
            .bytes(change.text.toUtf8());
        break;
    case ChangeKind::RenameField:
        operation.index(table).index(change.index).bytes(change.text.toUtf8());
        break;
    case ChangeKind::RemoveField:
        operation.index(table).index(change.index);
        break;
    case ChangeKind::ResizeField:
        operation.index(table).index(change.index).number(change.number);
        break;
    case ChangeKind::AddRecord:
        operation.index(table);
        break;
    case ChangeKind::RemoveRecord:
        operation.index(table).index(change.record);
        break;
    case ChangeKind::SetNumber:
        operation.index(table).index(change.index).index(change.record).number(change.number);
        break;
    case ChangeKind::SetText:
        operation.index(table).index(change.index).index(change.record).bytes(change.text.toUtf8());
        break;
    case ChangeKind::SetBlock:
        operation.index(table).index(change.index).index(change.record).bytes(encodeBlock(*change.block));
        break;
    case ChangeKind::AddRecords:
        operation.index(table).index(change.record);
        break;
    }
}

void encodeMark(QByteArray &out, JournalOperation operation) {
    OperationWriter(out, operation);
}

void encodeImagePart(QByteArray &out, QByteArrayView part) {
    OperationWriter(out, JournalOperation::ImagePart).bytes(part);
}

void encodeTableImage(QByteArray &out, std::size_t table) {
    OperationWriter(out, JournalOperation::TableImage).index(table);
}

void encodeStepMark(QByteArray &out, const StepMark &mark) {
    const bool isStep = mark.kind != StepKind::Undone;
    OperationWriter operation(out, isStep ? JournalOperation::Step : JournalOperation::Undone);
    if (isStep)
        operation.number(static_cast<std::uint8_t>(mark.kind == StepKind::Joined ? 1 : 0));
    operation.number(mark.time).bytes(mark.name.toUtf8());
}

void encodeSavingAs(QByteArray &out, const FileIdentifier &saveId) {
    OperationWriter(out, JournalOperation::SavingAs).saveId(saveId);
}

void encodePlace(QByteArray &out, JournalOperation operation, std::size_t table, std::optional<std::size_t> inTable) {
    OperationWriter writer(out, operation);
    writer.index(table);
    if (inTable)
        writer.index(*inTable);
}

void encodeRecordBack(QByteArray &out, std::size_t table, std::size_t record, QByteArrayView values) {
    OperationWriter(out, JournalOperation::RecordBack).index(table).index(record).bytes(values);
}

// ------------------------------------------------------------------------------------------------------------ reading

bool isStepMark(const ReadOperation &operation) {
    return operation.is(JournalOperation::Step) || operation.is(JournalOperation::Undone);
}

bool isChange(const ReadOperation &operation) {
    return operation.kind < static_cast<std::uint8_t>(JournalOperation::GroupBegin);
}

std::optional<StepMark> stepMarkOf(const ReadOperation &operation) {
    StepMark mark;
    if (!readUtf8(operation.bytes, mark.name))
        return std::nullopt;
    mark.time = operation.time;
    if (operation.is(JournalOperation::Step))
        mark.kind = operation.joins ? StepKind::Joined : StepKind::Step;
    else
        mark.kind = StepKind::Undone;
    return mark;
}

std::optional<ReadOperation> takeOperation(QByteArrayView &payload) {
    ByteReader reader(payload);
    ReadOperation operation;
    operation.kind = reader.number<std::uint8_t>();
    const bool isKnown = isChange(operation) ? takeChange(reader, operation) : takeMark(reader, operation);
    if (!isKnown || !reader.isComplete() || !std::isfinite(operation.number))
        return std::nullopt;
    payload = reader.rest();
    return operation;
}

std::optional<RecordOrder> orderOf(QByteArrayView parts, std::size_t records) {
    if (static_cast<std::size_t>(parts.size()) != records * sizeof(std::uint32_t))
        return std::nullopt;
    RecordOrder order(records);
    ByteReader(parts).numbers(std::span(order));
    return isPermutation(order, records) ? std::optional(std::move(order)) : std::nullopt;
}

} // namespace qir
