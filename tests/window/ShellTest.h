#pragma once

#include "db/FieldTypes.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditorFixture.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace qir::test {

/// The caption of the open and save dialogs.
inline const QString fileDialogTitle = QStringLiteral("File DDB,WDB,UDB,SDB,IDB");

/// A table of one long field.
inline TableOfTexts numbers(const QString &name, const QStringList &texts) {
    return {name, {{QStringLiteral("Value"), FieldType::Long, texts}}};
}

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

/// What the tests of saving, closing, modes and passwords have in common: a folder of their own, and edits.
class ShellTest : public QObject {
    Q_OBJECT

protected:
    /// A file of the test's folder. The folder's path is in upper case, as names chosen in the dialogs are.
    QString path(const QString &name) const { return m_folder + u'/' + name; }
    QString makeFile(const QString &name, const std::vector<TableOfTexts> &tables, const QString &password = {}) const {
        makeDatabase(path(name), tables, password);
        return path(name);
    }
    /// Writes a value into the first cell of the table that a pane shows, past the window.
    static void change(EditorFixture &fixture, int pane, const QString &text) {
        fixture.editor().pane(pane).makeShownTableCurrent();
        const QirDatabase &database = fixture.database(pane);
        database.setQIRTableRecordsPointerOut(1);
        database.setQIRTableRecordSetByIndex(1, text.toDouble());
    }

private Q_SLOTS:
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
