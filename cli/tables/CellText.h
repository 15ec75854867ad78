#pragma once

#include "base/columns/ColumnBlock.h"

#include <QByteArray>
#include <QByteArrayView>

#include <algorithm>

namespace qir {

/// Writes texts behind what stands in an array, in memory that grows as it must and is given back when the writer dies;
/// nobody else may touch the array before.
class TextAppender {
public:
    explicit TextAppender(QByteArray &out);
    ~TextAppender();
    TextAppender(const TextAppender &) = delete;
    TextAppender &operator=(const TextAppender &) = delete;

    void put(char byte) { *room(1)++ = byte; }
    void put(QByteArrayView bytes) {
        char *&at = room(bytes.size());
        at = std::copy(bytes.begin(), bytes.end(), at);
    }
    /// The text of a value of a column of numbers, the shortest that reads back.
    void number(const ColumnBlock &column, qsizetype index);

private:
    /// Where so many bytes may be written; whoever does moves it behind them.
    char *&room(qsizetype count) {
        if (m_end - m_at < count)
            grow(count);
        return m_at;
    }
    void grow(qsizetype count);

    QByteArray &m_out;
    char *m_at;
    char *m_end;
};

/// The UTF-8 of a text of a column, made right in `storage` where the component gave what is none.
QByteArrayView rightText(const ColumnBlock &column, qsizetype index, QByteArray &storage);

} // namespace qir
