// A plug-in of some other program that happens to name the identifier.
#include <QObject>

class OtherRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "Some.Other.Interface/1" FILE "other.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new QObject; }
};

#include "other.moc"
