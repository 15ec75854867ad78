#include "app/desktop/FileSigns.h"

#include "app/desktop/OpenFiles.h"
#include "app/shared/Funzioni.h"

#include <QAction>
#include <QFileInfo>
#include <QLocale>

#include <exception>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Nobody may write the file, or not this user.
bool isReadOnly(const QString &path) {
    const QFileInfo file(path);
    constexpr QFile::Permissions writers = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return file.exists() && (!file.isWritable() || !(file.permissions() & writers));
}

/// Whether changes are not saved; `otherwise` where the component does not tell.
bool hasChanged(const QirDatabase &database, bool otherwise) {
    try {
        return !database.isEmpty() && database.DtbHasChanged();
    } catch (const std::exception &) {
        return otherwise;
    }
}

} // namespace

FileNameLabel &FileSigns::label(int pane) const {
    return static_cast<FileNameLabel &>(m_editor.nomelab(pane));
}

void FileSigns::build() {
    for (const int pane : {0, 1})
        label(pane).setDetails([this, pane] { return details(pane); });
    // It changes no table, and is a matter of two calls that nothing else comes between: looked at once it is over.
    connect(&m_editor.controls().action(Command::ChangePassword), &QAction::triggered, this, &FileSigns::refreshFlags,
            Qt::QueuedConnection);
}

void FileSigns::settle() {
    for (const int pane : {0, 1}) {
        const bool open = m_editor.DtbAperto(pane);
        const QirDatabase &database = m_editor.OggettoDtb(pane);
        const std::uint64_t revision = open ? database.revision() : 0;
        FileNameLabel::Signs signs = open ? label(pane).signs() : FileNameLabel::Signs();
        // A database becomes changed by what is written to it alone.
        if (revision == m_revisions.at(static_cast<std::size_t>(pane)) && !signs.unsaved)
            continue;
        m_revisions.at(static_cast<std::size_t>(pane)) = revision;
        signs.unsaved = open && hasChanged(database, signs.unsaved);
        show(pane, signs);
    }
}

void FileSigns::refreshFlags() {
    m_revisions = {};
    settle();
}

void FileSigns::lookAtFile(int pane) {
    FileNameLabel::Signs signs = label(pane).signs();
    signs.unsaved = hasChanged(m_editor.OggettoDtb(pane), signs.unsaved);
    signs.isProtected = openFileProtection(m_editor, pane) == Protection::Protected;
    signs.readOnly = isReadOnly(openFilePath(m_editor, pane));
    show(pane, signs);
}

void FileSigns::show(int pane, const FileNameLabel::Signs &signs) {
    const bool others = signs != label(pane).signs();
    label(pane).setSigns(signs);
    QStringList said{label(pane).text()};
    if (signs.unsaved)
        said.append(tr("changes not saved"));
    if (signs.isProtected)
        said.append(tr("protected by a password"));
    if (signs.readOnly)
        said.append(tr("read-only"));
    label(pane).setAccessibleDescription(said.join(u", "_s));
    QWidget &window = *m_editor.controls().window;
    const bool modified = label(0).signs().unsaved || label(1).signs().unsaved;
    if (modified != window.isWindowModified()) {
        // The place of the mark, which is no part of the title while there is none.
        window.setWindowTitle(modified ? applicationTitle() + u"[*]"_s : applicationTitle());
        window.setWindowModified(modified);
    }
    if (others)
        Q_EMIT changed();
}

QString FileSigns::details(int pane) const {
    const QFileInfo file(openFilePath(m_editor, pane));
    const QLocale locale;
    QStringList lines{file.filePath()};
    if (file.exists()) {
        lines.append(tr("%1, changed %2")
                         .arg(locale.formattedDataSize(file.size()),
                              locale.toString(file.lastModified(), QLocale::ShortFormat)));
        if (file.birthTime().isValid()) // not every disk knows
            lines.append(tr("Made %1").arg(locale.toString(file.birthTime(), QLocale::ShortFormat)));
        lines.append(tr("Read %1").arg(locale.toString(file.lastRead(), QLocale::ShortFormat)));
    } else {
        lines.append(tr("Not on disk"));
    }
    const FileNameLabel::Signs &signs = label(pane).signs();
    if (signs.unsaved)
        lines.append(tr("Changes are not saved"));
    if (signs.isProtected)
        lines.append(tr("Protected by a password"));
    if (signs.readOnly)
        lines.append(tr("Read-only"));
    return lines.join(u'\n');
}

} // namespace qir
