#include "platform/automation/Member.h"

#include "platform/automation/AutomationError.h"
#include "platform/automation/Conversion.h"

#include <QMetaMethod>
#include <QMetaProperty>

#include <optional>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

std::size_t nextNumber() {
    static std::size_t count = 0;
    return count++;
}

const QMetaType variantType = QMetaType::fromType<QVariant>();

// How well types fit: 0 exactly, more for each conversion on the way; nothing when they do not.
using Fit = std::optional<int>;

Fit argumentFit(Shape asked, QMetaType type, const QByteArray &typeName) {
    if (asked == Shape::TextArray)
        return typeName == "QStringList&" || typeName == "QList<QString>&" ? Fit(0) : Fit();
    if (type == typeOf(asked))
        return 0;
    if (type == variantType)
        return 1;
    return isNumber(type) && isNumber(typeOf(asked)) ? Fit(2) : Fit();
}

Fit resultFit(Shape asked, QMetaType type) {
    if (asked == Shape::Nothing || type == typeOf(asked))
        return 0;
    if (type == variantType)
        return 1;
    if (asked == Shape::Variant)
        return isNumber(type) || type == QMetaType::fromType<QString>() ? Fit(1) : Fit();
    return isNumber(type) && isNumber(typeOf(asked)) ? Fit(2) : Fit();
}

bool isInvokable(const QMetaMethod &method, const char *name) {
    return (method.methodType() == QMetaMethod::Method || method.methodType() == QMetaMethod::Slot) &&
           method.name() == name;
}

Fit methodFit(const Member &member, const QMetaMethod &method) {
    const auto asked = member.arguments();
    if (!isInvokable(method, member.name()) || method.parameterCount() != static_cast<int>(asked.size()))
        return {};
    Fit sum = resultFit(member.result(), method.returnMetaType());
    const QList<QByteArray> typeNames = method.parameterTypes();
    for (int i = 0; sum && i < method.parameterCount(); ++i) {
        const auto k = static_cast<std::size_t>(i);
        const Fit one = argumentFit(asked[k], method.parameterMetaType(i), typeNames.at(i));
        sum = one ? Fit(*sum + *one) : Fit();
    }
    return sum;
}

Fit propertyFit(const Member &member, const QMetaProperty &property) {
    if (member.kind() == Member::Kind::PropertyRead)
        return property.isReadable() ? resultFit(member.result(), property.metaType()) : Fit();
    return property.isWritable() ? argumentFit(member.result(), property.metaType(), {}) : Fit();
}

MemberBinding bindMethod(const Member &member, const QMetaObject *metaObject) {
    MemberBinding best;
    Fit bestFit;
    // From the most derived class down: what it redefines comes first.
    for (int i = metaObject->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod method = metaObject->method(i);
        const Fit fit = methodFit(member, method);
        if (!fit || (bestFit && *bestFit <= *fit))
            continue;
        bestFit = fit;
        best.state = *fit == 0 ? MemberBinding::State::Direct : MemberBinding::State::Converted;
        best.index = i;
        best.result = method.returnMetaType();
        best.arguments.clear();
        for (int k = 0; k < method.parameterCount(); ++k)
            best.arguments.push_back(method.parameterMetaType(k));
    }
    return best;
}

MemberBinding bindProperty(const Member &member, const QMetaObject *metaObject) {
    MemberBinding binding;
    const int index = metaObject->indexOfProperty(member.name());
    if (index < 0)
        return binding;
    const QMetaProperty property = metaObject->property(index);
    if (const Fit fit = propertyFit(member, property)) {
        binding.state = *fit == 0 ? MemberBinding::State::Direct : MemberBinding::State::Converted;
        binding.index = index;
        binding.result = property.metaType();
    }
    return binding;
}

// What a class offers under a member's name, for the error that says why none of it will do.
QStringList offers(const Member &member, const QMetaObject *metaObject) {
    QStringList found;
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (isInvokable(method, member.name()))
            found += QString::fromLatin1(QByteArray(method.typeName()) + ' ' + method.methodSignature());
    }
    if (const int index = metaObject->indexOfProperty(member.name()); index >= 0) {
        const QMetaProperty property = metaObject->property(index);
        found += u"%1property %2 of type %3"_s.arg(property.isWritable() ? u""_s : u"read-only "_s,
                                                   QString::fromLatin1(member.name()),
                                                   QString::fromLatin1(property.typeName()));
    }
    return found;
}

const char *asked(const Member &member) {
    switch (member.kind()) {
    case Member::Kind::PropertyRead:
        return "readable property";
    case Member::Kind::PropertyWrite:
        return "writable property";
    case Member::Kind::Method:
        break;
    }
    return "method";
}

QString className(const QMetaObject *metaObject) {
    return QString::fromLatin1(metaObject->className());
}

QMetaObject::Call metaCall(Member::Kind kind) {
    switch (kind) {
    case Member::Kind::PropertyRead:
        return QMetaObject::ReadProperty;
    case Member::Kind::PropertyWrite:
        return QMetaObject::WriteProperty;
    case Member::Kind::Method:
        break;
    }
    return QMetaObject::InvokeMetaMethod;
}

// A value of the caller as the class takes it, kept in `kept` where it had to be made.
void *given(Shape shape, QMetaType type, void *value, QVariant &kept) {
    if (shape == Shape::TextArray || type == typeOf(shape))
        return value;
    kept = QVariant(typeOf(shape), value);
    if (type == variantType)
        return &kept;
    kept = convertedTo(type, kept);
    return kept.isValid() ? kept.data() : nullptr;
}

// Room for what the class gives back.
void *room(QMetaType type, QVariant &kept) {
    if (type == variantType)
        return &kept;
    kept = QVariant(type);
    return kept.data();
}

// Hands what the class gave back to the caller; false when it is not what was asked for.
bool take(Shape shape, void *value, QVariant &&result) {
    if (shape == Shape::Variant) {
        *static_cast<QVariant *>(value) = std::move(result);
        return true;
    }
    const QMetaType type = typeOf(shape);
    const QVariant converted = convertedTo(type, result);
    if (!converted.isValid())
        return false;
    type.destruct(value);
    type.construct(value, converted.constData());
    return true;
}

} // namespace

Member::Member(const char *name, Kind kind, Shape result, std::span<const Shape> arguments)
    : m_name(name)
    , m_arguments(arguments)
    , m_number(nextNumber())
    , m_kind(kind)
    , m_result(result) {}

QString Member::signature() const {
    const QString name = QString::fromLatin1(m_name);
    if (m_kind == Kind::PropertyRead)
        return name;
    if (m_kind == Kind::PropertyWrite)
        return name + u" = "_s + QString::fromLatin1(nameOf(m_result));
    QStringList types;
    for (const Shape shape : m_arguments)
        types += QString::fromLatin1(nameOf(shape));
    return u"%1(%2)"_s.arg(name, types.join(u", "_s));
}

bool Member::isIn(const AutomationObject &object) const {
    return !object.isEmpty() && object.members()->has(*this);
}

void Member::call(const AutomationObject &object, void **values) const {
    if (object.isEmpty())
        throw AutomationError(u"There is no object to call %1 on."_s.arg(signature()));
    const MemberBinding &binding = object.members()->binding(*this);
    if (binding.state == MemberBinding::State::Direct)
        object.object()->qt_metacall(metaCall(m_kind), binding.index, values);
    else
        callConverted(object.object(), binding, values);
}

void Member::callConverted(QObject *object, const MemberBinding &binding, void **values) const {
    const auto fail = [&](const QString &why) {
        throw AutomationError(u"%1: %2 %3."_s.arg(className(object->metaObject()), signature(), why));
    };
    const QMetaType resultType = binding.result; // the call may move the binding
    const int index = binding.index;

    if (m_kind == Kind::PropertyWrite) {
        QVariant kept;
        void *slot[] = {given(m_result, resultType, values[0], kept)};
        if (!slot[0])
            fail(u"does not take this number"_s);
        object->qt_metacall(QMetaObject::WriteProperty, index, slot);
        return;
    }

    const bool resultFits = m_result == Shape::Nothing || resultType == typeOf(m_result);
    QVariant result;
    std::array<QVariant, maximumArguments> kept;
    std::array<void *, maximumArguments + 1> slot{};
    slot[0] = resultFits ? values[0] : room(resultType, result);
    for (std::size_t i = 0; i < m_arguments.size(); ++i) {
        slot[i + 1] = given(m_arguments[i], binding.arguments[i], values[i + 1], kept[i]);
        if (!slot[i + 1])
            fail(u"does not take this number as argument %1"_s.arg(i + 1));
    }
    object->qt_metacall(metaCall(m_kind), index, slot.data());
    if (resultFits)
        return;
    const QString got = result.isValid() ? QString::fromLatin1(result.typeName()) : u"nothing"_s;
    if (!take(m_result, values[0], std::move(result)))
        fail(u"gave back %1 where %2 is needed"_s.arg(got, QString::fromLatin1(nameOf(m_result))));
}

ClassMembers *ClassMembers::of(const QMetaObject *metaObject) {
    static std::unordered_map<const QMetaObject *, std::unique_ptr<ClassMembers>> classes;
    auto &entry = classes[metaObject];
    if (!entry)
        entry = std::make_unique<ClassMembers>(metaObject);
    return entry.get();
}

const MemberBinding &ClassMembers::lookUp(const Member &member) {
    ++m_lookUps;
    MemberBinding found =
        member.kind() == Member::Kind::Method ? bindMethod(member, m_metaObject) : bindProperty(member, m_metaObject);
    if (found.state == MemberBinding::State::Unknown) {
        const QStringList offered = offers(member, m_metaObject);
        const QString kind = QString::fromLatin1(asked(member));
        if (offered.isEmpty())
            throw AutomationError(u"%1 has no %2 %3."_s.arg(className(m_metaObject), kind, member.signature()));
        throw AutomationError(u"%1 cannot be used with the %2 %3; it has %4."_s.arg(
            className(m_metaObject), kind, member.signature(), offered.join(u", "_s)));
    }
    if (member.number() >= m_bindings.size())
        m_bindings.resize(member.number() + 1);
    return m_bindings[member.number()] = std::move(found);
}

bool ClassMembers::lookFor(const Member &member) {
    ++m_lookUps;
    const bool found = !offers(member, m_metaObject).isEmpty();
    if (member.number() >= m_present.size())
        m_present.resize(member.number() + 1);
    m_present[member.number()] = found ? Presence::Yes : Presence::No;
    return found;
}

} // namespace qir
