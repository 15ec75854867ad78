#include <QObject>

class NoCreateRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "nocreate.json")

public:
    Q_INVOKABLE QObject *CreateInstance(int) { return new QObject; }
};

#include "nocreate.moc"
