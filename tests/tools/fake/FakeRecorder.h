#pragma once

#include "tests/tools/fake/FakeControl.h"

#include <QHash>
#include <QSet>

namespace qir {

class FakeComponent;

/// The other side of FakeControl: what every member of the fake tells before it does its work.
class FakeRecorder final : public FakeControl {
public:
    static FakeRecorder &self();

    /// Records a call; throws what was ordered for it.
    void called(const char *member, const QVariantList &arguments, int instance);
    int created(FakeComponent *component);
    void released(FakeComponent *component, int instance);
    bool hidesFileName() const { return m_hideFileName; }
    bool refusesFileName() const { return m_refuseFileName; }
    bool allowsDuplicates() const { return m_allowDuplicates; }
    int columns() const { return m_columns; }

    void reset() override;
    const QList<FakeCall> &log() const override { return m_log; }
    void clearLog() override { m_log.clear(); }
    void setLogging(bool on) override { m_logging = on; }
    int calls(const QString &member) const override;
    int instances() const override { return static_cast<int>(m_alive.size()); }
    void failAtCall(int n, const QString &text) override;
    void failOn(const QString &member, const QString &text, int first) override;
    void stopFailing() override;
    void setHook(std::function<void(const FakeCall &)> hook) override { m_hook = std::move(hook); }
    void setHideFileName(bool hide) override { m_hideFileName = hide; }
    void setRefuseFileName(bool refuse) override { m_refuseFileName = refuse; }
    void setAllowDuplicates(bool allow) override { m_allowDuplicates = allow; }
    void setSteps(bool has) override { m_hasSteps = has; }
    bool hasSteps() const { return m_hasSteps; }
    void setColumns(int recordsTogether) override { m_columns = recordsTogether; }
    void notice(const QString &text) override;

private:
    struct Order {
        int callsLeft;
        QString text;
    };
    void record(const FakeCall &call);

    QList<FakeCall> m_log;
    QHash<QString, int> m_counts;
    int m_count = 0;
    bool m_logging = true;
    Order m_nextCalls{0, {}};
    QHash<QString, Order> m_members;
    std::function<void(const FakeCall &)> m_hook;
    bool m_hideFileName = false;
    bool m_refuseFileName = false;
    bool m_allowDuplicates = false;
    bool m_hasSteps = false;
    int m_columns = 0;
    QSet<FakeComponent *> m_alive;
    int m_lastInstance = 0;
};

} // namespace qir
