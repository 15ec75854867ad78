#pragma once

#include "pane/EditorContext.h"
#include "pane/FileNameLabel.h"

#include <QObject>

#include <array>
#include <cstdint>

namespace qir {

/// Says at a pane's file name whether its changes are saved, and whether the file is protected or read-only; a tool tip
/// says the rest. The window has the desktop's own mark for what is not saved.
class FileSigns : public QObject {
    Q_OBJECT

public:
    explicit FileSigns(EditorContext &editor)
        : m_editor(editor) {}

    /// Once the controls and the commands stand.
    void build();
    /// At the end of each command. A component that was unchanged is asked nothing while nobody writes to its tables.
    void settle();
    /// The file is another, or was changed: looks at it again.
    void lookAtFile(int pane);
    /// Whether the pane's database has changes that are not saved, as its sign says.
    bool unsaved(int pane) const { return label(pane).signs().unsaved; }

Q_SIGNALS:
    /// Other signs are shown.
    void changed();

private:
    FileNameLabel &label(int pane) const;
    void refreshFlags();
    void show(int pane, const FileNameLabel::Signs &signs);
    QString details(int pane) const;

    EditorContext &m_editor;
    std::array<std::uint64_t, 2> m_revisions{};
};

} // namespace qir
