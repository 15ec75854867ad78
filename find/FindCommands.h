#pragma once

#include "find/CellFinder.h"
#include "find/FindBar.h"
#include "find/HitList.h"
#include "find/Replacement.h"

#include <QBasicTimer>
#include <QObject>

QT_BEGIN_NAMESPACE
class QShortcut;
QT_END_NAMESPACE

namespace qir {

/// Finding and replacing: the commands, and what the bar asks for.
class FindCommands : public QObject {
    Q_OBJECT

public:
    /// Makes the bar; the window's controls must stand.
    FindCommands(EditorContext &editor, CellDifferences &differences, TableLoader &tables, StoredMarks &stored);

    FindBar &bar() { return *m_bar; }
    void addCommands();
    /// To be called when a command has ended: other tables may be shown.
    void follow();

    void FindMenu_Click();
    void ReplaceMenu_Click();
    /// Goes to the next cell that hits (`step` 1) or to the one before (-1), at once or when the search comes by it.
    void findNeighbour(int step);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void open(bool replacing);
    void close();
    void escape();
    void search();
    void found();
    /// What was asked for while the search had still to come by it.
    void goOn();
    void goTo(const FoundCell &found);
    bool isThere(const FoundCell &found) const;
    void choose(int hit);
    void replace(bool all);
    void tell();

    EditorContext &m_editor;
    CellFinder m_finder;
    Replacement m_replacement;
    HitList m_hits;
    FindBar *m_bar;
    QShortcut *m_stop;       // wherever the keyboard is while a search goes on
    QBasicTimer m_listTimer; // the list follows now and then, not at each keystroke
    QString m_note;
    int m_asked = 0;        // a step that the search has still to come by
    bool m_fresh = false;   // nothing was gone to yet: the current cell may be the first
    bool m_telling = false; // a step is taken
};

} // namespace qir
