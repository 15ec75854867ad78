#include "app/guide/GuideWindow.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto keysPage = "keys"_L1; // what the guide calls its page on keys
constexpr int contentsColumns = 40;  // sizes in characters
constexpr int textColumns = 86;
constexpr int pictureIndent = 16; // margins, the bar at the side and the indent of a list
constexpr int lines = 40;

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

/// Text whose pictures are drawn smaller where they are wider than it.
class Text : public QTextBrowser {
public:
    explicit Text(int pictureWidth)
        : m_pictureWidth(pictureWidth) {}

protected:
    QVariant loadResource(int type, const QUrl &name) override {
        if (type != QTextDocument::ImageResource)
            return QTextBrowser::loadResource(type, name);
        // Of few colours no mixed ones could be made.
        const QImage picture = QImage(u":/"_s + name.path()).convertToFormat(QImage::Format_RGB32);
        return picture.width() <= m_pictureWidth ? picture
                                                 : picture.scaledToWidth(m_pictureWidth, Qt::SmoothTransformation);
    }

private:
    int m_pictureWidth;
};

QString guideText() {
    QFile file(u":/user-guide.md"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Below a heading stands which controls the section tells of: <!-- findBar findHits -->
const QRegularExpression &controlsLine() {
    static const QRegularExpression line(u"^#+ ([^\\n]+)\\n+<!-- ([\\w ]+) -->$"_s,
                                         QRegularExpression::MultilineOption);
    return line;
}

/// What a link within the guide calls a heading, as web pages do: "Find and replace" is "find-and-replace".
QString anchorOf(const QString &heading) {
    static const QRegularExpression others(u"[^\\w -]"_s, QRegularExpression::UseUnicodePropertiesOption);
    return QString(heading).remove(others).toLower().replace(u' ', u'-');
}

} // namespace

GuideWindow::GuideWindow(QWidget *parent)
    : QDialog(parent)
    , m_search(new QLineEdit)
    , m_contents(new QTreeWidget)
    , m_text(new Text(fontMetrics().averageCharWidth() * (textColumns - pictureIndent))) {
    setObjectName(u"Guide"_s);
    setWindowTitle(tr("User Guide"));
    m_search->setObjectName(u"guideSearch"_s);
    m_search->setAccessibleName(tr("Search the guide"));
    m_search->setPlaceholderText(tr("Search"));
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, &GuideWindow::search);
    m_contents->setObjectName(u"guideContents"_s);
    m_contents->setAccessibleName(tr("Contents of the guide"));
    m_contents->setHeaderHidden(true);
    m_text->setObjectName(u"GuideText"_s);
    m_text->setAccessibleName(tr("User guide"));
    m_text->setOpenLinks(false);
    connect(m_text, &QTextBrowser::anchorClicked, this, &GuideWindow::follow);
    m_text->document()->setDocumentMargin(fontMetrics().averageCharWidth() * 2);
    const QString guide = guideText();
    static const QRegularExpression comments(u"<!-- [^>]*-->\\n"_s);
    m_text->setMarkdown(QString(guide).remove(comments));
    loosenTables(*m_text->document());
    fillContents(guide);

    auto *left = new QWidget;
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins({});
    leftLayout->addWidget(m_search);
    leftLayout->addWidget(m_contents);
    auto *splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(left);
    splitter->addWidget(m_text);
    const int character = fontMetrics().averageCharWidth();
    splitter->setSizes({character * contentsColumns, character * textColumns});
    splitter->setStretchFactor(1, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(splitter);
    resize(character * (contentsColumns + textColumns), fontMetrics().lineSpacing() * lines);
}

void GuideWindow::fillContents(const QString &guide) {
    QHash<QString, QStringList> controls;
    for (const QRegularExpressionMatch &match : controlsLine().globalMatch(guide))
        controls.insert(match.captured(1), match.captured(2).split(u' '));
    QTreeWidgetItem *chapter = m_contents->invisibleRootItem();
    for (QTextBlock block = m_text->document()->begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level == 0) {
            if (!m_sections.empty())
                m_sections.back().place.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
            continue;
        }
        if (level == 1)
            continue; // the title
        auto *line = new QTreeWidgetItem(level == 2 ? m_contents->invisibleRootItem() : chapter, {block.text()});
        if (level == 2)
            chapter = line;
        QTextCursor place(block);
        place.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        m_sections.push_back({block.text(), place, line, controls.value(block.text())});
    }
    m_contents->expandAll();
    connect(m_contents, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem *line) {
        const auto section = std::ranges::find(m_sections, line, &Section::line);
        if (section != m_sections.end())
            goTo(*section);
    });
}

void GuideWindow::showPlace(const QWidget *control) {
    const auto tellsOf = [this](const QString &name) {
        return std::ranges::find_if(m_sections,
                                    [&](const Section &section) { return section.controls.contains(name); });
    };
    auto section = m_sections.end();
    for (; control != nullptr && section == m_sections.end(); control = control->parentWidget())
        section = tellsOf(control->objectName().section(u'_', 0, 0)); // without the pane's number
    if (section == m_sections.end())
        section = tellsOf(QString(keysPage));
    if (section == m_sections.end())
        return;
    m_contents->setCurrentItem(section->line);
    goTo(*section);
}

void GuideWindow::showStart() {
    m_text->moveCursor(QTextCursor::Start);
}

void GuideWindow::goTo(const Section &section) {
    // From below, so that the heading stands at the top of the window and not at its bottom.
    m_text->moveCursor(QTextCursor::End);
    QTextCursor start = section.place;
    start.setPosition(section.place.selectionStart());
    m_text->setTextCursor(start);
}

void GuideWindow::follow(const QUrl &link) {
    if (!link.isRelative()) {
        QDesktopServices::openUrl(link);
        return;
    }
    for (const Section &section : m_sections)
        if (anchorOf(section.heading) == link.fragment())
            goTo(section);
}

void GuideWindow::search() {
    const QString wanted = m_search->text();
    QList<QTextEdit::ExtraSelection> marks;
    QTextCursor hit(m_text->document());
    while (!wanted.isEmpty()) {
        hit = m_text->document()->find(wanted, hit);
        if (hit.isNull())
            break;
        QTextEdit::ExtraSelection mark;
        mark.cursor = hit;
        mark.format.setBackground(palette().highlight());
        mark.format.setForeground(palette().highlightedText());
        marks.append(mark);
    }
    m_text->setExtraSelections(marks);
    for (const Section &section : m_sections)
        section.line->setHidden(!wanted.isEmpty());
    for (const QTextEdit::ExtraSelection &mark : marks)
        for (const Section &section : m_sections)
            if (section.place.selectionStart() <= mark.cursor.selectionStart() &&
                mark.cursor.selectionEnd() <= section.place.selectionEnd())
                for (QTreeWidgetItem *line = section.line; line != nullptr; line = line->parent())
                    line->setHidden(false);
    m_text->moveCursor(QTextCursor::Start);
    goToNextHit();
}

void GuideWindow::goToNextHit() {
    const QList<QTextEdit::ExtraSelection> marks = m_text->extraSelections();
    if (marks.isEmpty())
        return;
    const int from = m_text->textCursor().selectionEnd();
    const auto next = std::ranges::find_if(
        marks, [from](const QTextEdit::ExtraSelection &mark) { return mark.cursor.selectionStart() >= from; });
    m_text->setTextCursor(next == marks.end() ? marks.first().cursor : next->cursor);
}

void GuideWindow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_F3)
        goToNextHit();
    else if (event->matches(QKeySequence::Find))
        m_search->setFocus();
    else if (event->key() == Qt::Key_Escape && !m_search->text().isEmpty())
        m_search->clear();
    else
        QDialog::keyPressEvent(event);
}

} // namespace qir
