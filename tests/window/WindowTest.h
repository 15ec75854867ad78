#pragma once

#include "db/FieldTypes.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditorFixture.h"
#include "tests/window/TestTables.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace qir::test {

/// The caption of the open and save dialogs.
inline const QString fileDialogTitle = QStringLiteral("File DDB,WDB,UDB,SDB,IDB");

/// The question about a changed database.
inline QString saveQuestion(const QString &path) {
    return QStringLiteral("Database '%1' has changed.\r\nDo you want to save the changes?").arg(path);
}

inline QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The first value of a table, as a component of its own reads it from the file; "cannot be loaded" when it cannot.
inline QString savedValue(const QString &path, const QString &table, const QString &password = {}) {
    const QirDatabase database = QirDatabase::create();
    if (!database.LoadDtb(path, password))
        return QStringLiteral("cannot be loaded");
    database.QIRTableRecordSource(table);
    database.setQIRTableRecordsPointerOut(1);
    return database.QIRTableRecordSetByIndex(1).toString();
}

/// A call as "member(argument, ...)".
inline QString callText(const FakeCall &call) {
    QStringList arguments;
    for (const QVariant &argument : call.arguments)
        arguments.append(argument.isValid() ? argument.toString() : u"-"_s);
    return call.member + u'(' + arguments.join(u", "_s) + u')';
}

/// The calls that components got, "MEMBER(argument, ...)" each, only those of the given members.
inline QStringList callsOf(const QStringList &members) {
    QStringList calls;
    for (const FakeCall &call : FakeControl::get().log()) {
        if (!members.contains(call.member))
            continue;
        QStringList arguments;
        for (const QVariant &argument : call.arguments)
            arguments.append(argument.toString());
        calls.append(QStringLiteral("%1(%2)").arg(call.member, arguments.join(u',')));
    }
    return calls;
}

/// What tests of the window have in common: each test function has a folder of its own, for files and for what the
/// program remembers.
class WindowTest : public QObject {
    Q_OBJECT

protected:
    /// A file of the test's folder. The folder's path is in upper case, as names chosen in the dialogs are.
    QString path(const QString &name) const { return m_folder + u'/' + name; }
    QString makeFile(const QString &name, const std::vector<TableOfTexts> &tables, const QString &password = {}) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        makeDatabase(path(name), tables, password);
        return path(name);
    }
    /// Two new files side by side, LEFT.DDB and RIGHT.DDB.
    void openBoth(EditorFixture &fixture, const std::vector<TableOfTexts> &left,
                  const std::vector<TableOfTexts> &right) const {
        fixture.openBoth(makeFile(QStringLiteral("LEFT.DDB"), left), makeFile(QStringLiteral("RIGHT.DDB"), right));
    }
    /// A database of pumps, and one of valves whose name differs only in case. Copied there, not made: the component
    /// would reach the first file by the second name.
    void makeTwins(const QString &pumpsName, const QString &password, const QString &valvesName) const {
        makeFile(pumpsName, {pumps()}, password);
        const QString valvesPath = makeFile(QStringLiteral("valves.tmp"), {valves()});
        const QString twin = path(valvesName);
        QVERIFY(QDir().mkpath(QFileInfo(twin).path()));
        QVERIFY(QFile::rename(valvesPath, twin));
    }

    QString writeBytes(const QString &name, const QByteArray &bytes) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("the test file cannot be written");
        return path(name);
    }
    /// Writes a value into the first cell of the table that a pane shows, past the window.
    static void change(EditorFixture &fixture, int pane, const QString &text) {
        const QirDatabase &database = fixture.atShownTable(pane);
        database.setQIRTableRecordsPointerOut(1);
        database.setQIRTableRecordSetByIndex(1, text.toDouble());
    }

protected Q_SLOTS:
    void init() {
        m_root = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/qir-XXXXXX"));
        QVERIFY(m_root->isValid());
        m_folder = m_root->path() + QStringLiteral("/FILES");
        QVERIFY(QDir().mkpath(m_folder));
        qputenv("XDG_STATE_HOME", (m_root->path() + QStringLiteral("/state")).toUtf8());
    }
    void cleanup() { m_root.reset(); }

private:
    std::unique_ptr<QTemporaryDir> m_root;
    QString m_folder;
};

} // namespace qir::test
