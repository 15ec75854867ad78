#pragma once

#include "tests/monkey/Gestures.h"

QT_BEGIN_NAMESPACE
class QFileDialog;
class QWidget;
QT_END_NAMESPACE

namespace qir::test {

/// What the monkey does to a dialog that stands open: mostly an answer, sometimes any gesture. A file dialog gets
/// names in the monkey's own folder alone, since any click in it could reach, rename or delete other files.
class Answers {
public:
    Answers(QString folder, const Gestures &gestures, Gestures::Tell tell)
        : m_folder(std::move(folder))
        , m_gestures(gestures)
        , m_tell(std::move(tell)) {}

    void perform(QWidget &dialog, Numbers &numbers) const;
    void choose(QFileDialog &dialog, const QString &path) const;
    /// Ends the dialog by a way out that every dialog has; the save prompt by one of its buttons.
    void dismiss(QWidget &dialog) const;

private:
    void chooseSomeFile(QFileDialog &dialog, Numbers &numbers) const;
    void fillIn(QWidget &dialog, Numbers &numbers) const;
    void pressSomeButton(QWidget &dialog, Numbers &numbers) const;

    QString m_folder;
    const Gestures &m_gestures;
    Gestures::Tell m_tell;
};

} // namespace qir::test
