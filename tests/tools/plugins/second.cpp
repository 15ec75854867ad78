#include <QObject>

class SecondObject final : public QObject {
    Q_OBJECT
};

class SecondRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "second.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new SecondObject; }
};

#include "second.moc"
