#pragma once

#include "base/FreedMemory.h"
#include "dialogs/FixedText.h"

#include <QString>

#include <cstdint>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// What the input box's procedure and its window share. There is one record; it lives as long as the program and each
/// use overwrites it, so that an input box closed by its close box gives back the answer of the use before.
struct DatiInputBox {
    FixedText prompt;
    FixedText title;
    FixedText defaultText;          ///< Initial content, and the result of a cancel.
    std::int16_t defaultLength = 0; ///< Of the default as passed in, also beyond the field.
    FixedText result;
    bool cancelled = false;
    bool multiline = false;
    bool password = false; ///< Masks the single-line text box; nothing else.
};

DatiInputBox &datiInputBox();

/// Asks for one line of text, or for several, in a modal window. Gives the confirmed text (at most 255 characters), or
/// after a cancel the default, without trailing blanks; `cancelled` tells which. A window closed by its close box
/// leaves `cancelled` False and gives what the use before gave.
QString CustomInputBox(QWidget *parent, const QString &prompt, const QString &title, const QString &defaultText,
                       bool &cancelled, bool multiline, bool password);

/// To live for the whole of a command that asks for something secret, not for one box of it: all memory freed meanwhile
/// is overwritten, and the record at the end.
class InputBoxWipe {
public:
    InputBoxWipe() = default;
    ~InputBoxWipe() { datiInputBox() = DatiInputBox(); }
    InputBoxWipe(const InputBoxWipe &) = delete;
    InputBoxWipe &operator=(const InputBoxWipe &) = delete;

private:
    FreedMemoryWipe m_freed;
};

} // namespace qir
