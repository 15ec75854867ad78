#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QTextBlock>
#include <QTextBrowser>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// The help menu through the real window.
class HelpTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void f1OpensTheGuideAtItsPageOnKeysAndTheEditorStaysUsable() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        for (const int time : {1, 2}) {
            Q_UNUSED(time)
            fixture.dialogs().allow(u"Guide"_s);
            hands::key(&fixture.window(), Qt::Key_F1);
            auto *text = fixture.window().findChild<QTextBrowser *>(u"GuideText"_s);
            QVERIFY(text != nullptr);
            QVERIFY(text->isVisible());
            QCOMPARE(text->textCursor().block().text(), u"Keys"_s);
            const QRect heading = text->cursorRect();
            QVERIFY2(text->viewport()->rect().contains(heading), "the heading is not in view");
            QVERIFY(text->toPlainText().contains(u"Compare again"_s));
        }
        QCOMPARE(fixture.window().findChildren<QTextBrowser *>().size(), 1);
        fixture.choose(Command::SaveMenu);
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
