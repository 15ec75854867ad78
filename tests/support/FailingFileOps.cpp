#include "tests/support/FailingFileOps.h"

#include <algorithm>

namespace qir {

bool FailingFileOps::isFaulty() const {
    const int current = calls() - 1;
    return m_fault.at >= 0 && (m_fault.forever ? current >= m_fault.at : current == m_fault.at);
}

std::optional<SystemError> FailingFileOps::before(FileCall call, const std::string &) {
    m_made.push_back(call);
    if (m_fault.kind == Fault::Kind::Undone && isFaulty())
        return SystemError{m_fault.number};
    return std::nullopt;
}

std::optional<SystemError> FailingFileOps::after(FileCall) {
    if (m_fault.kind == Fault::Kind::Done && isFaulty())
        return SystemError{m_fault.number};
    return std::nullopt;
}

std::size_t FailingFileOps::allowed(FileCall, std::size_t size) {
    return m_fault.kind == Fault::Kind::ShortCount && isFaulty() ? std::min<std::size_t>(size, 1) : size;
}

SystemResult<int> HookedFileOps::doOpenAt(int folder, const std::string &name, int flags, mode_t mode) {
    if (onOpen)
        if (const auto error = onOpen(static_cast<unsigned>(flags)))
            return tl::unexpected(*error);
    if (onOpenIn) {
        const auto path = under().readLinkAt(AT_FDCWD, "/proc/self/fd/" + std::to_string(folder));
        if (const auto error = onOpenIn(path.value_or(std::string()), static_cast<unsigned>(flags)))
            return tl::unexpected(*error);
    }
    return ForwardingFileOps::doOpenAt(folder, name, flags, mode);
}

SystemResult<void> HookedFileOps::doRenameAt(int folder, const std::string &from, const std::string &to,
                                             unsigned flags) {
    if (onRename)
        if (const auto error = onRename(flags))
            return tl::unexpected(*error);
    return ForwardingFileOps::doRenameAt(folder, from, to, flags);
}

} // namespace qir
