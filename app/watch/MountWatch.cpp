#include "app/watch/MountWatch.h"

namespace qir {

using namespace Qt::StringLiterals;

MountWatch::MountWatch()
    : m_mounts(u"/proc/self/mounts"_s) {
    if (!m_mounts.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return;
    m_notifier.setSocket(m_mounts.handle());
    m_notifier.setEnabled(true);
    connect(&m_notifier, &QSocketNotifier::activated, this, &MountWatch::happened);
}

} // namespace qir
