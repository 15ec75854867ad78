#include "app/GuideWindow.h"

#include <QApplication>
#include <QFile>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QVBoxLayout>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 84; // size in characters
constexpr int lines = 36;

/// Room in the tables, and one line between cells instead of a frame round each.
void loosenTables(QTextDocument &document) {
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(frame)) {
            QTextTableFormat format = table->format();
            format.setBorderCollapse(true);
            format.setBorderBrush(QApplication::palette().brush(QPalette::Mid));
            format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setCellPadding(4);
            table->setFormat(format);
        }
    }
}

QString guideText() {
    QFile file(u":/user-guide.md"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

GuideWindow::GuideWindow(QWidget *parent)
    : QDialog(parent)
    , m_text(new QTextBrowser) {
    setObjectName(u"Guide"_s);
    setWindowTitle(tr("User Guide"));
    m_text->setObjectName(u"GuideText"_s);
    m_text->setAccessibleName(tr("User guide"));
    m_text->setOpenExternalLinks(true);
    m_text->document()->setDocumentMargin(fontMetrics().averageCharWidth() * 2);
    m_text->setMarkdown(guideText());
    loosenTables(*m_text->document());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_text);
    resize(fontMetrics().averageCharWidth() * columns, fontMetrics().lineSpacing() * lines);
}

void GuideWindow::showSection(const QString &heading) {
    QTextBlock block = m_text->document()->begin();
    while (block.isValid() && (block.blockFormat().headingLevel() == 0 || block.text() != heading))
        block = block.next();
    // From below, so that the heading stands at the top of the window and not at its bottom.
    m_text->moveCursor(QTextCursor::End);
    m_text->setTextCursor(block.isValid() ? QTextCursor(block) : QTextCursor(m_text->document()));
}

} // namespace qir
