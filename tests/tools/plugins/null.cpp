#include <QObject>

class NullRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "null.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return nullptr; }
};

#include "null.moc"
