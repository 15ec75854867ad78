#pragma once

#include "qirtbase/container/KeyDerivation.h"
#include "qirtbase/container/SecretKey.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace qir::fuzz {

/// What the first byte of an input has done to the file behind it. Without these hardly an input would get past the
/// first checksum.
enum Mending : unsigned char {
    MendHeader = 1,     ///< The sums at the header's end are made right.
    MendBodyLength = 2, ///< The header's body length is made the one that the file's size stands for.
    MendChunks = 4,     ///< What stands in place of each chunk is sealed, or gets its checksum.
    OddMessageTags = 8, ///< Sealed chunks get the message tag that their last byte says, not the right one.
};

/// The file that an input stands for. `master` is the key of a protected file, null where files are to be open.
QByteArray fileOfInput(QByteArrayView input, const SecretBytes *master);

/// Reads a file as a load does. Nothing where it is refused; what is accepted must say the same when it is written
/// again. `deriveKey` gives the key of protected files.
void readAndWriteAgain(QByteArrayView file, const QString &password, const KeyDeriver &deriveKey);

} // namespace qir::fuzz
