#include <QObject>

#include <QStringList>
#include <QVariant>

// Has members of the right names that cannot be called as they must.
class clsQirDatabase final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString DtbHasChanged READ text)
    Q_PROPERTY(int QIRTablesCount READ number)
    Q_PROPERTY(int QIRTableRecordsPointerOut READ number)

public:
    QString text() const { return QString(); }
    int number() const { return 1; }
    Q_INVOKABLE bool LoadDtb(const QString &) { return true; }                    // an argument short
    Q_INVOKABLE QVariant QIRTableName(int) { return QVariant(); }                 // answers nothing
    Q_INVOKABLE QStringList ExistTable(const QString &) { return QStringList(); } // no truth value
    Q_INVOKABLE void GetQirRecord(int, QStringList) {}                            // by value
    Q_INVOKABLE void QIRTableFieldName(int) {}                                    // gives nothing back
    Q_INVOKABLE void RemoveTable(const QString &) {}                              // a name for a number
};

class WrongShapeRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "wrongshape.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new clsQirDatabase; }
};

#include "wrongshape.moc"
