#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>

#include <algorithm>
#include <cstdio>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// The help menu through the real window.
class HelpTest : public WindowTest {
    Q_OBJECT

private:
    static QTextBrowser &guideText(EditorFixture &fixture) {
        return *fixture.window().findChild<QTextBrowser *>(u"GuideText"_s);
    }

    /// The first control of that name, whichever pane it is of, that is to be seen; none: null.
    static QWidget *controlNamed(EditorFixture &fixture, const QString &name) {
        const QList<QWidget *> all = fixture.window().findChildren<QWidget *>();
        const auto found = std::ranges::find_if(all, [&](const QWidget *widget) {
            return widget->isVisible() && widget->objectName().section(u'_', 0, 0) == name;
        });
        return found == all.end() ? nullptr : *found;
    }
    /// Goes into a control, or what can be gone into within it, and asks there.
    static void checkPlace(EditorFixture &fixture, const QString &name, const QString &heading) {
        QWidget *place = controlNamed(fixture, name);
        QVERIFY2(place != nullptr, qPrintable(name));
        QList<QWidget *> within = place->findChildren<QWidget *>();
        within.prepend(place);
        const auto target = std::ranges::find_if(within, [](const QWidget *widget) {
            return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0;
        });
        QVERIFY2(target != within.end(), qPrintable(name));
        (*target)->window()->activateWindow();
        (*target)->setFocus();
        hands::key(*target, Qt::Key_F1);
        QVERIFY2(guideText(fixture).textCursor().block().text() == heading,
                 qPrintable(name + u": "_s + guideText(fixture).textCursor().block().text()));
    }
    /// As many tables as a list has a filter for.
    static std::vector<TableOfTexts> manyTables(const QString &value) {
        std::vector<TableOfTexts> tables;
        for (int i = 10; i < 25; ++i)
            tables.push_back(numbers(u"T%1"_s.arg(i), {u"1"_s, value}));
        return tables;
    }
    /// The window that is made only where a merge has left a list of conflicts, here beside LEFT.DDB.
    void openConflicts(EditorFixture &fixture, const QByteArray &table) const {
        writeBytes(u"LEFT.DDB.conflicts.json"_s,
                   R"({"what": "cell", "table": ")" + table +
                       R"(", "record": 1, "field": "Value", "base": 0, "ours": 1, "theirs": 7})"
                       "\n");
        fixture.dialogs().allow(u"mergeConflicts"_s);
        fixture.activate(0);
        fixture.choose(Command::ConflictsMenu);
    }

private Q_SLOTS:
    void f1OpensTheGuideAtThePlaceOfTheFocusAndTheEditorStaysUsable() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.dialogs().allow(u"Guide"_s);
        for (const auto &[place, heading] : std::initializer_list<std::pair<QWidget *, QString>>{
                 {&fixture.list(0), u"Tables, fields and records"_s}, {&fixture.grid(0), u"Editing"_s}}) {
            place->setFocus();
            hands::key(place, Qt::Key_F1);
            QTextBrowser &text = guideText(fixture);
            QVERIFY(text.isVisible());
            QCOMPARE(text.textCursor().block().text(), heading);
            QVERIFY2(text.viewport()->rect().contains(text.cursorRect()), "the heading is not in view");
            fixture.window().activateWindow();
        }
        QCOMPARE(fixture.window().findChildren<QTextBrowser *>().size(), 1);
        fixture.choose(Command::SaveMenu);
    }

    void f1LeadsFromEachPlaceThatTheGuideTellsOfToItsSection() {
        EditorFixture fixture;
        for (const auto &window : {u"Guide"_s, u"differencesSummary"_s, u"differencesByKey"_s})
            fixture.dialogs().allow(window);
        checkPlace(fixture, u"emptyPane"_s, u"Opening and saving"_s);
        openBoth(fixture, manyTables(u"2"_s), manyTables(u"3"_s));
        checkPlace(fixture, u"ListaTabelle"_s, u"Tables, fields and records"_s);
        checkPlace(fixture, u"tableFilter"_s, u"Tables, fields and records"_s);
        checkPlace(fixture, u"splitter"_s, u"The window"_s);
        checkPlace(fixture, u"Tabella"_s, u"Editing"_s);
        fixture.choose(Command::FindMenu);
        checkPlace(fixture, u"findBar"_s, u"Find and replace"_s);
        fixture.choose(Command::DifferencesSummaryMenu);
        checkPlace(fixture, u"differencesSummary"_s, u"Comparing and copying across"_s);
        fixture.choose(Command::DifferencesByKeyMenu);
        checkPlace(fixture, u"differencesByKey"_s, u"Differences by key"_s);
        openConflicts(fixture, "T10");
        checkPlace(fixture, u"mergeConflicts"_s, u"Merge conflicts"_s);
        const QString other = makeFile(u"OTHER.DDB"_s, {numbers(u"T"_s, {u"9"_s})});
        QVERIFY(::rename(QFile::encodeName(other).constData(), QFile::encodeName(path(u"LEFT.DDB"_s)).constData()) ==
                0);
        QTRY_VERIFY(controlNamed(fixture, u"noticeBar"_s) != nullptr);
        checkPlace(fixture, u"noticeBar"_s, u"Changes from outside"_s);
    }

    void everyControlThatTheGuideNamesIsThere() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"differencesSummary"_s);
        fixture.dialogs().allow(u"differencesByKey"_s);
        openBoth(fixture, {numbers(u"T"_s, {u"1"_s})}, {numbers(u"T"_s, {u"2"_s})});
        fixture.choose(Command::DifferencesSummaryMenu);
        fixture.choose(Command::DifferencesByKeyMenu);
        openConflicts(fixture, "T");
        QSet<QString> there{u"keys"_s}; // no control: what is told where nothing else is
        for (const QObject *object : fixture.window().findChildren<QObject *>())
            there.insert(object->objectName().section(u'_', 0, 0));
        QFile guide(u":/user-guide.md"_s);
        QVERIFY(guide.open(QIODevice::ReadOnly));
        static const QRegularExpression named(u"<!-- ([\\w ]+) -->"_s);
        int count = 0;
        for (const QRegularExpressionMatch &match : named.globalMatch(QString::fromUtf8(guide.readAll())))
            for (const QString &name : match.captured(1).split(u' ')) {
                QVERIFY2(there.contains(name), qPrintable(name));
                ++count;
            }
        QVERIFY(count >= 12);
    }

    void thePicturesOfTheGuideAreShownWithinItsText() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"Guide"_s);
        fixture.choose(Command::GuideMenu);
        QTextBrowser &text = guideText(fixture);
        int pictures = 0;
        for (QTextBlock block = text.document()->begin(); block.isValid(); block = block.next())
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                const QTextImageFormat format = part.fragment().charFormat().toImageFormat();
                if (!format.isValid())
                    continue;
                const auto picture = text.document()->resource(QTextDocument::ImageResource, QUrl(format.name()));
                QVERIFY2(!picture.value<QImage>().isNull(), qPrintable(format.name()));
                ++pictures;
            }
        QVERIFY(pictures >= 6);
        QCOMPARE(text.horizontalScrollBar()->maximum(), 0);
    }

    void theKeysHaveACommandOfTheirOwn() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.dialogs().allow(u"Guide"_s);
        fixture.grid(0).setFocus();
        fixture.choose(Command::HelpKeysMenu);
        QCOMPARE(guideText(fixture).textCursor().block().text(), u"Keys"_s);
        QVERIFY(guideText(fixture).toPlainText().contains(u"Compare again"_s));
    }

    void aLineOfTheContentsGoesToItsSection() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"Guide"_s);
        fixture.choose(Command::GuideMenu);
        auto &contents = *fixture.window().findChild<QTreeWidget *>(u"guideContents"_s);
        const QList<QTreeWidgetItem *> found = contents.findItems(u"Put files into git"_s, Qt::MatchRecursive);
        QCOMPARE(found.size(), 1);
        contents.scrollToItem(found[0]);
        hands::click(contents.viewport(), Qt::LeftButton, {}, contents.visualItemRect(found[0]).center());
        QCOMPARE(guideText(fixture).textCursor().block().text(), u"Put files into git"_s);
        QVERIFY(guideText(fixture).viewport()->rect().contains(guideText(fixture).cursorRect()));
    }

    void theSearchLeavesTheSectionsThatHaveTheTextAndGoesFromHitToHit() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"Guide"_s);
        fixture.choose(Command::GuideMenu);
        auto &search = *fixture.window().findChild<QLineEdit *>(u"guideSearch"_s);
        auto &contents = *fixture.window().findChild<QTreeWidget *>(u"guideContents"_s);
        const auto isHidden = [&](const QString &heading) {
            return contents.findItems(heading, Qt::MatchRecursive).value(0)->isHidden();
        };
        hands::click(&search, Qt::LeftButton);
        hands::type(&search, u"install-git"_s);
        QVERIFY(!isHidden(u"Put files into git"_s));
        QVERIFY(isHidden(u"Protect a file"_s));
        QCOMPARE(guideText(fixture).textCursor().selectedText(), u"install-git"_s);
        search.clear();
        QVERIFY(!isHidden(u"Protect a file"_s));
        QVERIFY(guideText(fixture).extraSelections().isEmpty());
        hands::type(&search, u"password"_s);
        const int first = guideText(fixture).textCursor().position();
        hands::key(&search, Qt::Key_Return);
        QVERIFY(guideText(fixture).textCursor().position() > first);
        hands::key(&search, Qt::Key_Escape);
        QVERIFY(search.text().isEmpty());
        QVERIFY(fixture.window().findChild<QDialog *>(u"Guide"_s)->isVisible());
        hands::type(&search, u"no such words stand there"_s);
        QVERIFY(isHidden(u"Put files into git"_s));
    }

    void noTwoCommandsOfAMenuShareAKey() {
        EditorFixture fixture;
        for (const QMenu *menu : fixture.window().findChildren<QMenu *>()) {
            QMap<QString, QString> known;
            for (const QAction *action : menu->actions()) {
                const QString key = QKeySequence::mnemonic(action->text()).toString();
                if (key.isEmpty() || !action->isVisible())
                    continue;
                QVERIFY2(!known.contains(key), qPrintable(known.value(key) + u" and "_s + action->text()));
                known.insert(key, action->text());
            }
        }
    }

    void everyShortcutOfTheMenusStandsInTheGuide() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"Guide"_s);
        fixture.choose(Command::HelpKeysMenu);
        const QString guide = fixture.window().findChild<QTextBrowser *>(u"GuideText"_s)->toPlainText();
        for (int i = 0; i < commandCount; ++i) {
            const QAction &action = fixture.action(static_cast<Command>(i));
            for (const QKeySequence &keys : action.shortcuts())
                QVERIFY2(guide.contains(keys.toString()), qPrintable(action.objectName()));
        }
    }

    void aboutNamesTheProgram() {
        EditorFixture fixture;
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            QString missing;
            for (const QString &part : {u"QIR Database Editor "_s, u"Qt "_s + QLatin1StringView(qVersion()), u"MIT"_s})
                missing += box.text().contains(part) ? QString() : part;
            if (!(box.textInteractionFlags() & Qt::TextSelectableByMouse))
                missing += u"selectable text"_s;
            return missing + pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::AboutMenu);
        QVERIFY(fixture.window().findChild<QTextBrowser *>(u"GuideText"_s) == nullptr);
    }

    void aboutLeadsToTheGuide() {
        EditorFixture fixture;
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"User Guide"_s); });
        fixture.dialogs().allow(u"Guide"_s);
        fixture.choose(Command::AboutMenu);
        const auto *text = fixture.window().findChild<QTextBrowser *>(u"GuideText"_s);
        QVERIFY(text != nullptr && text->isVisible());
        QCOMPARE(text->textCursor().position(), 0);
    }
};

QTEST_MAIN(HelpTest)
#include "help_test.moc"
