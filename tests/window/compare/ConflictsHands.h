#pragma once

#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"
#include "tests/window/compare/BesideWindowTest.h"

#include <QTableView>

namespace qir::test {

using namespace Qt::StringLiterals;

inline TableOfTexts pumpsOf(const QStringList &tags, const QStringList &speeds, const QStringList &names = {}) {
    TableOfTexts table{u"Pumps"_s, {{u"Tag"_s, FieldType::Text, tags, 20}, {u"Speed"_s, FieldType::Long, speeds}}};
    if (!names.isEmpty())
        table.fields.push_back({u"Name"_s, FieldType::Text, names, 5});
    return table;
}

inline DatabaseContent contentOf(const QString &path) {
    const QirDatabase database = QirDatabase::create();
    database.setLeaveJournal(true);
    if (!database.LoadDtb(path, QString()))
        qFatal("a side of the merge cannot be read");
    return readContent(database);
}

/// What tests of the window of a merge's conflicts have in common: a merge, and the main window on what it has left.
class ConflictsWindowTest : public BesideWindowTest {
protected:
    ConflictsWindowTest()
        : BesideWindowTest(u"mergeConflicts"_s) {}

    QTableView &view(EditorFixture &fixture) const { return control<QTableView>(fixture, u"conflictList"_s); }
    /// The rows of the list, their cells joined.
    QStringList rows(EditorFixture &fixture) const {
        QStringList all;
        for (const QStringList &texts : textsOf(*view(fixture).model()))
            all.append(texts.join(u'|'));
        return all;
    }
    /// The last cells of the rows.
    QStringList states(EditorFixture &fixture) const {
        QStringList all;
        for (const QString &row : rows(fixture))
            all.append(row.section(u'|', -1));
        return all;
    }
    QString status(EditorFixture &fixture) const { return textOf(fixture, u"conflictStatus"_s); }
    QPoint placeOf(EditorFixture &fixture, int row) const {
        return view(fixture).visualRect(view(fixture).model()->index(row, 0)).center();
    }
    void pick(EditorFixture &fixture, int row, Qt::KeyboardModifiers modifiers = {}) const {
        hands::click(view(fixture).viewport(), Qt::LeftButton, modifiers, placeOf(fixture, row));
    }
    /// Merges as the companion does, into OUT.DDB with its list of conflicts beside it.
    void merge(const std::vector<TableOfTexts> &base, const std::vector<TableOfTexts> &ours,
               const std::vector<TableOfTexts> &theirs, const QStringList &key = {}) const {
        const QString out = makeFile(u"OUT.DDB"_s, ours);
        const KeyChoice keys(key.isEmpty() ? std::vector<ChosenKey>() : std::vector<ChosenKey>{{QString(), key}});
        const MergedContent merged = mergeContents(contentOf(makeFile(u"BASE.DDB"_s, base)), contentOf(out),
                                                   contentOf(makeFile(u"THEIRS.DDB"_s, theirs)), keys);
        const QirDatabase database = QirDatabase::create();
        database.setLeaveJournal(true);
        QVERIFY(database.LoadDtb(out, QString()));
        writeContent(database, merged.content);
        database.SaveDtb();
        QByteArray lines;
        for (const Conflict &conflict : merged.conflicts)
            appendConflict(lines, conflict);
        writeBytes(u"OUT.DDB.conflicts.json"_s, lines);
    }
    /// Two cells that both sides have changed, and one that only THEIRS has.
    void mergeCells() const {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"1"_s, u"2"_s, u"3"_s}), valves()},
              {pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"10"_s, u"20"_s, u"3"_s}), valves()},
              {pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"11"_s, u"21"_s, u"31"_s}), valves()});
    }
    /// "Name" is longer on both sides, each in its own way.
    void mergeSizes() const {
        TableOfTexts base = pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"a"_s, u"b"_s});
        TableOfTexts ours = pumpsOf({u"P-2"_s, u"P-1"_s, u"P-3"_s}, {u"2"_s, u"1"_s, u"3"_s}, {u"b"_s, u"o"_s, u"c"_s});
        TableOfTexts theirs = pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"their"_s, u"b"_s});
        ours.fields[2].size = 6;
        theirs.fields[2].size = 7;
        merge({base}, {ours}, {theirs}, {u"Tag"_s});
    }
    void open(EditorFixture &fixture) const {
        fixture.dialogs().allow(u"mergeConflicts"_s);
        fixture.activate(0);
        fixture.open(path(u"OUT.DDB"_s));
        fixture.choose(Command::ConflictsMenu);
        QVERIFY(window(fixture) != nullptr && window(fixture)->isVisible());
    }
    QString saveAndRemove() const {
        return u"All conflicts are resolved.\r\nSave '%1' and remove '%1.conflicts.json'?"_s.arg(path(u"OUT.DDB"_s));
    }
    static QStringList speeds(EditorFixture &fixture, int pane = 0) {
        QStringList texts;
        for (const QStringList &record : recordsOf(fixture, pane))
            texts.append(record[1]);
        return texts;
    }
};

} // namespace qir::test
