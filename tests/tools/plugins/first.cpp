#include <QObject>

// Says that it was loaded, so that a test sees whether reading metadata did that.
static const bool loaded = qputenv("QIR_TEST_FIRST_LOADED", "1");

class FirstObject final : public QObject {
    Q_OBJECT
};

class FirstRoot final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "first.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &) { return loaded ? new FirstObject : nullptr; }
};

#include "first.moc"
