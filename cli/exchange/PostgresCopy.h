#pragma once

#include "cli/FileError.h"
#include "cli/tables/Portions.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace qir {

/// Whether the number of its record stands in front of each.
enum class CopyNumbers { None, InFront };

/// Records in the text form of COPY: a line each, values between tabs.
void appendCopyRecords(QByteArray &out, const Portion &portion, int from, int to, CopyNumbers numbers);

/// The next value of a line in that form, whose first byte is at `at`; nothing for a null. It may stand in `storage`.
std::optional<QByteArrayView> copyValue(QByteArrayView line, qsizetype &at, QByteArray &storage);

/// Lets an error that has no file tell that it is about the server; its connection string may have a password.
template<class Work>
void namedPostgres(Work work) {
    try {
        work();
    } catch (const FileError &) {
        throw;
    } catch (const std::exception &error) {
        throw FileError(QStringLiteral("PostgreSQL"), QString::fromUtf8(error.what()));
    }
}

} // namespace qir
