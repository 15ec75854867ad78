#pragma once

#include "qirtbase/container/FileHeader.h"
#include "qirtbase/model/Change.h"
#include "qirtbase/model/RecordOrder.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// What the records of a journal say. A record's payload is a run of operations, each a u8 kind and what the kind
/// takes, little-endian:
///
///     1 add table       text                     20 group begins     -
///     2 rename table    u32 table, text          21 group ends       -
///     3 remove table    u32 table                22 group is undone  -
///     4 add field       u32 table, u8 type, f64 size, text
///     5 rename field    u32 table, u32 field, text
///     6 remove field    u32 table, u32 field     23 group restarts   - (nothing of it so far counts)
///     7 resize field    u32 table, u32 field, f64 size
///     8 add record      u32 table                24 image part       u32 length, bytes
///     9 remove record   u32 table, u32 record    25 table image      u32 table (the parts before it are the table)
///    10 set number      u32 table, u32 field, u32 record, f64
///    11 set text        u32 table, u32 field, u32 record, text
///    12 set block       u32 table, u32 field, u32 first record, u32 length, block
///    13 add records     u32 table, u32 count     26 body image       - (the parts before it are the body)
///    30 being saved as  save id [16]             31 ended            -
///    32 step            u8 joins, i64 time, text    33 step undone   -
///    35 undone          i64 time, text              34 step redone   -
///    40 kept steps begin   -                        41 kept steps end   -
///    50 as saved           -   (behind a group: the state that it leads to is the one that is saved)
///
/// In kept steps only, besides 2 to 11, 13, 24, 32, 35 and 50:
///
///    42 records dropped    u32 table, u32 count     46 table is back     u32 table (the parts before it are it)
///    43 record is back     u32 table, u32 record, u32 length, values
///    44 field is back      u32 table, u32 field     47 table as it was   u32 table (the parts before it are it)
///    45 texts as they were u32 table, u32 field     48 tables as they were   - (the parts before it are they)
///       (the parts before 44 and 45 are a table of that field alone)
///
/// There, and as all that a group has besides its step mark:
///
///    49 records reordered  u32 table (the parts before it: for each record the u32 where it stood)
///
///     text = u32 length | UTF-8
///     block = u8 type | u32 count | values as in a body's column
///
/// Tables, fields and records count from 0. A change outside any group is a group of its own.
///
/// An outermost group is a step of the history. Right after its beginning or restart may stand what kind of one: 32 a
/// step with a name (joins: 1 where it is more of the step before it); 35 changes that undo a step of before this
/// journal. Steps of this journal need no changes for that: 33 undoes the last one, 34 makes the one that was undone
/// last again; both stand outside groups. `time` is in milliseconds since 1970.
///
/// Kept steps (KeptSteps.h) are those of before the save that this journal starts from. Where there are any they are
/// the first that stands in it.
namespace qir {

enum class JournalOperation : std::uint8_t {
    // 1 to 13: ChangeKind
    GroupBegin = 20,
    GroupEnd = 21,
    GroupUndo = 22,
    GroupRestart = 23,
    ImagePart = 24,
    TableImage = 25,
    BodyImage = 26,
    SavingAs = 30,
    Ended = 31,
    Step = 32,
    StepUndone = 33,
    StepRedone = 34,
    Undone = 35,
    KeptBegin = 40,
    KeptEnd = 41,
    RecordsDropped = 42,
    RecordBack = 43,
    FieldBack = 44,
    TextsAsTheyWere = 45,
    TableBack = 46,
    TableAsItWas = 47,
    TablesAsTheyWere = 48,
    RecordsReordered = 49,
    AsSaved = 50,
};

void encodeChange(QByteArray &out, const Change &change, std::size_t table);
void encodeMark(QByteArray &out, JournalOperation operation);
void encodeImagePart(QByteArray &out, QByteArrayView part);
void encodeTableImage(QByteArray &out, std::size_t table);
void encodeStepMark(QByteArray &out, const StepMark &mark);
void encodeSavingAs(QByteArray &out, const FileIdentifier &saveId);
/// An operation that names a table, and besides it, where it takes one, a field, a record or a number of records.
void encodePlace(QByteArray &out, JournalOperation operation, std::size_t table,
                 std::optional<std::size_t> inTable = {});
void encodeRecordBack(QByteArray &out, std::size_t table, std::size_t record, QByteArrayView values);

/// One operation as it was read; what it points at lives as long as the payload.
struct ReadOperation {
    std::uint8_t kind = 0;
    std::uint32_t table = 0;
    std::uint32_t field = 0;
    std::uint32_t record = 0;
    int type = 0;
    double number = 0;
    std::int64_t time = 0;
    bool joins = false;
    QByteArrayView bytes; ///< A text in UTF-8, a block, an image part or a save id.

    bool is(JournalOperation operation) const { return kind == static_cast<std::uint8_t>(operation); }
};

/// Takes the next operation off the front; nothing, and nothing taken, when the bytes are none.
std::optional<ReadOperation> takeOperation(QByteArrayView &payload);

/// Whether it says what kind of step follows.
bool isStepMark(const ReadOperation &operation);
/// Whether it is one of the changes of ChangeKind.
bool isChange(const ReadOperation &operation);
/// What a step mark tells; nothing where its name is none.
std::optional<StepMark> stepMarkOf(const ReadOperation &operation);

/// The order that parts are, of a table of so many records; nothing where they are none.
std::optional<RecordOrder> orderOf(QByteArrayView parts, std::size_t records);

} // namespace qir
