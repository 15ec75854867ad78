#pragma once

#include "cli/audit/AuditResult.h"

#include <map>

namespace qir {

/// What an audit came to: kept of it are the files that are not the same, and how often each table differs.
class AuditReport {
public:
    void add(const AuditResult &result);

    qint64 same() const { return m_same; }
    qint64 different() const { return m_different; }
    qint64 troubles() const { return m_troubles; }

    /// Figures in a line.
    QString summary() const;
    /// One page: the tables that deviate, the most frequent first, and the files.
    QByteArray html(const QString &golden) const;

private:
    qint64 m_same = 0;
    qint64 m_different = 0;
    qint64 m_troubles = 0;
    std::vector<AuditResult> m_deviating;
    struct Frequency {
        qint64 files = 0;
        qint64 cells = 0;
    };
    std::map<QString, Frequency> m_tables;
};

/// A result that is not the same, as a person reads it.
QString auditLine(const AuditResult &result);

} // namespace qir
