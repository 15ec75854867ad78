#include "base/words/StorageWords.h"

#include "base/ErrorWords.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <optional>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto context = "Storage";
constexpr int deepest = 6; // reasons within reasons

/// What a component's texts are made of, as it writes them; tests/architecture/storage_words.py holds that none of them
/// is missing here.
constexpr const char *forms[] = {
    // What the system answers.
    QT_TRANSLATE_NOOP("Storage", "the disk is full"),
    QT_TRANSLATE_NOOP("Storage", "the disk quota is used up"),
    QT_TRANSLATE_NOOP("Storage", "the disk is read-only"),
    QT_TRANSLATE_NOOP("Storage", "no permission"),
    QT_TRANSLATE_NOOP("Storage", "no such file or folder"),
    QT_TRANSLATE_NOOP("Storage", "a part of the path is not a folder"),
    QT_TRANSLATE_NOOP("Storage", "it is a folder"),
    QT_TRANSLATE_NOOP("Storage", "the name is already taken"),
    QT_TRANSLATE_NOOP("Storage", "the disk reported an error"),
    QT_TRANSLATE_NOOP("Storage", "the file would be larger than the disk or a limit of the system allows"),
    QT_TRANSLATE_NOOP("Storage", "the name is too long"),
    QT_TRANSLATE_NOOP("Storage", "too many links lead to one another"),
    QT_TRANSLATE_NOOP("Storage", "too many files are open"),
    QT_TRANSLATE_NOOP("Storage", "there is not enough memory"),
    QT_TRANSLATE_NOOP("Storage", "the call was interrupted again and again"),
    QT_TRANSLATE_NOOP("Storage", "it is in use"),
    QT_TRANSLATE_NOOP("Storage", "it is gone from the server"),
    QT_TRANSLATE_NOOP("Storage", "There is not enough memory."),
    // Names and places.
    QT_TRANSLATE_NOOP("Storage", "'%1' and '%2' in '%3' differ only in case"),
    QT_TRANSLATE_NOOP("Storage", "'%1' holds a character that no file name can hold"),
    QT_TRANSLATE_NOOP("Storage", "the argument \"%1\" is not UTF-8: such a name cannot be told from another one"),
    QT_TRANSLATE_NOOP("Storage", "the current folder \"%1\" is not UTF-8: such a name cannot be told from another one"),
    QT_TRANSLATE_NOOP("Storage", "it belongs to another user"),
    QT_TRANSLATE_NOOP("Storage", "other users may change it (its permissions must be private to you)"),
    // Why a file is not loaded.
    QT_TRANSLATE_NOOP("Storage", "it is empty"),
    QT_TRANSLATE_NOOP("Storage", "it is a device, not a file"),
    QT_TRANSLATE_NOOP("Storage", "it cannot be opened: %1"),
    QT_TRANSLATE_NOOP("Storage", "it cannot be read: %1"),
    QT_TRANSLATE_NOOP("Storage", "it ends after %1 of %2 bytes"),
    QT_TRANSLATE_NOOP("Storage", "it ends after %1 bytes"),
    QT_TRANSLATE_NOOP("Storage", "it is damaged: %1 bytes follow its end"),
    QT_TRANSLATE_NOOP("Storage", "it is damaged: part %1 of %2 does not match its checksum"),
    QT_TRANSLATE_NOOP("Storage", "it is damaged: %1"),
    QT_TRANSLATE_NOOP("Storage", "it is damaged"),
    QT_TRANSLATE_NOOP("Storage", "its content is larger than is accepted (%1 bytes)"),
    QT_TRANSLATE_NOOP("Storage", "it is protected and needs a password"),
    QT_TRANSLATE_NOOP("Storage", "the password does not open it"),
    QT_TRANSLATE_NOOP("Storage", "its header is not the one that was written"),
    QT_TRANSLATE_NOOP("Storage", "there is not enough memory to turn the password into a key (%1 MiB are needed)"),
    QT_TRANSLATE_NOOP("Storage", "there is not enough memory to turn the password into a key"),
    QT_TRANSLATE_NOOP("Storage", "it is not a database of this program"),
    QT_TRANSLATE_NOOP("Storage", "it was made by a newer version of this program (%1)"),
    QT_TRANSLATE_NOOP("Storage", "it was made by a newer version of this program"),
    QT_TRANSLATE_NOOP("Storage", "its header does not match its checksum"),
    QT_TRANSLATE_NOOP("Storage", "format %1.%2"),
    QT_TRANSLATE_NOOP("Storage", "there is no format 0"),
    QT_TRANSLATE_NOOP("Storage", "it needs a feature that this version does not have"),
    QT_TRANSLATE_NOOP("Storage", "it uses header bytes that this version does not know"),
    QT_TRANSLATE_NOOP("Storage", "its parts have a size that is not accepted"),
    QT_TRANSLATE_NOOP("Storage", "it is sealed in a way that this version does not know"),
    QT_TRANSLATE_NOOP("Storage", "it says both that it is protected and that it is open"),
    QT_TRANSLATE_NOOP("Storage", "it is open but has a password's traces"),
    QT_TRANSLATE_NOOP("Storage", "it has no identity"),
    QT_TRANSLATE_NOOP("Storage", "its header's extensions have no end"),
    // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): one text
    QT_TRANSLATE_NOOP("Storage", "trying a password on it would take more time or memory than is accepted (%1 passes "
                                 "over %2 KiB)"),
    QT_TRANSLATE_NOOP("Storage", "its tables take more memory than is allowed"),
    QT_TRANSLATE_NOOP("Storage", "a length in it reaches beyond its end"),
    QT_TRANSLATE_NOOP("Storage", "bytes that must be zero are not"),
    QT_TRANSLATE_NOOP("Storage", "a table has more than %1 records"),
    QT_TRANSLATE_NOOP("Storage", "a table has more than %1 fields"),
    QT_TRANSLATE_NOOP("Storage", "a table without fields has records"),
    QT_TRANSLATE_NOOP("Storage", "a field has an unknown type"),
    QT_TRANSLATE_NOOP("Storage", "a field that is no text has a size"),
    QT_TRANSLATE_NOOP("Storage", "two fields of the table \"%1\" have the same name \"%2\""),
    QT_TRANSLATE_NOOP("Storage", "a table has bytes left over"),
    QT_TRANSLATE_NOOP("Storage", "a name is not in UTF-8"),
    QT_TRANSLATE_NOOP("Storage", "a name is longer than %1 characters"),
    QT_TRANSLATE_NOOP("Storage", "a name is empty"),
    QT_TRANSLATE_NOOP("Storage", "a section has flags that its type does not have"),
    QT_TRANSLATE_NOOP("Storage", "there are bytes after its end"),
    QT_TRANSLATE_NOOP("Storage", "a table stands after other sections"),
    QT_TRANSLATE_NOOP("Storage", "it has more than %1 tables"),
    QT_TRANSLATE_NOOP("Storage", "two tables have the same name \"%1\""),
    QT_TRANSLATE_NOOP("Storage", "a bool is neither 0 nor 1"),
    QT_TRANSLATE_NOOP("Storage", "a number is not finite"),
    QT_TRANSLATE_NOOP("Storage", "a text is longer than its field"),
    QT_TRANSLATE_NOOP("Storage", "a text is not in UTF-8"),
    QT_TRANSLATE_NOOP("Storage", "no file name was given"),
    QT_TRANSLATE_NOOP("Storage", "the database has not been saved yet"),
    QT_TRANSLATE_NOOP("Storage", "%1: another program has changed it since"),
    QT_TRANSLATE_NOOP("Storage", "%1: there is not enough memory to load it"),
    QT_TRANSLATE_NOOP("Storage", "This file asks for more than usual: trying a password takes %1%2 MiB of memory."),
    QT_TRANSLATE_NOOP("Storage", "about %1 times as long, and "),
    // Why it is not saved, and what became of what stood there.
    QT_TRANSLATE_NOOP("Storage", "%1: could not be saved: %2"),
    QT_TRANSLATE_NOOP("Storage", "%1: was changed %2 since it was opened; use Save As"),
    QT_TRANSLATE_NOOP("Storage", "in the other pane"),
    QT_TRANSLATE_NOOP("Storage", "by another program"),
    QT_TRANSLATE_NOOP("Storage", "its folder is gone"),
    QT_TRANSLATE_NOOP("Storage", "it is marked read-only; use Save As"),
    QT_TRANSLATE_NOOP("Storage", "its name now belongs to something that is not a file"),
    QT_TRANSLATE_NOOP("Storage", "it cannot be read any more: %1"),
    QT_TRANSLATE_NOOP("Storage", "another program is saving it just now; try again"),
    QT_TRANSLATE_NOOP("Storage", "what was written does not read back: %1"),
    QT_TRANSLATE_NOOP("Storage", "another program has just made a file of this name; use Save As"),
    QT_TRANSLATE_NOOP("Storage", "%1: was saved, but a power failure now might bring the old version back: %2"),
    QT_TRANSLATE_NOOP("Storage", "%1 (it stays as '%2')"),
    QT_TRANSLATE_NOOP("Storage", "what stood there could not be looked at again; it"),
    QT_TRANSLATE_NOOP("Storage", "another program had saved it meanwhile, and its version"),
    QT_TRANSLATE_NOOP("Storage", "the version that stood there"),
    QT_TRANSLATE_NOOP("Storage", "%1: was saved, but its previous version could not be removed and stays as '%2': %3"),
    QT_TRANSLATE_NOOP("Storage", "%1: the version that stood there is kept as '%2'"),
    QT_TRANSLATE_NOOP("Storage", "%1: %2 is kept as '%3'"),
    QT_TRANSLATE_NOOP("Storage", "%1: a version that an interrupted save had left behind is kept as '%2'"),
    QT_TRANSLATE_NOOP("Storage", "an earlier save of it had been cut short, and it could not be made whole first: %1"),
    QT_TRANSLATE_NOOP("Storage", "no safe copy of it could be made in '%1' first: %2"),
    QT_TRANSLATE_NOOP("Storage", "%1; it is incomplete now, and becomes what it was before when it is next saved or "
                                 "opened"),
    QT_TRANSLATE_NOOP("Storage", "%1; whether the old or the new version stands there now could not be found out"),
    QT_TRANSLATE_NOOP("Storage", "the version that stands there could not be kept: %1"),
    QT_TRANSLATE_NOOP("Storage", "%1\n\nThe changes could not be kept in '%2' either: %3"),
    QT_TRANSLATE_NOOP("Storage", "%1\n\nThe changes are kept in '%2'."),
    QT_TRANSLATE_NOOP("Storage", "the current password is wrong"),
    QT_TRANSLATE_NOOP("Storage", "no database is loaded"),
    // What an interrupted save has left.
    QT_TRANSLATE_NOOP("Storage", "%1; the safe copy '%2' of a save that was cut short may not be read"),
    QT_TRANSLATE_NOOP("Storage", "the safe copy '%1' of a save that was cut short may not be read"),
    QT_TRANSLATE_NOOP("Storage", "it is not the file that was being saved, but a copy of it"),
    QT_TRANSLATE_NOOP("Storage", "a save of the file that stood here before had been cut short; it is '%1' now and "
                                 "becomes whole when it is opened"),
    QT_TRANSLATE_NOOP("Storage", "a save of it had been cut short; it is again what it was before that save"),
    QT_TRANSLATE_NOOP("Storage", "a save of it had been cut short, and it could not be made whole: %1; what it was "
                                 "before that save is shown"),
    QT_TRANSLATE_NOOP("Storage", "a save of it had been cut short, and something else was put in its place since"),
    QT_TRANSLATE_NOOP("Storage", "%1; what it was before that save and what was to be saved are still in '%2'"),
    QT_TRANSLATE_NOOP("Storage", "%1; what it was before that save and what was to be saved are still in '%2', but "
                                 "could not be kept in '%3': %4"),
    QT_TRANSLATE_NOOP("Storage", "%1; what it was before that save is kept in '%2', what was to be saved in '%3'"),
    // What a session that died has left.
    QT_TRANSLATE_NOOP("Storage", "there may be unsaved changes to it, but %1"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes in '%1' that this password does not open: those of "
                                 "another protected file, or of this one under another password; they are kept, and "
                                 "shown when that is opened"),
    QT_TRANSLATE_NOOP("Storage", "there may be unsaved changes in '%1', but they are not taken up: %2"),
    QT_TRANSLATE_NOOP("Storage", "unsaved changes in '%1' cannot be read: it is damaged"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes in '%1' that were not sealed with its password; they are "
                                 "kept there, and not taken up"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes to '%1', of which this is a copy; they are shown when "
                                 "that one is opened"),
    QT_TRANSLATE_NOOP("Storage", "'%1' cannot be read: %2"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes to another database that stood here before; they are "
                                 "kept in '%1', and shown when that one is opened"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes that were sealed with another password; they are kept "
                                 "for when it is opened with that one"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes, but they cannot be read now: %1"),
    QT_TRANSLATE_NOOP("Storage", "the journal of these changes is damaged: those that were made last are missing"),
    QT_TRANSLATE_NOOP("Storage", "%1; all that is left of it is kept in '%2' for seven days"),
    QT_TRANSLATE_NOOP("Storage", "changes that were not saved when the program ended could not be made again; they "
                                 "are kept in '%1' for seven days"),
    QT_TRANSLATE_NOOP("Storage", "changes that were not saved when the program ended are there again; they are still "
                                 "unsaved"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes to an earlier version of it, which cannot be made in "
                                 "this one; they are kept in '%1' for seven days"),
    QT_TRANSLATE_NOOP("Storage", "there are unsaved changes of another session in '%1', which cannot be kept as a "
                                 "file of their own now: %2"),
    QT_TRANSLATE_NOOP("Storage", "unsaved changes of another session are kept as a file of their own in '%1'"),
    QT_TRANSLATE_NOOP("Storage", "some of these changes could not be made in this version, and are missing there; "
                                 "all of them are kept in '%1' for seven days"),
    QT_TRANSLATE_NOOP("Storage", "unsaved changes of another session are still kept as they were sealed before, not "
                                 "with the password that holds now: %1"),
    QT_TRANSLATE_NOOP("Storage", "another editor writes them"),
    QT_TRANSLATE_NOOP("Storage", "it is not a file"),
    QT_TRANSLATE_NOOP("Storage", "it is no journal"),
    QT_TRANSLATE_NOOP("Storage", "a newer version of this program wrote it"),
    QT_TRANSLATE_NOOP("Storage", "'%1' is not used: %2"),
    QT_TRANSLATE_NOOP("Storage", "'%1' cannot be read now: %2"),
    QT_TRANSLATE_NOOP("Storage", "%1: changes are not kept safe against a crash until it is saved: %2"),
    QT_TRANSLATE_NOOP("Storage", "%1: another program took away the journal that keeps its unsaved changes; it was "
                                 "written anew"),
    QT_TRANSLATE_NOOP("Storage", "the system does not tell where it stands"),
    QT_TRANSLATE_NOOP("Storage", "a text in a journal is not in UTF-8"),
    QT_TRANSLATE_NOOP("Storage", "a block in a journal does not fit its field"),
    // Why tables, fields and records are not changed.
    QT_TRANSLATE_NOOP("Storage", "The name \"%1...\" is longer than %2 characters."),
    QT_TRANSLATE_NOOP("Storage", "\"%1\" cannot be a name: it is empty."),
    QT_TRANSLATE_NOOP("Storage", "A table \"%1\" already exists."),
    QT_TRANSLATE_NOOP("Storage", "A database holds at most %1 tables."),
    QT_TRANSLATE_NOOP("Storage", "There is no field type with the code %1."),
    QT_TRANSLATE_NOOP("Storage", "A field \"%1\" already exists."),
    QT_TRANSLATE_NOOP("Storage", "A table holds at most %1 fields."),
    QT_TRANSLATE_NOOP("Storage", "A table holds at most %1 records."),
    QT_TRANSLATE_NOOP("Storage", "A text of a block is not in UTF-8."),
    QT_TRANSLATE_NOOP("Storage", "There is no table \"%1\"."),
    QT_TRANSLATE_NOOP("Storage", "There is no table number %1: the database has %2."),
    QT_TRANSLATE_NOOP("Storage", "There is no field number %1: the table has %2."),
    QT_TRANSLATE_NOOP("Storage", "There is no record number %1: the table has %2."),
    QT_TRANSLATE_NOOP("Storage", "There is no step number %1: there are %2."),
    QT_TRANSLATE_NOOP("Storage", "No table is selected."),
    QT_TRANSLATE_NOOP("Storage", "No record is selected."),
    QT_TRANSLATE_NOOP("Storage", "No database is open: its file could not be loaded."),
    QT_TRANSLATE_NOOP("Storage", "This database is in use: another file cannot be loaded into it."),
    QT_TRANSLATE_NOOP("Storage", "The database has no file name yet."),
    QT_TRANSLATE_NOOP("Storage", "The password was not changed: %1."),
    QT_TRANSLATE_NOOP("Storage", "A value of this kind cannot be stored in a field."),
    QT_TRANSLATE_NOOP("Storage", "%1 records cannot be read."),
    QT_TRANSLATE_NOOP("Storage", "%1 records cannot be added."),
    QT_TRANSLATE_NOOP("Storage", "The block has values of another type than the field."),
    QT_TRANSLATE_NOOP("Storage", "The block has more values than there are records from number %1 on."),
    QT_TRANSLATE_NOOP("Storage", "That is no order of the table's records."),
    QT_TRANSLATE_NOOP("Storage", "This is no block of a column: %1."),
    QT_TRANSLATE_NOOP("Storage", "it is no list"),
    QT_TRANSLATE_NOOP("Storage", "it begins with no type"),
    QT_TRANSLATE_NOOP("Storage", "there is no type with the code %1"),
    QT_TRANSLATE_NOOP("Storage", "its parts are not those of its type"),
    QT_TRANSLATE_NOOP("Storage", "its last value is cut off"),
    QT_TRANSLATE_NOOP("Storage", "a text reaches beyond its bytes"),
    QT_TRANSLATE_NOOP("Storage", "%1 before the running group of changes has ended."),
    QT_TRANSLATE_NOOP("Storage", "The database cannot be saved"),
    QT_TRANSLATE_NOOP("Storage", "The password cannot be changed"),
    QT_TRANSLATE_NOOP("Storage", "No step can be taken back or made again"),
    QT_TRANSLATE_NOOP("Storage", "The database cannot go back to what is saved"),
    QT_TRANSLATE_NOOP("Storage", "No group of changes has begun."),
    QT_TRANSLATE_NOOP("Storage", "No step has begun."),
    QT_TRANSLATE_NOOP("Storage", "There is nothing to take back."),
    QT_TRANSLATE_NOOP("Storage", "There is nothing to make again."),
    QT_TRANSLATE_NOOP("Storage", "%1: the first steps can no longer be taken back: the memory for steps, %2 MiB, is "
                                 "used up"),
    // Why no component is found.
    QT_TRANSLATE_NOOP("Storage", "No component serves \"%1\". Folders searched: %2."),
    QT_TRANSLATE_NOOP("Storage", "No component serves \"%1\". Folders searched: %2. Of another version of the "
                                 "interface than %3: %4."),
    QT_TRANSLATE_NOOP("Storage", "The component \"%1\" cannot be loaded from %2: %3"),
    // Why a list of conflicts is not read.
    QT_TRANSLATE_NOOP("Storage", "\"%1\" has not a name for each value"),
    QT_TRANSLATE_NOOP("Storage", "its key has no value"),
    QT_TRANSLATE_NOOP("Storage", "it has neither \"record\" nor \"key\""),
    QT_TRANSLATE_NOOP("Storage", "there are no conflicts of a \"%1\""),
    QT_TRANSLATE_NOOP("Storage", "there are no conflicts about a \"%1\""),
    QT_TRANSLATE_NOOP("Storage", "\"%1\" has a record of another length"),
    QT_TRANSLATE_NOOP("Storage", "\"%1\" has no value"),
    QT_TRANSLATE_NOOP("Storage", "it is the same as a line before it"),
};

/// One of them, to be found again in a text.
struct Form {
    const char *english = nullptr;
    QRegularExpression pattern;
    QList<int> places;     ///< Which place each of the pattern's groups stands for.
    QList<bool> areQuoted; ///< Names, which are nobody's words.
    qsizetype letters = 0; ///< Of its own, not of what is filled in.
};

Form formOf(const char *english) {
    static const QRegularExpression placePattern(u"%(\\d)"_s);
    Form form;
    form.english = english;
    const QString text = QString::fromUtf8(english);
    QString pattern;
    qsizetype end = 0;
    for (const QRegularExpressionMatch &place : placePattern.globalMatch(text)) {
        const QStringView before = QStringView(text).sliced(end, place.capturedStart() - end);
        pattern += QRegularExpression::escape(before) + u"(.*?)"_s;
        form.places.append(place.captured(1).toInt());
        form.areQuoted.append(before.endsWith(u'\'') || before.endsWith(u'"'));
        form.letters += before.size();
        end = place.capturedEnd();
    }
    pattern += QRegularExpression::escape(QStringView(text).sliced(end));
    form.letters += text.size() - end;
    form.pattern = QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                      QRegularExpression::DotMatchesEverythingOption);
    return form;
}

/// The ones that say most first: others may be a part of them.
const std::vector<Form> &knownForms() {
    static const std::vector<Form> known = [] {
        std::vector<Form> all;
        for (const char *english : forms)
            all.push_back(formOf(english));
        std::ranges::stable_sort(all, std::ranges::greater(), &Form::letters);
        return all;
    }();
    return known;
}

/// A translated form with its places filled in, all at once: what is filled in may hold a per cent sign.
QString filled(const QString &form, const QList<int> &places, const QStringList &values) {
    QString text;
    for (qsizetype i = 0; i < form.size(); ++i) {
        const bool isPlace = form[i] == u'%' && i + 1 < form.size() && form[i + 1].isDigit();
        const qsizetype value = isPlace ? places.indexOf(form[i + 1].digitValue()) : -1;
        if (value < 0) {
            text += form[i];
        } else {
            text += values[value];
            ++i;
        }
    }
    return text;
}

QString spokenOr(const QString &text, int depth);

/// A text of one of the forms.
std::optional<QString> spokenForm(const QString &text, int depth) {
    if (depth > deepest || text.isEmpty())
        return std::nullopt;
    for (const Form &form : knownForms()) {
        const QRegularExpressionMatch match = form.pattern.match(text);
        if (!match.hasMatch())
            continue;
        QStringList values;
        for (int group = 1; group <= form.places.size(); ++group)
            values.append(form.areQuoted[group - 1] ? match.captured(group)
                                                    : spokenOr(match.captured(group), depth + 1));
        return filled(QCoreApplication::translate(context, form.english), form.places, values);
    }
    return std::nullopt;
}

/// A form; or a file's name, or one reason, and another: NAME: REASON, REASON; REASON.
QString spokenOr(const QString &text, int depth) {
    if (const auto whole = spokenForm(text, depth))
        return *whole;
    for (const QString &joint : {u"; "_s, u": "_s}) {
        for (qsizetype at = text.indexOf(joint); at >= 0 && depth < deepest; at = text.indexOf(joint, at + 1))
            if (const auto rest = spokenForm(text.sliced(at + joint.size()), depth + 1))
                return spokenOr(text.first(at), depth + 1) + joint + *rest;
    }
    return text;
}

} // namespace

QString spokenWords(const QString &text) {
    return spokenOr(text, 0);
}

QString spokenWords(const std::exception &error) {
    return spokenWords(errorWords(error));
}

} // namespace qir
