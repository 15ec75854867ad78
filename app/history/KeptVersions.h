#pragma once

#include "base/state/KeptFiles.h"
#include "pane/EditorContext.h"

#include <QCoreApplication>

#include <functional>

namespace qir {

/// The versions of files that were kept, to be opened, compared with what is open, or removed. Changes that were given
/// up are opened by opening their file: it shows them as unsaved again.
class KeptVersions {
    Q_DECLARE_TR_FUNCTIONS(KeptVersions)

public:
    /// How files are opened, by those who can.
    struct Opening {
        std::function<void(int pane, const QString &path)> openFile;
        std::function<void(int pane, const QString &path)> openBeside; ///< In the pane other than this one.
    };

    KeptVersions(EditorContext &editor, Opening opening)
        : m_editor(editor)
        , m_opening(std::move(opening)) {}

    /// Its row for the menus.
    void addCommands();
    void KeptVersionsMenu_Click();

private:
    std::vector<KeptFile> find() const;
    /// The pane that holds the file of which this is a version; else the active one; -1 where that holds none.
    int currentPane(const KeptFile &kept) const;
    /// The file to be opened to see it: itself, or the file that changes were made to; "" where that is not known.
    QString fileToOpen(const KeptFile &kept) const;
    void remove(const KeptFile &kept, QWidget *parent) const;
    static void open(const KeptFile &kept, const std::function<void()> &procedure);

    EditorContext &m_editor;
    Opening m_opening;
};

} // namespace qir
