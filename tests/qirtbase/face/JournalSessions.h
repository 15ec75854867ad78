#pragma once

#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <optional>

namespace qir {

/// The component with its journals, through sessions that crash.
class JournalSessions : public testing::Test {
protected:
    JournalSessions() {
        auto made = component();
        EXPECT_TRUE(made->SetDatabaseFileName(path()));
        made->AddTable(QStringLiteral("Pumps"));
        made->SaveDtb();
        made.reset();
    }

    QString path(const QString &name = QStringLiteral("PUMPS.DDB")) const { return m_folder.filePath(name); }
    QString state() const { return m_folder.filePath(QStringLiteral("state")); }
    QStringList journals() const { return namesIn(state() + QStringLiteral("/journal")); }

    std::unique_ptr<clsQirDatabase> component() {
        DatabaseFileOptions options = testOptions();
        options.stateFolder = state();
        auto made = std::make_unique<clsQirDatabase>(m_ops, std::move(options));
        QObject::connect(made.get(), &clsQirDatabase::Notice, [this](const QString &text) { m_notices.append(text); });
        return made;
    }
    /// A session on the file; the notices are those of its load.
    std::unique_ptr<clsQirDatabase> open(const QString &password = {},
                                         const QString &name = QStringLiteral("PUMPS.DDB")) {
        m_notices.clear();
        auto opened = component();
        EXPECT_TRUE(opened->LoadDtb(path(name), password)) << opened->LastError().toStdString();
        return opened;
    }
    /// The program dies: nothing that the instance still tries has an effect.
    void kill(std::unique_ptr<clsQirDatabase> &session) {
        m_ops.onCall = [](FileCall call, const std::string &) {
            return call == FileCall::Close ? std::nullopt : std::optional(SystemError{EIO});
        };
        session.reset();
        m_ops.onCall = {};
        m_notices.clear();
    }
    /// From now on the system's call of that number, counted from 0, fails, and `forEver` all behind it; `made` counts
    /// them. Files are closed all the same.
    void failFrom(int call, bool forEver, int &made) {
        m_ops.onCall = [call, forEver, &made](FileCall kind, const std::string &) {
            const int now = made++;
            const bool fails = kind != FileCall::Close && (forEver ? now >= call : now == call);
            return fails ? std::optional(SystemError{EIO}) : std::nullopt;
        };
    }
    static void write(clsQirDatabase &target, const QString &text) {
        target.QIRTableRecordSource(QStringLiteral("Pumps"));
        target.setQIRTableRecordsPointerOut(1);
        target.QIRTableRecordSetByIndex(1, text);
    }
    static QString textIn(clsQirDatabase &target) {
        QStringList values;
        target.QIRTableRecordSource(QStringLiteral("Pumps"));
        target.GetQirRecord(1, values);
        return values.value(1);
    }
    /// What the file itself holds, without any journal.
    QString textInFile(const QString &password = {}, const QString &name = QStringLiteral("PUMPS.DDB")) {
        auto reader = component();
        reader->setLeaveJournal(true);
        EXPECT_TRUE(reader->LoadDtb(path(name), password)) << reader->LastError().toStdString();
        return textIn(*reader);
    }

    QuickFolder m_folder;
    HookedFileOps m_ops{{}};
    QStringList m_notices;
};

} // namespace qir
