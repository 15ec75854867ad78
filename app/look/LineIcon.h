#pragma once

#include <QIcon>
#include <QString>

namespace qir {

/// An icon drawn in lines that the program brings along, for desktops whose icon theme has none of that name: in the
/// colour of the palette's button texts, whatever scheme that is of, and sharp at every scale. `name` is that of a
/// theme's icon. A null icon where there is none, or Qt has no module for it.
QIcon lineIcon(const QString &name);

} // namespace qir
