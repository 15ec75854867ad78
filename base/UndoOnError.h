#pragma once

#include <exception>
#include <utility>

namespace qir {

/// When an exception of any kind leaves the scope, undoes what the scope has begun; a scope that ends otherwise keeps
/// it. `Undo` must not throw. The guard is to be made after whatever its undoing needs.
///
///     const UndoOnError undo([&] { list.removeLast(); });
template<class Undo>
class UndoOnError {
public:
    explicit UndoOnError(Undo undo)
        : m_undo(std::move(undo)) {}
    ~UndoOnError() {
        if (std::uncaught_exceptions() > m_before) // more than were on their way when the scope began
            m_undo();
    }
    UndoOnError(const UndoOnError &) = delete;
    UndoOnError &operator=(const UndoOnError &) = delete;

private:
    Undo m_undo;
    int m_before = std::uncaught_exceptions();
};

/// Runs `step`; when a std::exception leaves it, runs `undo` and lets the exception go on. For an undoing that may
/// throw or yield, which a destructor must not. What is no std::exception ends the program: nothing need be put right
/// then.
template<class Step, class Undo>
decltype(auto) undoneOnError(Step step, Undo undo) {
    try {
        return step();
    } catch (const std::exception &) {
        undo();
        throw;
    }
}

} // namespace qir
