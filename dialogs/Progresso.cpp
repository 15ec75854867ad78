#include "dialogs/Progresso.h"

#include "platform/loop/MessageLoop.h"

#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int textColumns = 48; // width of the text in average characters

} // namespace

Progresso::Progresso(QWidget *parent)
    : QDialog(parent)
    , m_label(new QLabel)
    , m_bar(new QProgressBar) {
    setObjectName(u"Progresso"_s);
    m_label->setObjectName(u"Label1"_s);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setMinimumWidth(fontMetrics().averageCharWidth() * textColumns);
    m_bar->setObjectName(u"ProgressBar1"_s);
    m_bar->setAccessibleName(tr("Progress"));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    layout->addWidget(m_bar);
}

void Progresso::Form_Load() {
    adjustSize();
    const QRect area = screen()->geometry();
    move(area.left() + area.width() / 2 - width() / 2, y());
    show();
    yieldToMessages();
}

} // namespace qir
