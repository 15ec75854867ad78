#include "tests/tools/fake/FakeRecorder.h"

#include "tests/tools/fake/FakeComponent.h"

using namespace Qt::StringLiterals;

namespace qir {

FakeRecorder &FakeRecorder::self() {
    static FakeRecorder recorder;
    return recorder;
}

void FakeRecorder::record(const FakeCall &call) {
    ++m_count;
    ++m_counts[call.member];
    if (m_logging)
        m_log += call;
}

void FakeRecorder::called(const char *member, const QVariantList &arguments, int instance) {
    const FakeCall call{QString::fromLatin1(member), arguments, instance};
    record(call);
    if (m_hook)
        m_hook(call);
    if (m_nextCalls.callsLeft > 0 && --m_nextCalls.callsLeft == 0)
        throw std::runtime_error(m_nextCalls.text.toStdString());
    if (const auto order = m_members.find(call.member); order != m_members.end()) {
        if (order->callsLeft > 1)
            --order->callsLeft;
        else
            throw std::runtime_error(order->text.toStdString());
    }
}

int FakeRecorder::created(FakeComponent *component) {
    m_alive.insert(component);
    record({u"(create)"_s, {}, ++m_lastInstance});
    return m_lastInstance;
}

void FakeRecorder::released(FakeComponent *component, int instance) {
    m_alive.remove(component);
    record({u"(release)"_s, {}, instance});
}

void FakeRecorder::reset() {
    m_log.clear();
    m_counts.clear();
    m_count = 0;
    m_logging = true;
    stopFailing();
    m_hook = nullptr;
    m_hideFileName = m_refuseFileName = m_allowDuplicates = m_hasSteps = false;
    m_columns = 0;
}

int FakeRecorder::calls(const QString &member) const {
    return member.isEmpty() ? m_count : m_counts.value(member);
}

void FakeRecorder::failAtCall(int n, const QString &text) {
    m_nextCalls = {n, text};
}

void FakeRecorder::failOn(const QString &member, const QString &text, int first) {
    m_members[member] = {first, text};
}

void FakeRecorder::stopFailing() {
    m_nextCalls = {0, {}};
    m_members.clear();
}

void FakeRecorder::notice(const QString &text) {
    for (FakeComponent *component : QSet(m_alive))
        Q_EMIT component->Notice(text);
}

} // namespace qir
