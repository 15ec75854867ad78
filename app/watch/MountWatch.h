#pragma once

#include <QFile>
#include <QObject>
#include <QSocketNotifier>

namespace qir {

/// Tells that a disk was mounted or unmounted: of what then stands under a path, or does no more, watches on files tell
/// nothing. Says nothing where the system does not tell.
class MountWatch : public QObject {
    Q_OBJECT

public:
    MountWatch();

Q_SIGNALS:
    void happened();

private:
    QFile m_mounts;
    QSocketNotifier m_notifier{QSocketNotifier::Exception};
};

} // namespace qir
