#include "dialogs/CancellableProgress.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QProgressBar>

namespace qir {

CancellableProgress::CancellableProgress(QWidget *parent, const QString &title, const QString &text)
    : Progresso(parent) {
    setWindowTitle(title);
    Label1().setWordWrap(true);
    Label1().setText(text);
    ProgressBar1().setRange(0, 0);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::rejected, this, &CancellableProgress::reject);
    layout()->addWidget(buttons);
    adjustSize();
    if (parent != nullptr)
        move(x(), parent->window()->frameGeometry().center().y() - height() / 2);
}

void CancellableProgress::reject() {
    m_cancelled = true;
    Progresso::reject();
}

} // namespace qir
