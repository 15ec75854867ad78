#include "cli/exchange/PostgresCopy.h"

#include "cli/tables/CellText.h"

#include <algorithm>

namespace qir {

namespace {

constexpr QByteArrayView escapes = "\\\t\n\r"; // each is written as a backslash and
constexpr QByteArrayView letters = "\\tnr";

void putEscaped(TextAppender &writer, QByteArrayView text) {
    const auto isPlain = [](char byte) { return !escapes.contains(byte); };
    if (std::ranges::all_of(text, isPlain))
        return writer.put(text);
    for (const char byte : text) {
        if (const qsizetype escape = escapes.indexOf(byte); escape >= 0) {
            writer.put('\\');
            writer.put(letters[escape]);
        } else {
            writer.put(byte);
        }
    }
}

} // namespace

void appendCopyRecords(QByteArray &out, const Portion &portion, int from, int to, CopyNumbers numbers) {
    TextAppender writer(out);
    QByteArray storage;
    for (int record = from; record < to; ++record) {
        bool isFirst = true;
        if (numbers == CopyNumbers::InFront) {
            writer.put(QByteArray::number(portion.first + record));
            isFirst = false;
        }
        for (const ColumnBlock &column : portion.columns) {
            if (!isFirst)
                writer.put('\t');
            isFirst = false;
            if (column.isText())
                putEscaped(writer, rightText(column, record, storage));
            else
                writer.number(column, record);
        }
        writer.put('\n');
    }
}

std::optional<QByteArrayView> copyValue(QByteArrayView line, qsizetype &at, QByteArray &storage) {
    const qsizetype begin = at;
    bool isEscaped = false;
    while (at < line.size() && line[at] != '\t' && line[at] != '\n') {
        isEscaped = isEscaped || line[at] == '\\';
        at += line[at] == '\\' ? 2 : 1;
    }
    const QByteArrayView written = line.sliced(begin, at - begin);
    ++at; // over the tab or the line end
    if (!isEscaped)
        return written;
    if (written == "\\N")
        return std::nullopt;
    constexpr QByteArrayView otherLetters = "bfv";
    constexpr QByteArrayView otherEscapes = "\b\f\v";
    storage.resize(0);
    for (qsizetype i = 0; i < written.size(); ++i) {
        if (written[i] != '\\' || i + 1 == written.size()) {
            storage += written[i];
            continue;
        }
        const char letter = written[++i];
        const qsizetype usual = letters.indexOf(letter);
        const qsizetype other = otherLetters.indexOf(letter);
        storage += usual >= 0 ? escapes[usual] : other >= 0 ? otherEscapes[other] : letter;
    }
    return storage;
}

} // namespace qir
