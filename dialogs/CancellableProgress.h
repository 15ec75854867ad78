#pragma once

#include "dialogs/Progresso.h"

namespace qir {

/// A progress window with a button that stops the operation; Escape and its close box do the same. How long the
/// operation takes is not known: the bar only shows that it goes on.
class CancellableProgress : public Progresso {
    Q_OBJECT

public:
    CancellableProgress(QWidget *parent, const QString &title, const QString &text);

    bool isCancelled() const { return m_cancelled; }
    void reject() override;

private:
    bool m_cancelled = false;
};

} // namespace qir
