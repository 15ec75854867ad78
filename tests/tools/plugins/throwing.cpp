#include <QObject>

#include <stdexcept>

class ThrowingRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "throwing.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { throw std::runtime_error("out of instances"); }
};

#include "throwing.moc"
