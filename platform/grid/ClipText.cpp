#include "platform/grid/ClipText.h"

namespace qir {

namespace {

constexpr QChar cellSeparator = u'\t';
constexpr QChar rowSeparator = u'\r';

/// Splits off what stands before the first separator. Tells whether there was one.
bool takeUntil(QStringView &rest, QChar separator, QStringView &taken) {
    const qsizetype end = rest.indexOf(separator);
    if (end < 0) {
        taken = rest;
        return false;
    }
    taken = rest.first(end);
    rest = rest.sliced(end + 1);
    return true;
}

} // namespace

QString clipText(const GridRange &block, const std::function<void(int, int, QString &)> &read) {
    QString text;
    QString cell;
    for (int row = block.firstRow; row <= block.lastRow; ++row) {
        if (row > block.firstRow)
            text += rowSeparator;
        for (int column = block.firstColumn; column <= block.lastColumn; ++column) {
            if (column > block.firstColumn)
                text += cellSeparator;
            read(row, column, cell);
            text += cell;
        }
    }
    return text;
}

void layClipText(QStringView text, const GridRange &block, const std::function<void(int, int, QStringView)> &write) {
    bool moreRows = true;
    for (int row = block.firstRow; moreRows && row <= block.lastRow; ++row) {
        QStringView line;
        moreRows = takeUntil(text, rowSeparator, line);
        bool moreCells = true;
        for (int column = block.firstColumn; moreCells && column <= block.lastColumn; ++column) {
            QStringView value;
            moreCells = takeUntil(line, cellSeparator, value);
            write(row, column, value);
        }
    }
}

} // namespace qir
