#pragma once

#include <QByteArray>
#include <QStringList>

namespace qir {

/// Makes these the folders that components are looked for in first, while it lives.
class ComponentPath {
public:
    explicit ComponentPath(const QStringList &folders)
        : m_before(qgetenv("QIR_COMPONENT_PATH")) {
        qputenv("QIR_COMPONENT_PATH", folders.join(u':').toUtf8());
    }
    ~ComponentPath() { qputenv("QIR_COMPONENT_PATH", m_before); }
    ComponentPath(const ComponentPath &) = delete;
    ComponentPath &operator=(const ComponentPath &) = delete;

private:
    QByteArray m_before;
};

} // namespace qir
