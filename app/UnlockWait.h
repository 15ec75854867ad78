#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

class QirDatabase;

/// Lets a component turn the password of a protected file into its key, with the window alive meanwhile: what takes
/// longer than a moment is shown, and can be cancelled. The load is quick then. True at once where the component has no
/// means for that, False after a cancel. Closing the window ends the command, as everywhere.
bool unlockWithoutStandingStill(QWidget *window, const QirDatabase &database, const QString &fileName,
                                const QString &password);

} // namespace qir
