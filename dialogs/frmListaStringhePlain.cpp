#include "dialogs/frmListaStringhePlain.h"

#include "platform/list/ListBox.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int visibleLines = 9;
constexpr int lineColumns = 34; // width of the list in average characters

} // namespace

SceltaLista &sceltaLista() {
    static SceltaLista record;
    return record;
}

frmListaStringhePlain::frmListaStringhePlain(QWidget *parent)
    : KeyPreviewDialog(parent)
    , m_list(new ListBox(this)) {
    setObjectName(u"frmListaStringhePlain"_s);
    m_list->setObjectName(u"valori_discreti"_s);
    m_list->setAccessibleName(tr("Choices"));
    const QFontMetrics metrics = m_list->fontMetrics();
    m_list->setMinimumSize(metrics.averageCharWidth() * lineColumns, metrics.lineSpacing() * visibleLines);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    const std::array captions{tr("OK"), tr("Cancel")};
    for (std::size_t i = 0; i < cmd.size(); ++i) {
        cmd.at(i) = new QPushButton(captions.at(i));
        cmd.at(i)->setObjectName(u"cmd_%1"_s.arg(i));
        cmd.at(i)->setAccessibleName(captions.at(i));
        buttons->addWidget(cmd.at(i));
    }
    cmd[0]->setDefault(true);
    connect(cmd[0], &QPushButton::clicked, this, [this] { cmd_Click(0); });
    connect(cmd[1], &QPushButton::clicked, this, [this] { cmd_Click(1); });

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    previewKeysOfControls();
    m_list->setFocus();
}

bool frmListaStringhePlain::eventFilter(QObject *watched, QEvent *event) {
    // A double click takes the choice wherever in the list it falls, beside the items too.
    if (watched == m_list->viewport() && event->type() == QEvent::MouseButtonDblClick &&
        static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
        valori_discreti_DblClick();
        return true;
    }
    return KeyPreviewDialog::eventFilter(watched, event);
}

bool frmListaStringhePlain::Form_KeyDown(const QKeyEvent &event, const QObject *) {
    if (event.key() == Qt::Key_Escape) {
        uscita_frmListaStringhePlain();
        return true;
    }
    return Form_KeyPress(event);
}

bool frmListaStringhePlain::Form_KeyPress(const QKeyEvent &event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)
        return false;
    if (m_list->ListIndex() >= 0)
        takeChoice();
    return true;
}

void frmListaStringhePlain::valori_discreti_DblClick() {
    takeChoice();
}

void frmListaStringhePlain::cmd_Click(int Index) {
    if (Index == 0)
        takeChoice();
    else
        uscita_frmListaStringhePlain();
}

void frmListaStringhePlain::takeChoice() {
    const int line = m_list->ListIndex();
    sceltaLista() = {m_list->List(line), line, m_list->ItemData(line)};
    done(Accepted);
}

void frmListaStringhePlain::uscita_frmListaStringhePlain() {
    sceltaLista().text.clear();
    sceltaLista().index = -1;
    done(Rejected);
}

} // namespace qir
