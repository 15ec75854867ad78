// Made for a later version of the interface.
#include <QObject>

class NewerRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/2" FILE "newer.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new QObject; }
};

#include "newer.moc"
