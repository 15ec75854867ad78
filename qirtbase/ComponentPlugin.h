#pragma once

#include <QObject>
#include <QString>
#include <QtPlugin>

namespace qir {

/// The library's root object: makes instances of the classes that its metadata names.
class ComponentPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "QIRTBase.json")

public:
    /// Called by name. A new instance that the caller owns, or null for an identifier that is not served.
    Q_INVOKABLE QObject *CreateInstance(const QString &progId);
};

} // namespace qir
