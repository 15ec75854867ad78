#pragma once

#include "base/FileOps.h"

#include <QByteArray>
#include <QString>

#include <string>

namespace qir {

/// A small file in a state folder that is read and replaced whole. What stands there is never trusted to be ours: a
/// file of another user, one that others may write, a link, a pipe or one that is larger than any of ours counts as
/// missing.
class StateFile {
public:
    static constexpr qint64 mostBytes = 1 << 20;

    StateFile(FileOps &ops, QString folder, std::string name)
        : m_ops(ops)
        , m_folder(std::move(folder))
        , m_name(std::move(name)) {}

    /// Its bytes; empty where there are none to take.
    QByteArray read() const;
    /// Replaces it in one step; a link under its name gives way itself, not what it leads to. A failure leaves what
    /// stood there.
    SystemResult<void> write(QByteArrayView bytes) const;

private:
    FileOps &m_ops;
    QString m_folder;
    std::string m_name;
};

} // namespace qir
