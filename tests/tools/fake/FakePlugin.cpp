#include "tests/tools/fake/FakeColumnComponent.h"
#include "tests/tools/fake/FakeRecorder.h"
#include "tests/tools/fake/FakeStepsComponent.h"

namespace qir {

/// The root object: makes instances as every component does, and hands out the tests' control.
class FakePlugin final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "fake.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &progId) {
        if (progId != u"QIRTBase.clsQirDatabase")
            return nullptr;
        if (FakeRecorder::self().columns() > 0)
            return new FakeColumnComponent;
        return FakeRecorder::self().hasSteps() ? new FakeStepsComponent : new FakeComponent;
    }
    Q_INVOKABLE void *Control() { return static_cast<FakeControl *>(&FakeRecorder::self()); }
};

} // namespace qir

#include "FakePlugin.moc"
