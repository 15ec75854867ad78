#pragma once

#include "app/desktop/OutsideChanges.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QProcess>
#include <QPushButton>

namespace qir::test {

/// What tests of what other programs do to an open file have in common.
class OutsideWindowTest : public WindowTest {
protected:
    static NoticeBar &bar(EditorFixture &fixture, int pane) {
        return *fixture.window().findChild<NoticeBar *>(QStringLiteral("noticeBar_%1").arg(pane));
    }
    static void press(EditorFixture &fixture, int pane, const QString &button) {
        hands::click(bar(fixture, pane).findChild<QPushButton *>(button), Qt::LeftButton);
    }
    static bool offers(EditorFixture &fixture, int pane, const QString &button) {
        return bar(fixture, pane).findChild<QPushButton *>(button)->isVisible();
    }
    /// A program of its own does something in the test's folder.
    void elsewhere(const QString &commands) const {
        QProcess shell;
        shell.setWorkingDirectory(path(QString()));
        shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("set -e\n") + commands});
        QVERIFY(shell.waitForFinished());
        QVERIFY2(shell.exitCode() == 0, shell.readAllStandardError().constData());
    }
    /// A.DDB, one of the same tables and one of others beside it.
    QString makeFiles() const {
        makeFile(QStringLiteral("B.DDB"), {tableOf({5, 6, 7}), pumps()});
        makeFile(QStringLiteral("SAME.DDB"), {tableOf({1, 2, 3}), pumps()});
        return makeFile(QStringLiteral("A.DDB"), {tableOf({1, 2, 3}), pumps()});
    }
    /// A.DDB in the left pane, OTHER.DDB with changes that are not saved in the right one; then B.DDB takes A.DDB's
    /// place. Gives OTHER.DDB's path.
    QString replaceBesideChanges(EditorFixture &fixture) const {
        const QString file = makeFiles();
        const QString other = makeFile(QStringLiteral("OTHER.DDB"), {tableOf({1})});
        fixture.openBoth(file, other);
        change(fixture, 1, QStringLiteral("9"));
        elsewhere(QStringLiteral("mv B.DDB A.DDB"));
        [&] { QTRY_VERIFY(bar(fixture, 0).isVisible()); }();
        return other;
    }

private:
    static TableOfTexts tableOf(const QList<int> &values) {
        QStringList texts;
        for (const int value : values)
            texts.append(QString::number(value));
        return numbers(QStringLiteral("T"), texts);
    }
};

} // namespace qir::test
