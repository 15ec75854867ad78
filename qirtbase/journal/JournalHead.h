#pragma once

#include "base/state/StateFolder.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/container/FileHeader.h"
#include "qirtbase/journal/JournalLayout.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <string>

/// The start of a journal's file: whose changes it holds, and how it is opened.
///
///     head     = "QIRJRNL4" | u32 length of the head | u8 sealed | u8[3] 0 | nonce [16]
///                | u32 passes | u32 memory KiB | u32 lanes | u32 0 | salt [16] | identity | digest [32]
///     identity = file id [16] | save id [16] | u64 device | u64 inode | u16 path length | path
///
/// Numbers are little-endian. The digest is BLAKE2b-256 over the head before it. Sealed: zeros fill the identity up to
/// a multiple of 512 bytes, and it is one message of XChaCha20-Poly1305 (16 bytes more, nonce zero) with the key
/// BLAKE2b-256(key: master; "journal head" | what stands before the identity), which the nonce makes a key of its own.
/// The numbers and the salt of the key derivation stand there only where the file itself does not tell them: when a
/// password was set that was not saved yet. Else they are zeros, so that nothing in a journal leads to its file.
///
/// The name of a journal begins with the file id in hexadecimal digits, that of a protected file's with those of
/// BLAKE2b-128(key: master; "journal name" | file id).
///
/// The versions before this one are still read. The third has this head, and no kept steps in its records; the second
/// no marks of steps either; the first has another head:
///
///     head     = "QIRJRNL1" | u32 length of the head | u8 sealed | u8[3] 0 | file id [16] | save id [16] | nonce [16]
///                | u32 passes | u32 memory KiB | u32 lanes | u32 0 | salt [16] | u16 path length | path | digest [32]
namespace qir {

struct JournalHead {
    FilePlace place; ///< Of the file when the journal was begun.
    FileIdentifier fileId{};
    FileIdentifier base{}; ///< The save id of the version that the changes start from.
    std::array<unsigned char, 16> nonce{};
    bool sealed = false;
    /// The file on disk is protected with the journal's key: tells how that is derived, so that the head need not.
    bool keyInFile = false;
    KdfParameters kdf; ///< Meaningful only when sealed and not keyInFile.
    int version = 4;
    bool isIdentified = true; ///< False for a sealed head that was not opened: place and ids are not known yet.
};

/// Why a journal cannot be gone on with.
struct JournalRefusal {
    enum class Kind {
        Gone,        ///< It was ended meanwhile, or its writer has not begun.
        Held,        ///< Its editor lives.
        Unreadable,  ///< The system does not give it now.
        NotTrusted,  ///< Somebody else can have written it.
        NotAJournal, ///< It does not begin like one.
        Damaged,     ///< Its head is.
        Newer,       ///< A newer version of the program wrote it.
    };
    Kind kind;
    QString reason; ///< In words that follow the journal's name.
};

template<class T>
using JournalResult = tl::expected<T, JournalRefusal>;

/// False where the path is too long to be written.
bool fitsJournalHead(const JournalHead &head);
/// In the newest version. `master` is the key of a sealed one.
QByteArray encodeJournalHead(const JournalHead &head, const SecretBytes &master);
/// Reads the head at the start of `bytes`, which hold as much of the file as there is up to headSizeMax. `whole` are
/// the head's bytes then.
JournalResult<JournalHead> decodeJournalHead(QByteArrayView bytes, QByteArrayView &whole);
/// Opens the identity of a sealed head whose bytes these are. False with the wrong key.
bool identifyJournal(JournalHead &head, QByteArrayView whole, const SecretBytes &master);

/// How the names of a file's journals begin: of one that is protected with these keys, of an open one.
std::string journalTag(const FileIdentifier &fileId, const ContainerKeys &keysOfFile);
/// The tag in a journal's name, also of one that was ended or is not finished; "" for any other name.
std::string journalTagOf(const std::string &name);
/// Whether it is the name of a journal that was not ended.
bool isJournalName(const std::string &name);

} // namespace qir
