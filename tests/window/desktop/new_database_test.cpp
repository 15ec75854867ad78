#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QFileDialog>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// New databases through the real window.
class NewDatabaseTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void newDatabaseMakesAnEmptyFileOfEachKindAndOpensIt_data() {
        QTest::addColumn<QString>("extension");
        for (const char *extension : {"DDB", "WDB", "UDB", "IDB", "SDB"})
            QTest::newRow(extension) << QString::fromLatin1(extension);
    }

    void newDatabaseMakesAnEmptyFileOfEachKindAndOpensIt() {
        QFETCH(QString, extension);
        EditorFixture fixture;
        fixture.dialogs().expectFile(u"New Database"_s, path(u"FRESH."_s + extension));
        hands::key(&fixture.window(), QKeySequence(u"Ctrl+N"_s));
        QCOMPARE(fixture.fileName(0), path(u"FRESH."_s + extension).toUpper());
        QVERIFY(fixture.isOpen(0));
        QCOMPARE(fixture.database(0).QIRTablesCount(), 0);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.activePane(), 0);
        QVERIFY(QFile::exists(path(u"FRESH."_s + extension)));
    }

    void theNewFilesExtensionFollowsTheKindChosen() {
        EditorFixture fixture;
        fixture.dialogs().expect([this](QDialog &dialog) {
            auto &box = dynamic_cast<QFileDialog &>(dialog);
            if (box.nameFilters().size() != 5)
                return u"not the five kinds"_s;
            box.selectNameFilter(box.nameFilters().at(3));
            Q_EMIT box.filterSelected(box.nameFilters().at(3));
            auto *edit = box.findChild<QLineEdit *>(u"fileNameEdit"_s);
            edit->setCompleter(nullptr);
            edit->setText(path(u"PERSONS"_s));
            return pressButton(dialog, u"Save"_s);
        });
        fixture.choose(Command::NewDatabase);
        QVERIFY(QFile::exists(path(u"PERSONS.IDB"_s)));
        // The kind is remembered.
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QFileDialog &>(dialog);
            const QString filter = box.selectedNameFilter();
            dialog.reject();
            return filter.contains(u"IDB"_s) ? QString() : filter;
        });
        fixture.choose(Command::OpenDatabase);
    }

    void aNewFileIsNotMadeOverOneThatIsOpen() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        const QByteArray before = fileBytes(file);
        fixture.dialogs().expect([&](QDialog &dialog) {
            auto &box = dynamic_cast<QFileDialog &>(dialog);
            box.setOption(QFileDialog::DontConfirmOverwrite);
            auto *edit = box.findChild<QLineEdit *>(u"fileNameEdit"_s);
            edit->setCompleter(nullptr);
            edit->setText(file);
            return pressButton(dialog, u"Save"_s);
        });
        fixture.dialogs().expectMessage(
            u"'%1' is open. Close it before making a new database of that name."_s.arg(file), u"!"_s, u"OK"_s);
        fixture.choose(Command::NewDatabase);
        QCOMPARE(fileBytes(file), before);
        QVERIFY(fixture.isOpen(0));
    }

    void aNewDatabaseThatCannotBeWrittenIsToldAndOpensNothing() {
        EditorFixture fixture;
        fixture.dialogs().expectFile(u"New Database"_s, path(u"NOWHERE/X.DDB"_s));
        fixture.dialogs().expectMessage(u"Can't assign new file name"_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::NewDatabase);
        QVERIFY(!fixture.isOpen(0));
    }

    void aNewDatabaseIsMadeBesideOneWhoseFileHasGone() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QVERIFY(QFile::remove(path(u"A.DDB"_s)));
        hands::turnLoop();
        fixture.dialogs().expectFile(u"New Database"_s, path(u"FRESH.DDB"_s));
        fixture.choose(Command::NewDatabase);
        QCOMPARE(fixture.fileName(0), path(u"FRESH.DDB"_s).toUpper());
        QVERIFY(QFile::exists(path(u"FRESH.DDB"_s)));
    }

    void theExtensionOfNoKindIsNotTheNextNewFiles() {
        makeFile(u"A.DDB"_s, {pumps()});
        QVERIFY(QFile::rename(path(u"A.DDB"_s), path(u"A.BAK"_s)));
        EditorFixture fixture;
        fixture.open(path(u"A.BAK"_s));
        fixture.dialogs().expectFile(u"New Database"_s, path(u"FRESH"_s));
        fixture.choose(Command::NewDatabase);
        QVERIFY(QFile::exists(path(u"FRESH.DDB"_s)));
        QVERIFY(!QFile::exists(path(u"FRESH.BAK"_s)));
    }
};

QTEST_MAIN(NewDatabaseTest)
#include "new_database_test.moc"
