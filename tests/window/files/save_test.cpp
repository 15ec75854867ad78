#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QStringList savingMembers{u"SaveDtb"_s, u"SetDatabaseFileName"_s};

/// The calls that save, and the writes of the changed flag.
QStringList savingCalls() {
    QStringList calls = callsOf(savingMembers + QStringList{u"DtbHasChanged"_s});
    calls.removeIf([](const QString &call) { return call.endsWith(u"()") && call.contains(u"DtbHasChanged"); });
    return calls;
}

/// A message box whose text contains `part`; OK is pressed.
std::function<QString(QDialog &)> messageContaining(const QString &part) {
    return [part](QDialog &dialog) {
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        const QString problem = box && box->text().contains(part, Qt::CaseInsensitive)
                                    ? QString()
                                    : u"'%1' is not in '%2'; "_s.arg(part, box ? box->text() : dialog.windowTitle());
        return problem + pressButton(dialog, u"OK"_s);
    };
}

} // namespace

/// Save and Save As through the real window.
class SaveTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void saveWritesAndThenClearsTheChangedFlag() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        change(fixture, 0, u"2"_s);
        fake->clearLog();
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savingCalls(), QStringList({u"SaveDtb()"_s, u"DtbHasChanged(false)"_s}));
        QIR_VERIFY_OK(fixture);
        QCOMPARE(savedValue(path(u"A.DDB"_s), u"T"_s), u"2"_s);
    }

    void saveWritesTheFile() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fixture.choose(Command::SaveMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(savedValue(file, u"T"_s), u"2"_s);
    }

    void aSaveWithNothingToWriteTellsOfChangesOnTheOtherSide() {
        const QStringList files{makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}),
                                makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})})};
        EditorFixture fixture;
        fixture.openBoth(files[0], files[1]);
        change(fixture, 0, u"2"_s);
        fixture.activate(1);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(statusLeft(fixture), u"Nothing was saved: it is the other pane that has changed. F6, then Ctrl+S."_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        fixture.activate(0);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(files[0], u"T"_s), u"2"_s);
        QVERIFY2(!statusLeft(fixture).contains(u"Nothing"), "it was saved");
        fixture.choose(Command::SaveMenu);
        QVERIFY2(!statusLeft(fixture).contains(u"Nothing"), "neither has changed now");
    }

    void saveShowsWhyItFailedAndTheChangesStay() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        change(fixture, 0, u"2"_s);
        fake->failOn(u"SaveDtb"_s, u"The disk is full."_s);
        fixture.dialogs().expectMessage(u"The disk is full."_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::SaveMenu);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.database(0).QIRTableRecordSetByIndex(1).toInt(), 2);

        // Closing asks again.
        fixture.dialogs().expectMessage(saveQuestion(path(u"A.DDB"_s)), u"QIR Database Editor"_s, u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
    }

    void aSaveThatFailedOffersSaveAs() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        change(fixture, 0, u"2"_s);
        fake->failOn(u"SaveDtb"_s, u"The disk is full."_s);
        fake->clearLog();
        fixture.dialogs().expect([&](QDialog &dialog) {
            const QString problem = pressButton(dialog, u"Save As..."_s);
            fake->stopFailing();
            return problem;
        });
        fixture.dialogs().expectFile(fileDialogTitle, path(u"B.DDB"_s));
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savingCalls(),
                 QStringList({u"SaveDtb()"_s, u"SetDatabaseFileName(%1)"_s.arg(path(u"B.DDB"_s).toUpper()),
                              u"DtbHasChanged(true)"_s, u"SaveDtb()"_s, u"DtbHasChanged(false)"_s}));
        QCOMPARE(savedValue(path(u"B.DDB"_s), u"T"_s), u"2"_s);
        QCOMPARE(savedValue(path(u"A.DDB"_s), u"T"_s), u"1"_s);
    }

    void aReadOnlyFileIsNotSavedOverAndIsSavedUnderAnotherName() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        const QByteArray before = fileBytes(file);
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        const QString reason = file + u": could not be saved: it is marked read-only; use Save As"_s;
        fixture.dialogs().expectMessage(reason, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::SaveMenu);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QCOMPARE(fileBytes(file), before);

        fixture.dialogs().expectMessage(reason, u"QIR Database Editor"_s, u"Save As..."_s);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"B.DDB"_s));
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(path(u"B.DDB"_s), u"T"_s), u"2"_s);
        QCOMPARE(fileBytes(file), before);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aReadOnlyFileWhoseChangesAreWantedAtTheEndIsKeptAsARescueFile() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        const QByteArray before = fileBytes(file);
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        const QDir rescue(qEnvironmentVariable("XDG_STATE_HOME") + u"/qir/rescue"_s);
        fixture.dialogs().expectMessage(saveQuestion(file), u"QIR Database Editor"_s, u"Yes"_s);
        fixture.dialogs().expect([&](QDialog &dialog) {
            auto *box = qobject_cast<QMessageBox *>(&dialog);
            const bool tells = box && box->text().contains(u"read-only") && box->text().contains(rescue.path());
            return (tells ? QString() : u"it does not tell: "_s + (box ? box->text() : QString())) +
                   pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(fileBytes(file), before);
        const QStringList files = rescue.entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QCOMPARE(savedValue(rescue.filePath(files.first()), u"T"_s), u"2"_s);
    }

    void aSaveIntoAFolderThatIsGoneFailsAndClosingAsksAgain() {
        QVERIFY(QDir(path(QString())).mkdir(u"GONE"_s));
        const QString file = makeFile(u"GONE/A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        QVERIFY(QDir(path(u"GONE"_s)).removeRecursively());
        fixture.dialogs().expect(messageContaining(u"folder"_s));
        fixture.choose(Command::SaveMenu);
        QVERIFY(fixture.database(0).DtbHasChanged());
        fixture.dialogs().expectMessage(saveQuestion(file), u"QIR Database Editor"_s, u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
    }

    void aWriteThatFailsAtTheLastReleaseTellsWhereTheRescueFileIsBeforeTheProgramEnds() {
        QVERIFY(QDir(path(QString())).mkdir(u"GONE"_s));
        const QString file = makeFile(u"GONE/A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        QVERIFY(QDir(path(u"GONE"_s)).removeRecursively());
        const QDir rescue(qEnvironmentVariable("XDG_STATE_HOME") + u"/qir/rescue"_s);
        fixture.dialogs().expectMessage(saveQuestion(file), u"QIR Database Editor"_s, u"Yes"_s);
        fixture.dialogs().expect(messageContaining(rescue.path()));
        fixture.choose(Command::EndMenu);
        QVERIFY(!fixture.window().isVisible());
        QIR_VERIFY_OK(fixture);
        const QStringList files = rescue.entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QCOMPARE(savedValue(rescue.filePath(files.first()), u"T"_s), u"2"_s);
    }

    void saveAsForcesTheWriteAndShowsTheNewName() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fake->clearLog();
        const QString name = path(u"B.DDB"_s);
        fixture.dialogs().expectFile(fileDialogTitle, name);
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(savingCalls(), QStringList({u"SetDatabaseFileName(%1)"_s.arg(name.toUpper()), u"DtbHasChanged(true)"_s,
                                             u"SaveDtb()"_s, u"DtbHasChanged(false)"_s}));
        QCOMPARE(fixture.fileName(0), name.toUpper());
        QCOMPARE(fixture.label(0).text(), name.toUpper());
        QCOMPARE(fixture.label(0).accessibleDescription(), name.toUpper());
    }

    void saveAsWritesAnUnchangedDatabase() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QByteArray before = fileBytes(file);
        EditorFixture fixture(file);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"copy.ddb"_s));
        fixture.choose(Command::SaveAsMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(savedValue(path(u"COPY.DDB"_s), u"T"_s), u"1"_s);
        QVERIFY(!QFile::exists(path(u"copy.ddb"_s))); // a new file gets the upper-cased name
        QCOMPARE(fileBytes(file), before);
    }

    void saveAsReplacesAnExistingFileOnlyWhenAllowed_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("value");
        QTest::newRow("Yes") << u"Yes"_s << u"1"_s;
        QTest::newRow("No") << u"No"_s << u"7"_s;
    }

    void saveAsReplacesAnExistingFileOnlyWhenAllowed() {
        QFETCH(QString, button);
        QFETCH(QString, value);
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QString other = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"7"_s})});
        EditorFixture fixture(file);
        // The dialog asks while it stands open, and stays open after a No.
        fixture.dialogs().expect([&](QDialog &dialog) {
            auto *edit = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
            edit->setText(other);
            fixture.dialogs().expect([&](QDialog &question) { return pressButton(question, button); });
            pressButton(dialog, u"Save"_s);
            if (dialog.isVisible())
                hands::key(&dialog, Qt::Key_Escape);
            return QString();
        });
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(fixture.dialogs().answered(), 2);
        QCOMPARE(savedValue(other, u"T"_s), value);
        QCOMPARE(fixture.label(0).text(), button == u"Yes" ? other.toUpper() : file);
    }

    void saveAsReplacesNoFileThatTheDialogDidNotShow() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QString other = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"7"_s})});
        EditorFixture fixture(file);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"b.ddb"_s)); // would reach B.DDB
        fixture.dialogs().expect(messageContaining(u"B.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(savedValue(other, u"T"_s), u"7"_s);
        QCOMPARE(fixture.fileName(0), file);
    }

    void saveAsBesideTwinsWritesWhereTheDialogPointed_data() {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("written");
        QTest::newRow("a new file") << u"Data/new.ddb"_s << u"Data/NEW.DDB"_s;
        QTest::newRow("a file that is there") << u"Data/old.ddb"_s << u"Data/old.ddb"_s;
    }

    void saveAsBesideTwinsWritesWhereTheDialogPointed() {
        QFETCH(QString, chosen);
        QFETCH(QString, written);
        for (const QString &folder : {u"Data"_s, u"data"_s}) {
            QVERIFY(QDir(path(QString())).mkdir(folder));
            QVERIFY(QFile::copy(makeFile(u"OLD.TMP"_s, {numbers(u"T"_s, {u"7"_s})}), path(folder + u"/old.ddb"_s)));
        }
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.dialogs().expect([&](QDialog &dialog) {
            dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path(chosen));
            if (QFile::exists(path(chosen))) // may it be replaced?
                fixture.dialogs().expect([](QDialog &question) { return pressButton(question, u"Yes"_s); });
            return pressButton(dialog, u"Save"_s);
        });
        fixture.choose(Command::SaveAsMenu);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.label(0).text(), path(chosen).toUpper());
        QCOMPARE(savedValue(path(written), u"T"_s), u"1"_s);
        QCOMPARE(savedValue(path(u"data/old.ddb"_s), u"T"_s), u"7"_s);
        QCOMPARE(QDir(path(u"data"_s)).entryList(QDir::Files), QStringList{u"old.ddb"_s});
    }

    void saveAsAddsNoExtension() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.dialogs().expectFile(fileDialogTitle, path(u"PLAIN"_s));
        fixture.choose(Command::SaveAsMenu);
        QVERIFY(QFile::exists(path(u"PLAIN"_s)));
    }

    void theSaveDialogLeavesTheCurrentFolderAsItWas() {
        const QString before = QDir::currentPath();
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.dialogs().expectFile(fileDialogTitle, path(u"B.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(QDir::currentPath(), before);
    }

    void saveAfterSaveAsWritesTheNewFile() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"B.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        change(fixture, 0, u"2"_s);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
        QCOMPARE(savedValue(path(u"B.DDB"_s), u"T"_s), u"2"_s);
    }

    void aCancelledSaveAsChangesNothing() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        fake->clearLog();
        fixture.dialogs().expectFileCancelled(fileDialogTitle);
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(savingCalls(), QStringList());
        QCOMPARE(fixture.fileName(0), file);
    }

    void aSaveAsThatIsRefusedLeavesTheLabelShowingTheOldName() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        const QString name = path(u"B.DDB"_s);
        fake->setRefuseFileName(true);
        fake->clearLog();
        fixture.dialogs().expectFile(fileDialogTitle, name);
        fixture.dialogs().expectMessage(u"Can't assign new file name"_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(savingCalls(), QStringList({u"SetDatabaseFileName(%1)"_s.arg(name.toUpper())}));
        QCOMPARE(fixture.fileName(0), name.toUpper());
        QCOMPARE(fixture.label(0).text(), file);
        QCOMPARE(fixture.database(0).GetDatabaseFileName(), file);
        QVERIFY(!QFile::exists(name));
    }

    void aSaveAsThatFailsAfterTheNameWasTakenSaysSoAndKeepsTheChanges() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        const QString name = path(u"B.DDB"_s);
        fake->failOn(u"SaveDtb"_s, u"The disk is full."_s);
        fixture.dialogs().expectFile(fileDialogTitle, name);
        fixture.dialogs().expectMessage(u"The disk is full."_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::SaveAsMenu);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.fileName(0), name.toUpper());
        QCOMPARE(fixture.label(0).text(), file);
    }

    void theSameFileOpenInBothPanesIsNotOverwrittenUnseen() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(file, file);
        change(fixture, 0, u"2"_s);
        change(fixture, 1, u"3"_s);
        fixture.activate(0);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"2"_s);
        fixture.activate(1);
        fixture.dialogs().expect(messageContaining(u"other pane"_s));
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"2"_s);
        QVERIFY(fixture.database(1).DtbHasChanged());

        // Under another name the changes of the right pane can be kept.
        fixture.dialogs().expectFile(fileDialogTitle, path(u"B.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(savedValue(path(u"B.DDB"_s), u"T"_s), u"3"_s);
    }

    void saveActsOnTheActivePane() {
        const QString left = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QString right = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(left, right);
        change(fixture, 0, u"2"_s);
        change(fixture, 1, u"3"_s);
        fixture.activate(1);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(left, u"T"_s), u"1"_s);
        QCOMPARE(savedValue(right, u"T"_s), u"3"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        fixture.database(0).setDtbHasChanged(false);
    }
};

QTEST_MAIN(SaveTest)
#include "save_test.moc"
