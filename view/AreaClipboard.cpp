#include "view/AreaClipboard.h"

#include "app/shared/utility.h"

#include "platform/dialogs/Clipboard.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"
#include "view/CellBlock.h"
#include "view/GridSave.h"
#include "view/TableLoader.h"

#include <QMimeData>

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

/// Not the empty column of a table without fields.
bool showsFields(EditorContext &editor, int pane) {
    return pane >= 0 && editor.DtbAperto(pane) && editor.pane(pane).realTableSelected() &&
           editor.Tabella(pane).Visible() && editor.Tabella(pane).ColData(1) >= 1;
}

} // namespace

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

void AreaClipboard::addCommands() {
    CommandTable &commands = m_editor.controls.commands;
    commands.add(Command::CopyMenu, tr("&Copy"), [this] { COPIA_AreaTabella(m_editor.IndexAttivo()); },
                 {.needs = Needs::Database});
    commands.add(Command::PasteMenu, tr("&Paste"), [this] { INCOLLA_AreaTabella(m_editor.IndexAttivo()); },
                 {.needs = Needs::Database});
}

void AreaClipboard::COPIA_AreaTabella(int pane) {
    if (!showsFields(m_editor, pane))
        return;
    try {
        const BusyPointer busy;
        const Grid &grid = m_editor.Tabella(pane);
        clipboard::clear();
        clipboard::setContents(
            std::make_unique<CopiedBlock>(grid.Clip(), encodeCellBlock(grid.texts(), grid.selection().range())));
    } catch (const std::exception &) { // as the clipboard left it
    }
}

void AreaClipboard::INCOLLA_AreaTabella(int pane) {
    if (!showsFields(m_editor, pane))
        return;
    m_editor.pane(pane).requireWhole();
    try {
        const QString text = clipboard::text();
        if (!text.isEmpty()) {
            const BusyPointer busy;
            m_editor.endEdit(); // of a cell that the paste may change
            layClipboard(pane, text);
            const ChangeStep step(m_editor.OggettoDtb(pane), tr("Paste"));
            // Every text of the grid is to be stored afterwards; beyond the selected block most often all of them are.
            if (m_editor.pane(pane).TextsUnstored())
                m_save.SalvaGridInDatabase(pane);
            else
                m_save.SalvaGridInDatabase(pane, m_editor.Tabella(pane).selection().range());
        }
    } catch (const std::exception &) {
        m_tables.reloadAfterFailure(pane);
    }
    yieldToMessages();
}

void AreaClipboard::layClipboard(int pane, QString text) {
    Grid &grid = m_editor.Tabella(pane);
    const auto cells = decodeCellBlock(clipboard::data(QLatin1StringView(cellBlockFormat)));
    if (cells)
        grid.setClip(*cells);
    else
        grid.setClip(gridClip(text));
}

} // namespace qir
