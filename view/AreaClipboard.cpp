#include "view/AreaClipboard.h"

#include "app/shared/utility.h"

#include "pane/OnlyDifferencesShown.h"
#include "pane/StoredMarks.h"
#include "platform/controls/FocusedText.h"
#include "platform/dialogs/Clipboard.h"
#include "platform/grid/ClipText.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"
#include "view/CellBlock.h"
#include "view/GridSave.h"
#include "view/TableLoader.h"

#include <QMimeData>

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int lineFeed = 10;

/// What a copied block offers. The HTML form, rarely asked for and the longest, is made when it is.
class CopiedBlock : public QMimeData {
public:
    CopiedBlock(const QString &text, const QByteArray &cells) {
        setText(text);
        setData(QLatin1StringView(cellBlockFormat), cells);
    }

    QStringList formats() const override { return QMimeData::formats() << htmlFormat; }
    bool hasFormat(const QString &format) const override {
        return format == htmlFormat || QMimeData::hasFormat(format);
    }

protected:
    QVariant retrieveData(const QString &format, QMetaType type) const override {
        if (format != htmlFormat)
            return QMimeData::retrieveData(format, type);
        const auto cells = decodeCellBlock(data(QLatin1StringView(cellBlockFormat)));
        return cells ? cellBlockHtml(*cells) : QString();
    }

private:
    const QString htmlFormat = u"text/html"_s;
};

constexpr qsizetype mostShown = 40; // of a value, in what is told of it

/// Of a value that is stored otherwise.
QString placeWords(const Grid &grid, int row, int column, QStringView value) {
    return AreaClipboard::tr("record %1, %2, \"%3\"")
        .arg(grid.RowData(row))
        .arg(grid.TextMatrix(0, column), value.left(mostShown).toString());
}

QString otherwiseWords(std::int64_t count, const QString &first) {
    return count == 1 ? AreaClipboard::tr("1 is stored otherwise (%1)").arg(first)
                      : AreaClipboard::tr("%1 are stored otherwise (first: %2)").arg(count).arg(first);
}

enum class Headers { Without, With };

/// The selected record cells of a grid that are shown, under the headers of their columns, as one block.
CellTexts selectedBlock(const Grid &grid, Headers headers) {
    const GridRange cells = recordCells(grid);
    std::vector<int> columns;
    for (int column = grid.nextShownColumn(cells.firstColumn); column > 0 && column <= cells.lastColumn;
         column = grid.nextShownColumn(column + 1))
        columns.push_back(column);
    CellTexts block(static_cast<int>(columns.size()), 0);
    const auto append = [&](int row) {
        QStringList record(1);
        for (const int column : columns)
            record.append(grid.TextMatrix(row, column));
        block.appendRecord(record);
    };
    if (headers == Headers::With)
        append(0);
    for (int row = grid.nextShownRow(cells.firstRow); row > 0 && row <= cells.lastRow; row = grid.nextShownRow(row + 1))
        append(row);
    return block;
}

QByteArray encodedSelection(const Grid &grid) {
    if (grid.showsAll())
        return encodeCellBlock(grid.texts(), grid.selection().range());
    const CellTexts block = selectedBlock(grid, Headers::Without);
    return encodeCellBlock(block, {1, 1, block.records(), block.fields()});
}

} // namespace

bool hasFields(const EditorContext &editor, int pane) {
    return pane >= 0 && editor.DtbAperto(pane) && editor.pane(pane).realTableSelected() &&
           editor.Tabella(pane).ColData(1) >= 1;
}

bool showsFields(const EditorContext &editor, int pane) {
    return hasFields(editor, pane) && editor.Tabella(pane).Visible();
}

GridRange recordCells(const Grid &grid) {
    GridRange cells = grid.selection().range();
    cells.firstRow = std::max(cells.firstRow, 1);
    cells.firstColumn = std::max(cells.firstColumn, 1);
    return cells;
}

QString gridClip(const QString &clipboardText) {
    QString text = clipboardText;
    if (text.contains(u'\r'))
        text = TogliCarattere(text, lineFeed);
    else
        text.replace(u'\n', u'\r');
    if (text.endsWith(u'\r'))
        text.chop(1);
    return text;
}

std::optional<ClipboardBlock> ClipboardBlock::taken() {
    const QString text = clipboard::text();
    if (text.isEmpty())
        return std::nullopt;
    ClipboardBlock block;
    block.m_cells = decodeCellBlock(clipboard::data(QLatin1StringView(cellBlockFormat)));
    if (block.m_cells) {
        block.m_records = block.m_cells->records();
        block.m_fields = block.m_cells->fields();
        return block;
    }
    block.m_text = gridClip(text);
    block.forEachValue([&block](int row, int column, QStringView) {
        block.m_records = std::max(block.m_records, row + 1);
        block.m_fields = std::max(block.m_fields, column + 1);
    });
    return block;
}

void ClipboardBlock::forEachValue(const std::function<void(int row, int column, QStringView value)> &value) const {
    if (!m_cells) {
        constexpr int last = std::numeric_limits<int>::max() - 1;
        layClipText(m_text, {0, 0, last, last}, value);
        return;
    }
    for (int row = 1; row <= m_cells->records(); ++row) {
        for (int column = 1; column <= m_cells->fields(); ++column)
            value(row - 1, column - 1, m_cells->at(column, row));
    }
}

void ClipboardBlock::layInto(Grid &grid) const {
    if (m_cells)
        grid.setClip(*m_cells);
    else
        grid.setClip(m_text);
}

void AreaClipboard::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::CopyMenu, tr("&Copy"), [this] { CopyMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_C), .needs = Needs::Database});
    commands.add(Command::CopyWithHeadersMenu, tr("Cop&y with Headers"),
                 [this] { copyWithHeaders(m_editor.IndexAttivo()); }, {.needs = Needs::Database});
    commands.add(Command::PasteMenu, tr("&Paste"), [this] { PasteMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_V), .needs = Needs::Database});
    // The grid's own keys: a menu tells them, and leaves them to it and to every text box.
    for (const Command command : {Command::CopyMenu, Command::PasteMenu})
        m_editor.controls().action(command).setShortcutContext(Qt::WidgetShortcut);
}

void AreaClipboard::CopyMenu_Click() {
    if (const QLineEdit *text = focusedText())
        text->copy();
    else
        COPIA_AreaTabella(m_editor.IndexAttivo());
}

void AreaClipboard::PasteMenu_Click() {
    if (QLineEdit *text = focusedText())
        text->paste();
    else
        INCOLLA_AreaTabella(m_editor.IndexAttivo());
}

void AreaClipboard::COPIA_AreaTabella(int pane) {
    if (!showsFields(m_editor, pane))
        return;
    try {
        const BusyPointer busy;
        const Grid &grid = m_editor.Tabella(pane);
        clipboard::clear();
        clipboard::setContents(std::make_unique<CopiedBlock>(grid.Clip(), encodedSelection(grid)));
    } catch (const std::exception &) { // as the clipboard left it
    }
}

void AreaClipboard::copyWithHeaders(int pane) {
    if (!showsFields(m_editor, pane))
        return;
    try {
        const BusyPointer busy;
        const CellTexts block = selectedBlock(m_editor.Tabella(pane), Headers::With);
        clipboard::clear();
        clipboard::setContents(std::make_unique<CopiedBlock>(
            cellBlockText(block), encodeCellBlock(block, {1, 1, block.records(), block.fields()})));
    } catch (const std::exception &) { // as the clipboard left it
    }
}

void AreaClipboard::INCOLLA_AreaTabella(int pane) {
    if (!showsFields(m_editor, pane) || refusedOnlyDifferences(m_editor, pane))
        return;
    m_editor.pane(pane).requireWhole();
    m_outcome.clear();
    try {
        if (const std::optional<ClipboardBlock> block = ClipboardBlock::taken()) {
            const BusyPointer busy;
            m_editor.endEdit(); // of a cell that the paste may change
            block->layInto(m_editor.Tabella(pane));
            const ChangeStep step(m_editor.OggettoDtb(pane), tr("Paste"));
            // Every text of the grid is to be stored afterwards; beyond the selected block most often all of them are.
            const Grid &grid = m_editor.Tabella(pane);
            const bool all = m_editor.pane(pane).TextsUnstored();
            if (all)
                m_save.SalvaGridInDatabase(pane);
            else
                m_save.SalvaGridInDatabase(pane, grid.selection().range());
            m_stored.lookAtWritten(pane,
                                   all ? GridRange{1, 1, grid.Rows() - 1, grid.Cols() - 1} : grid.selection().range());
            tellOutcome(pane, *block);
        }
    } catch (const std::exception &) {
        m_tables.reloadAfterFailure(pane);
    }
    yieldToMessages();
}

void AreaClipboard::tellOutcome(int pane, const ClipboardBlock &block) {
    const Grid &grid = m_editor.Tabella(pane);
    const GridRange cells = recordCells(grid);
    std::int64_t outside = 0;
    std::int64_t changed = 0;
    QString firstOutside;
    QString firstChanged;
    block.forEachValue([&](int row, int column, QStringView value) {
        const int gridRow = cells.firstRow + row;
        const int gridColumn = cells.firstColumn + column;
        if (!cells.contains(gridRow, gridColumn)) {
            if (outside++ == 0)
                firstOutside = blockPlaceWords(row, column);
        } else if (grid.isUnlikeStored(gridRow, gridColumn) && changed++ == 0) {
            firstChanged = placeWords(grid, gridRow, gridColumn, value);
        }
    });
    QStringList parts;
    if (outside == 1)
        parts.append(tr("1 pasted value lay outside the selection (%1)").arg(firstOutside));
    else if (outside > 1)
        parts.append(tr("%1 pasted values lay outside the selection (first: %2)").arg(outside).arg(firstOutside));
    if (changed > 0)
        parts.append(otherwiseWords(changed, firstChanged));
    m_outcome = parts.join(u"; "_s);
    if (!m_outcome.isEmpty())
        m_editor.status().showMessage(m_outcome);
}

QString blockPlaceWords(int row, int column) {
    return AreaClipboard::tr("row %1, column %2 of the block").arg(row + 1).arg(column + 1);
}

QString storedOtherwise(const Grid &grid, const GridRange &cells) {
    std::int64_t changed = 0;
    QString first;
    YieldTimer timer;
    for (int row = std::max(cells.firstRow, 1); row <= std::min(cells.lastRow, grid.Rows() - 1); ++row) {
        for (int column = std::max(cells.firstColumn, 1); column <= std::min(cells.lastColumn, grid.Cols() - 1);
             ++column) {
            if (grid.isUnlikeStored(row, column) && changed++ == 0)
                first = placeWords(grid, row, column, grid.TextMatrix(row, column));
        }
        timer.yieldIfDue();
    }
    return changed == 0 ? QString() : otherwiseWords(changed, first);
}

} // namespace qir
