#include <QObject>

// Has LoadDtb and nothing else.
class clsQirDatabase final : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE bool LoadDtb(const QString &, const QString &) { return true; }
};

class MissingMemberRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "missingmember.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new clsQirDatabase; }
};

#include "missingmember.moc"
