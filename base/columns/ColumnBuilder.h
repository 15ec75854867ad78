#pragma once

#include "base/columns/ColumnBlock.h"

#include <QStringView>

namespace qir {

/// Makes a block value by value.
class ColumnBuilder {
public:
    /// `count` values are expected.
    explicit ColumnBuilder(ColumnType type, qsizetype count = 0);

    /// The nearest number that the type holds. Of a column of numbers.
    void add(double number);
    /// Lone surrogates as U+FFFD. Of a column of texts. Throws std::length_error once the block has no room for it:
    /// take() what there is and go on.
    void add(QStringView text);
    /// The same for bytes, which stand in the block as they are.
    void addUtf8(QByteArrayView bytes);

    /// What was added so far, and begins anew.
    ColumnBlock take();

private:
    ColumnType m_type;
    QByteArray m_values;
    QByteArray m_bytes;
};

} // namespace qir
