#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QLineEdit>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>

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
