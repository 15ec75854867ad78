#pragma once

#include <exception>
#include <utility>

namespace qir {

/// Undoes what a scope has begun when an exception leaves it, whichever that is; a scope that ends otherwise keeps it.
/// `Undo` throws nothing. The guard must be made after whatever its undoing needs.
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

/// Runs `step`; when a std::exception leaves it, runs `undo` and lets the exception go on. For an undoing that may fail
/// or yield, which no destructor may; what is no std::exception ends the program, and there is nothing to put right.
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
