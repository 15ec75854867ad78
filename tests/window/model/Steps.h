#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace qir::test {

/// What a person does next. The numbers choose panes, lines, cells, texts and answers, each taken modulo what there
/// is then, so that a step makes sense in every state and any of them can be left out.
struct Step {
    enum Kind {
        SelectLine,
        SelectByKey,
        ClickFrame,
        OtherPane,
        AddTable,
        RenameTable,
        RemoveTable,
        CloneTable,
        AddField,
        RenameField,
        RemoveField,
        ResizeField,
        AddRecord,
        RemoveRecord,
        CloneSize,
        CloneArea,
        EditCell,
        CopyBlock,
        PasteBlock,
        PasteText,
        EmptyBlock,
        FillDown,
        SortColumn,
        FitColumns,
        CompareAgain,
        Walk,
        CarryCells,
        CarryRecord,
        CarryTable,
        LookAtDifferences,
        LookAtWindows,
        Open,
        Save,
        SaveAs,
        Close,
        OneMenu,
        TwoMenu,
        Restart,
        Undo,
        Redo,
        GoToState,
        Revert,
        PasteAll,
        ReplaceAll,
        GoToRecord,
        WalkCells,
        WalkToEnd,
        CarryAndGoOn,
        CarryByKey,
        KindCount
    };

    Kind kind = SelectLine;
    std::array<unsigned, 6> picks{};

    /// Its kind's name and its numbers.
    QString text() const;
    static std::optional<Step> fromText(const QString &text);
};

/// Steps to take from the start, with a seed that the files and the first panes follow from.
struct Sequence {
    std::uint64_t seed = 0;
    std::vector<Step> steps;

    /// In one line, which fromText() reads back.
    QString text() const;
    static std::optional<Sequence> fromText(const QString &text);
};

/// Random steps, the same for the same seed; the usual ones more often.
Sequence randomSequence(std::uint64_t seed, int count);

/// A sequence that still fails, with as few steps as leaving some out again and again gives. `fails` takes a sequence
/// from the start; it is called `mostRuns` times at most.
Sequence shortened(Sequence sequence, const std::function<bool(const Sequence &)> &fails, int mostRuns);

} // namespace qir::test
