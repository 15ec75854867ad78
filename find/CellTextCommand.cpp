#include "find/CellTextCommand.h"

#include "find/LineEnds.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/AreaClipboard.h"
#include "view/CellEditor.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextBlock>
#include <QVBoxLayout>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

QStringList linesIn(const QPlainTextEdit &box) {
    QStringList lines;
    for (QTextBlock block = box.document()->begin(); block.isValid(); block = block.next())
        lines.append(block.text());
    return lines;
}

class CellTextDialog : public QDialog {
public:
    CellTextDialog(QWidget *parent, const QString &title, const QString &text)
        : QDialog(parent)
        , m_box(new QPlainTextEdit(this)) {
        setObjectName(u"cellText"_s);
        setWindowTitle(title);
        m_box->setObjectName(u"cellTextEdit"_s);
        m_box->setAccessibleName(QObject::tr("Text of the cell"));
        m_box->setTabChangesFocus(false);
        QTextOption option = m_box->document()->defaultTextOption();
        option.setFlags(option.flags() | QTextOption::ShowTabsAndSpaces | QTextOption::ShowLineAndParagraphSeparators);
        m_box->document()->setDefaultTextOption(option);
        m_box->setPlainText(text);
        m_box->moveCursor(QTextCursor::End);
        auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
        ok->setAutoDefault(false); // Enter is the text's, and so is Tab
        for (const QKeySequence &keys :
             {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)})
            connect(new QShortcut(keys, this), &QShortcut::activated, this, &QDialog::accept);
        ok->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto *rows = new QVBoxLayout(this);
        rows->addWidget(m_box);
        rows->addWidget(buttons);
        resize(560, 360);
        m_box->setFocus();
    }
    const QPlainTextEdit &box() const { return *m_box; }

private:
    QPlainTextEdit *m_box;
};

} // namespace

void CellTextCommand::connectPane(int pane) {
    auto *shortcut = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F2), &m_editor.IDtb(pane));
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, pane] { runCommand([&] { editText(pane); }); });
}

void CellTextCommand::editText(int pane) {
    const Grid &grid = m_editor.Tabella(pane);
    if (!showsFields(m_editor, pane) || grid.Row() < 1)
        return;
    m_editor.endEdit(); // it goes on in the box
    const int row = grid.Row();
    const int column = grid.Col();
    const QString before = grid.TextMatrix(row, column);
    CellTextDialog dialog(m_editor.controls().window, tr("Record %1, %2").arg(row).arg(grid.TextMatrix(0, column)),
                          before);
    const LineEnds ends(before, linesIn(dialog.box()));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList lines = linesIn(dialog.box());
    if (lines != ends.lines())
        m_cellEditor.writeCell(pane, row, column, ends.joined(lines));
}

} // namespace qir
