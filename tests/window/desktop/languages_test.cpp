#include "app/language/Languages.h"
#include "base/words/StorageWords.h"
#include "tests/support/Hands.h"
#include "tests/window/LayoutCheck.h"
#include "tests/window/WindowTest.h"

#include <QLocale>
#include <QMenuBar>
#include <QPainter>
#include <QXmlStreamReader>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// What a file of translations has for each English text, whatever class uses it.
QMultiHash<QString, QString> translationsIn(const QString &code) {
    QFile file(QStringLiteral(QIR_TRANSLATIONS "/qir-editor_%1.ts").arg(code));
    QMultiHash<QString, QString> all;
    if (!file.open(QIODevice::ReadOnly))
        return all;
    QXmlStreamReader xml(&file);
    QString source;
    const auto text = [&xml] { // the carriage return stands in an element of its own
        QString read;
        while (!(xml.readNext() == QXmlStreamReader::EndElement && xml.name() != "byte"_L1) && !xml.atEnd())
            read += xml.isStartElement() ? u"\r"_s : xml.text().toString();
        return read;
    };
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == "source"_L1)
            source = text();
        else if (xml.isStartElement() && xml.name() == "translation"_L1)
            all.insert(source, text());
    }
    return all;
}

/// Every text of the window's menus, tool tips and controls, by where it stands.
QMap<QString, QString> textsOf(EditorFixture &fixture) {
    QMap<QString, QString> texts;
    for (const QAction *action : fixture.window().findChildren<QAction *>())
        if (!action->objectName().isEmpty() && !action->text().isEmpty())
            texts.insert(u"action "_s + action->objectName(), action->text());
    for (const QMenu *menu : fixture.window().findChildren<QMenu *>())
        if (!menu->objectName().isEmpty() && !menu->title().isEmpty())
            texts.insert(u"menu "_s + menu->objectName(), menu->title());
    for (const QWidget *control : fixture.window().findChildren<QWidget *>()) {
        if (control->objectName().isEmpty() || control->objectName().startsWith(u"qt_"_s))
            continue;
        if (!control->accessibleName().isEmpty())
            texts.insert(u"control "_s + control->objectName(), control->accessibleName());
        if (const auto *button = qobject_cast<const QAbstractButton *>(control))
            texts.insert(u"button "_s + control->objectName(), button->text());
    }
    return texts;
}

} // namespace

/// The window in other languages than English.
class LanguagesTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() {
        QLocale::setDefault(QLocale(QLocale::C));
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        WindowTest::cleanup();
    }

    void everyTextOfTheWindowIsTranslated_data() { languages(); }

    void everyTextOfTheWindowIsTranslated() {
        QFETCH(QString, code);
        QMap<QString, QString> english;
        {
            EditorFixture fixture;
            english = textsOf(fixture);
        }
        QVERIFY2(english.size() > 120, qPrintable(QString::number(english.size())));
        Languages language;
        QVERIFY(language.speak(code));
        EditorFixture fixture;
        const QMap<QString, QString> spoken = textsOf(fixture);
        const QMultiHash<QString, QString> translations = translationsIn(code);
        QVERIFY(translations.size() > 300);
        QStringList problems;
        for (auto it = english.cbegin(); it != english.cend(); ++it) {
            QStringList expected = translations.values(it.value());
            for (const QString &form : translations.values(u'&' + it.value())) // buttons of an empty pane
                expected.append(QString(form).remove(u'&'));
            for (auto entry = translations.cbegin(); expected.isEmpty() && entry != translations.cend(); ++entry)
                if (QString(entry.key()).remove(u'&') == it.value())
                    expected.append(QString(entry.value()).remove(u'&'));
            // A text that is put together of several is at least not the English one.
            const QString shown = spoken.value(it.key());
            if (expected.isEmpty() ? shown == it.value() : !expected.contains(shown))
                problems.append(it.key() + u": "_s + shown);
        }
        QCOMPARE(problems.join(u'\n'), QString());
    }

    void nothingIsCutOffInAnyLanguage_data() { languages(); }

    void nothingIsCutOffInAnyLanguage() {
        QFETCH(QString, code);
        Languages language;
        QVERIFY(language.speak(code));
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.choose(Command::TwoMenu);
        fixture.choose(Command::FindMenu);
        QCOMPARE(layoutProblems(fixture.window()), QString());
    }

    void noTwoMenusShareALetter_data() { languages(); }

    void noTwoMenusShareALetter() {
        QFETCH(QString, code);
        Languages language;
        QVERIFY(language.speak(code));
        EditorFixture fixture;
        QList<QList<QAction *>> bars{fixture.window().menuBar()->actions()};
        for (const QMenu *menu : fixture.window().findChildren<QMenu *>())
            if (!menu->objectName().startsWith(u"popmenu"_s) && !menu->objectName().startsWith(u"Recent"_s))
                bars.append(menu->actions());
        QStringList problems;
        for (const QList<QAction *> &actions : bars) {
            QMap<QString, QString> letters;
            for (const QAction *action : actions) {
                const QString letter = QKeySequence::mnemonic(action->text()).toString();
                if (!letter.isEmpty() && letters.contains(letter))
                    problems.append(letters.value(letter) + u" and "_s + action->text());
                letters.insert(letter, action->text());
            }
        }
        QCOMPARE(problems.join(u'\n'), QString());
    }

    void theQuestionAboutChangesIsAskedInTheLanguage() {
        Languages language;
        QVERIFY(language.speak(u"de"_s));
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        change(fixture, 0, u"77"_s);
        // The buttons are Qt's own texts.
        fixture.dialogs().expectMessage(
            u"Die Datenbank '%1' hat sich geändert.\r\nSollen die Änderungen gespeichert werden?"_s.arg(file),
            u"QIR Database Editor"_s, u"Nein"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!fixture.isOpen(0));
    }

    void whatAComponentSaysIsToldInTheLanguage_data() {
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");
        const auto add = [](const char *name, const QString &english, const QString &italian) {
            QTest::newRow(name) << english << italian;
        };
        add("a reason", u"it is empty"_s, u"è vuoto"_s);
        add("numbers", u"/A.DDB: it is damaged: part 2 of 3 does not match its checksum"_s,
            u"/A.DDB: è danneggiato: la parte 2 di 3 non corrisponde alla somma di controllo"_s);
        add("a reason in a reason", u"/A.DDB: could not be saved: the disk is full"_s,
            u"/A.DDB: non è stato possibile salvarlo: il disco è pieno"_s);
        add("a part of a sentence", u"/A.DDB: was changed by another program since it was opened; use Save As"_s,
            u"/A.DDB: è stato modificato da un altro programma da quando è stato aperto; usare Salva con nome"_s);
        add("put behind",
            u"/A.DDB: was saved, but a power failure now might bring the old version back: no permission (it stays as "
            "'/B')"_s,
            u"/A.DDB: è stato salvato, ma se ora mancasse la corrente potrebbe tornare la versione di prima: permesso "
            "negato (resta come '/B')"_s);
        add("two reasons",
            u"/A.DDB: it is damaged: its header does not match its checksum; the safe copy '/C' of a save that was cut "
            "short may not be read"_s,
            u"/A.DDB: è danneggiato: la sua intestazione non corrisponde alla somma di controllo; la copia sicura '/C' "
            u"di "
            "un salvataggio interrotto non si può leggere"_s);
        add("lines", u"/A.DDB: could not be saved: its folder is gone\n\nThe changes are kept in '/S'."_s,
            u"/A.DDB: non è stato possibile salvarlo: la sua cartella non c'è più\n\nLe modifiche sono conservate in "
            "'/S'."_s);
        add("names are nobody's words", u"There is no table \"No table is selected.\"."_s,
            u"Non c'è una tabella \"No table is selected.\"."_s);
        add("a per cent sign", u"A table \"%2 %1\" already exists."_s, u"Una tabella \"%2 %1\" esiste già."_s);
        add("unknown", u"broken: by another maker"_s, u"broken: by another maker"_s);
        add("nothing", QString(), QString());
    }
    void whatAComponentSaysIsToldInTheLanguage() {
        QFETCH(const QString, english);
        QFETCH(const QString, italian);
        QCOMPARE(spokenWords(english), english);
        Languages language;
        QVERIFY(language.speak(u"it"_s));
        QCOMPARE(spokenWords(english), italian);
    }

    void aFileThatCannotBeLoadedSaysWhyInTheLanguage() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        QFile bad(file);
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("no database at all, but long enough");
        bad.close();
        Languages language;
        QVERIFY(language.speak(u"de"_s));
        EditorFixture fixture;
        QString reason;
        fixture.dialogs().expect([&](QDialog &dialog) {
            reason = dynamic_cast<QMessageBox &>(dialog).informativeText();
            return pressButton(dialog, u"OK"_s);
        });
        runCommand([&] { fixture.window().openLeft(file); });
        QVERIFY2(reason.endsWith(u"sie ist keine Datenbank dieses Programms"_s), qPrintable(reason));
        QVERIFY(fixture.editor().pane(0).controls().hint->text().contains(reason));
    }

    void whatFailsInACommandSaysWhyInTheLanguage() {
        Languages language;
        QVERIFY(language.speak(u"it"_s));
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fixture.dialogs().expectMessage(u"Non c'è un record numero 9: la tabella ne ha 3."_s, u"QIR Database Editor"_s,
                                        u"OK"_s);
        runCommand([&] {
            fixture.editor().pane(0).makeShownTableCurrent();
            fixture.database(0).RemoveRecord(9);
        });
    }

    void numbersInCellsAreTheSameInEveryLanguage() {
        const QString file =
            makeFile(u"A.DDB"_s, {{u"T"_s, {{u"a"_s, FieldType::Double, {u"1234567.5"_s, u"-0.25"_s}, 0}}}});
        Languages language;
        QVERIFY(language.speak(u"de"_s));
        QCOMPARE(QLocale().toString(0.5), u"0,5"_s);
        EditorFixture fixture(file);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"1234567.5"_s}, {u"-0.25"_s}}));
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        fixture.cellEditor(0).selectAll();
        hands::type(&fixture.cellEditor(0), u"3.75"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"3.75"_s);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"3.75"_s);
    }

    void aLanguageThatIsNotSpokenChangesNothing() {
        Languages language;
        QVERIFY(!language.speak(u"xx"_s));
        QVERIFY(!language.speak(QString()));
        EditorFixture fixture;
        QCOMPARE(fixture.action(Command::OpenDatabase).text(), u"&Open..."_s);
        QVERIFY(language.speak(u"it"_s));
        QVERIFY(language.speak(u"en"_s));
        QCOMPARE(QObject::tr("&File"), u"&File"_s);
    }

    void fromRightToLeftTheKeysMoveAsSeen() {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QCOMPARE(layoutProblems(fixture.window()), QString());
        fixture.clickCell(0, 1, 1);
        const auto x = [&] { return fixture.grid(0).cellRectangle().center().x(); };
        const int first = x();
        hands::key(&fixture.grid(0), Qt::Key_Left);
        QVERIFY(x() < first);
        hands::key(&fixture.grid(0), Qt::Key_Right);
        QCOMPARE(x(), first);
    }

    void fromRightToLeftAPathIsNotReversed() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        EditorFixture fixture(file);
        QLabel &label = fixture.label(0);
        fixture.window().resize(1200, 600);
        const QImage shown = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto drawn = [&](Qt::TextFlag direction) {
            QImage picture(shown.size(), QImage::Format_RGB32);
            picture.setDevicePixelRatio(shown.devicePixelRatio());
            picture.fill(label.palette().color(QPalette::Window));
            QPainter painter(&picture);
            painter.setFont(label.font());
            painter.setPen(label.palette().color(QPalette::WindowText));
            painter.drawText(label.contentsRect(), Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter | direction,
                             label.text());
            return picture;
        };
        QVERIFY(drawn(Qt::TextForceLeftToRight) != drawn(Qt::TextForceRightToLeft));
        QVERIFY(shown == drawn(Qt::TextForceLeftToRight));
    }

private:
    static void languages() {
        QTest::addColumn<QString>("code");
        for (const QString &code : Languages::all())
            if (code != u"en"_s)
                QTest::newRow(qPrintable(code)) << code;
    }
};

QTEST_MAIN(LanguagesTest)
#include "languages_test.moc"
