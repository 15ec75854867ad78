#pragma once

#include "qirtbase/container/FileHeader.h"
#include "qirtbase/model/Change.h"
#include "qirtbase/model/Database.h"

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
///
///     text = u32 length | UTF-8
///     block = u8 type | u32 count | values as in a body's column
///
/// Tables, fields and records count from 0. A change outside any group is a group of its own.
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
};

void encodeChange(QByteArray &out, const Change &change, std::size_t table);
void encodeMark(QByteArray &out, JournalOperation operation);
void encodeImagePart(QByteArray &out, QByteArrayView part);
void encodeTableImage(QByteArray &out, std::size_t table);
void encodeSavingAs(QByteArray &out, const FileIdentifier &saveId);

/// One operation as it was read; what it points at lives as long as the payload.
struct ReadOperation {
    std::uint8_t kind = 0;
    std::uint32_t table = 0;
    std::uint32_t field = 0;
    std::uint32_t record = 0;
    int type = 0;
    double number = 0;
    QByteArrayView bytes; ///< A text in UTF-8, a block, an image part or a save id.

    bool is(JournalOperation operation) const { return kind == std::uint8_t(operation); }
};

/// Takes the next operation off the front; nothing, and nothing taken, when the bytes are none.
std::optional<ReadOperation> takeOperation(QByteArrayView &payload);

/// Makes a change again. False, with nothing changed, where the database does not take it. Throws std::bad_alloc.
bool applyChange(const ReadOperation &operation, Database &database);

/// Makes again what a journal tells, whole group by whole group. Tells nobody of it: the database must have no
/// listener.
class JournalReplay {
public:
    explicit JournalReplay(Database &database)
        : m_database(database) {}

    /// The next record. False where it makes no sense or cannot be made again: nothing of its group has been done then,
    /// and the replay ends here. Throws std::bad_alloc: nothing more can be done with the database then.
    bool feed(QByteArrayView payload);
    /// True outside groups: all that was fed counts.
    bool isAtBoundary() const { return m_depth == 0; }
    /// How many outermost groups were made again.
    int groups() const { return m_groups; }

private:
    bool take(const ReadOperation &operation, QByteArrayView bytes);
    bool finishGroup();
    bool applyChanges();
    bool makeChanges();
    bool applyImages();

    Database &m_database;
    int m_depth = 0;
    QByteArray m_group; // the operations of the outermost group so far
    int m_groups = 0;
};

} // namespace qir
