#include "tests/tools/fake/FakeColumnComponent.h"
#include "tests/tools/fake/FakeRecorder.h"
#include "tests/tools/fake/FakeStepsComponent.h"

using namespace Qt::StringLiterals;

namespace qir {

/// The fake that can begin no load, for a program that is run with QIR_FAKE_BEGINS_NO_LOAD set.
class FakeNoBeginComponent final : public FakeComponent {
    Q_OBJECT

public:
    Q_INVOKABLE bool BeginLoad(const QString &) { raise(u"There is no thread to read with."_s); }
};

/// The root object: makes instances as every component does, and hands out the tests' control.
class FakePlugin final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "fake.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &progId) {
        if (progId != u"QIRTBase.clsQirDatabase")
            return nullptr;
        if (qEnvironmentVariableIsSet("QIR_FAKE_BEGINS_NO_LOAD"))
            return new FakeNoBeginComponent;
        if (FakeRecorder::self().columns() > 0)
            return new FakeColumnComponent;
        return FakeRecorder::self().hasSteps() ? new FakeStepsComponent : new FakeComponent;
    }
    Q_INVOKABLE void *Control() { return static_cast<FakeControl *>(&FakeRecorder::self()); }
};

} // namespace qir

#include "FakePlugin.moc"
