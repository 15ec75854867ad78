#include <QObject>
#include <QString>

// Knows groups of changes but not how to undo one.
class clsQirDatabase final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Calls MEMBER calls)

public:
    Q_INVOKABLE void BeginChanges() { calls += u"Begin "; }
    Q_INVOKABLE void EndChanges() { calls += u"End "; }

    QString calls;
};

class NoCancelRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "nocancel.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new clsQirDatabase; }
};

#include "nocancel.moc"
