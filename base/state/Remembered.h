#pragma once

#include "base/state/StateFile.h"
#include "base/state/StateFolder.h"

#include <QJsonObject>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace qir {

/// Whether a file asks for a password: nothing is kept of such files unless the user allows it.
enum class Protection { Open, Protected };

/// Two files that were side by side, by their paths.
struct FilePair {
    QString left;
    QString right;
    friend bool operator==(const FilePair &, const FilePair &) = default;
};

/// The window's place on the screen when it is not maximized, and whether it is.
struct WindowPlace {
    QRect frame;
    bool maximized = false;
};

/// What the editor remembers from one session to the next, in `editor.json` of the state folder. Several editors share
/// that file: each call reads what stands there, and a change is made on that. A file that cannot be read counts as an
/// empty one, parts of it that are not of our making as missing; where nothing can be written, what was to be
/// remembered holds until the end of the program.
class Remembered {
public:
    explicit Remembered(const QString &folder = defaultStateFolder(), FileOps &ops = FileOps::system());

    /// The files opened last, the newest first.
    QStringList files() const;
    /// The pairs of files that were side by side last, the newest first.
    QList<FilePair> pairs() const;
    void noteFile(const QString &path, Protection protection);
    void notePair(const FilePair &pair, Protection protection);
    /// A file that is not there any more, with the pairs that it was in.
    void dropFile(const QString &path);

    /// The names of the fields that a table's records are known by when these two files are compared; none when
    /// nothing was noted.
    QStringList keyFields(const FilePair &pair, const QString &table) const;
    /// An empty list forgets.
    void noteKeyFields(const FilePair &pair, const QString &table, const QStringList &fields, Protection protection);

    /// Where the file dialogs start, and the extension of the kind of file that they offer; "" when nothing is known.
    QString folder() const;
    QString kind() const;
    void noteChosen(const QString &path, Protection protection);

    std::optional<WindowPlace> windowPlace() const;
    void noteWindowPlace(const WindowPlace &place);

    /// Whether names of protected files are kept too. Once they are not, those that were are forgotten. Setting is
    /// False where it holds until the end of the program only.
    bool keepsProtected() const;
    bool setKeepsProtected(bool keeps);

    /// A choice of the user's, kept until it is changed: forgetting leaves it. `usual` where it was never made.
    QString choice(const QString &name, const QString &usual) const;
    bool setChoice(const QString &name, const QString &value);

    /// Forgets files, pairs, key fields, folder, kind and window place. False where they are back in the next session.
    bool forget();

private:
    QJsonObject load() const;
    /// False where it could not be written.
    bool change(const std::function<void(QJsonObject &)> &edit);
    bool mayKeep(Protection protection) const;

    StateFile m_file;
    std::optional<QJsonObject> m_unwritten; // what could not be written
    QString m_folder;                       // of this session, though its file be protected
    QString m_kind;
};

} // namespace qir
