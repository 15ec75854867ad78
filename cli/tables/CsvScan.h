#pragma once

#include <QByteArrayView>
#include <QString>

namespace qir {

/// A first look at the bytes of a CSV file, for what its parser cannot tell a person.
struct CsvScan {
    /// The quote that is out of place, with its line and column; "" for none. A value is quoted where a quote is its
    /// first character; any other quote in an unquoted value stands for itself.
    QString problem;
    /// What the header line is separated by instead where it has no delimiter, in words; "" where nothing seems wrong.
    QString otherSeparator;

    static CsvScan of(QByteArrayView bytes, char delimiter);
};

} // namespace qir
