#include <QObject>

// Defined nowhere: the library cannot be loaded.
extern int definedNowhere;

class UnresolvedRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "unresolved.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return definedNowhere ? new QObject : nullptr; }
};

#include "unresolved.moc"
