#pragma once

#include "cli/exchange/TableIntake.h"

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

namespace qir {

/// A line of JSON with an array of numbers and strings. Numbers are kept as they are written: a library would make -0 a
/// 0 of them.
class JsonRecord {
public:
    /// Throws std::runtime_error for anything else. The line must stay as long as the record is used.
    void read(QByteArrayView line);

    std::size_t size() const { return m_values.size(); }
    /// Hands a value over; a field of text takes a string, any other one a number, `true` or `false`.
    void give(std::size_t index, FieldType type, RecordIntake &records) const;

private:
    struct Value {
        qsizetype start;
        qsizetype length;
        bool isString;
        bool isOwn; ///< Had escapes in it, and stands in m_own.
    };

    void readString();
    void readEscape();
    void readNumber();
    void skipBlanks();
    bool skip(char byte);
    char32_t readCode();
    QByteArrayView bytesOf(const Value &value) const;

    QByteArrayView m_line;
    qsizetype m_at = 0;
    QByteArray m_own;
    std::vector<Value> m_values;
};

} // namespace qir
