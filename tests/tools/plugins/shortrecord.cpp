#include <QObject>
#include <QStringList>

using namespace Qt::StringLiterals;

// Leaves the last field out of the record array.
class clsQirDatabase final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int QirTableFieldsCount READ fieldsCount)

public:
    int fieldsCount() const { return 2; }
    Q_INVOKABLE void GetQirRecord(int, QStringList &values) { values = QStringList{QString(), u"one"_s}; }
};

class ShortRecordRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "shortrecord.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return new clsQirDatabase; }
};

#include "shortrecord.moc"
