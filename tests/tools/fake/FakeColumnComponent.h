#pragma once

#include "tests/tools/fake/FakeComponent.h"

namespace qir {

/// The fake with the members for whole columns besides. Blocks are made for each call: nothing is shared.
class FakeColumnComponent final : public FakeComponent {
    Q_OBJECT

public:
    Q_INVOKABLE QVariant ReadColumn(int field, int first, int count) const;
    Q_INVOKABLE void WriteColumn(int field, int first, const QVariant &block);
    Q_INVOKABLE void AppendRecords(int count);
    Q_INVOKABLE double TableRevision();

private:
    /// Tables as they were when they were asked for; as long as these live, a table that shares them is unchanged.
    struct Seen {
        fake::Table table;
        double revision;
    };
    QList<Seen> m_seen;
};

} // namespace qir
