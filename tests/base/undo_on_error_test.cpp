#include "base/UndoOnError.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using qir::UndoOnError;

namespace {

TEST(UndoOnError, KeepsWhatAScopeThatEndsHasDone) {
    bool undone = false;
    const auto answer = [&] {
        const UndoOnError undo([&] { undone = true; });
        return 7;
    }();
    EXPECT_EQ(answer, 7);
    EXPECT_FALSE(undone);
}

TEST(UndoOnError, UndoesBeforeAnyErrorIsHandled) {
    std::string order;
    try {
        const UndoOnError first([&] { order += "1"; });
        const UndoOnError second([&] { order += "2"; });
        throw 5; // whatever it is
    } catch (int) {
        order += "handled";
    }
    EXPECT_EQ(order, "21handled") << "the last one begun goes first";
}

TEST(UndoOnError, LeavesAloneWhatIsDoneWhileAnotherErrorPasses) {
    struct AtTheEnd {
        bool &undone;
        ~AtTheEnd() {
            const UndoOnError undo([this] { undone = true; });
        }
    };
    bool undone = false;
    EXPECT_THROW(
        {
            const AtTheEnd end{undone};
            throw std::runtime_error("on its way already");
        },
        std::runtime_error);
    EXPECT_FALSE(undone);
}

TEST(UndoOnError, UndoesOnAnErrorThatPassesWhileAnotherIsOnItsWay) {
    struct AtTheEnd {
        int &undone;
        ~AtTheEnd() {
            try {
                const UndoOnError undo([this] { ++undone; });
                throw std::runtime_error("a second one");
            } catch (const std::runtime_error &) {
            }
        }
    };
    int undone = 0;
    EXPECT_THROW(
        {
            const AtTheEnd end{undone};
            throw std::logic_error("the first one");
        },
        std::logic_error);
    EXPECT_EQ(undone, 1);
}

TEST(UndoOnError, KeepsWhatAnErrorHandledWithinHasLeft) {
    bool undone = false;
    {
        const UndoOnError undo([&] { undone = true; });
        try {
            throw std::runtime_error("stays inside");
        } catch (const std::runtime_error &) {
        }
    }
    EXPECT_FALSE(undone);
}

} // namespace
