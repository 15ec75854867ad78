#include "bench/ShownTable.h"

#include "bench/MixedTable.h"
#include "platform/grid/Grid.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>

#include <malloc.h>
#include <unistd.h>

#include <ctime>

namespace qir::bench {

using namespace Qt::StringLiterals;

ShownTable::ShownTable(int records) {
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_folder.filePath(u"state"_s)));
    const QString path = m_folder.filePath(u"MIXED.DDB"_s);
    makeMixedFile(path, records);
    m_window.show();
    runCommand([&] { m_window.Form_Load(path); });
    QApplication::processEvents();
}

void ShownTable::choose(Command command) {
    QAction &action = editor().controls().action(command);
    action.setEnabled(true);
    action.trigger();
}

void ShownTable::sortBy(int column) {
    editor().setOrigin(0);
    editor().Tabella(0).setSelection(singleCell(1, column));
    choose(Command::SortFPOP);
}

void ShownTable::edit(int row, int column, const QString &text) {
    Grid &grid = editor().Tabella(0);
    grid.setSelection(singleCell(row, column));
    const auto press = [](QWidget &widget, Qt::Key key, const QString &typed) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, typed);
        QApplication::sendEvent(&widget, &event);
    };
    press(grid, Qt::Key_Return, u"\r"_s);
    editor().txtEdit(0).setText(text);
    press(editor().txtEdit(0), Qt::Key_Return, u"\r"_s);
}

std::size_t memoryHeld() {
    ::malloc_trim(0);
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArrayList pages = file.readAll().split(' ');
    return pages.size() < 2 ? 0 : pages[1].toULongLong() * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

long long processorTime() {
    constexpr long long thousand = 1000;
    return std::clock() * thousand / CLOCKS_PER_SEC;
}

} // namespace qir::bench
