#pragma once

#include "platform/automation/AutomationObject.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>
#include <cstddef>
#include <span>
#include <type_traits>
#include <vector>

namespace qir {

struct MemberBinding;

/// The types that travel between caller and component.
enum class Shape : unsigned char { Nothing, Bool, Int, Double, Text, Variant, TextArray };

/// No member takes more.
inline constexpr std::size_t maximumArguments = 4;

template<class T>
constexpr Shape shapeOf() {
    if constexpr (std::is_void_v<T>)
        return Shape::Nothing;
    else if constexpr (std::is_same_v<T, bool>)
        return Shape::Bool;
    else if constexpr (std::is_same_v<T, int>)
        return Shape::Int;
    else if constexpr (std::is_same_v<T, double>)
        return Shape::Double;
    else if constexpr (std::is_same_v<T, QString>)
        return Shape::Text;
    else if constexpr (std::is_same_v<T, QVariant>)
        return Shape::Variant;
    else {
        static_assert(std::is_same_v<T, QStringList &>, "no type of the automation convention");
        return Shape::TextArray;
    }
}

/// A member as its caller asks for it: a name, what kind of member, the types of arguments and result.
///
/// Made once, at static storage; a class of objects is asked for it by name at the first call and by index from then
/// on. A call throws AutomationError when the object is empty, when its class has no such member or only in another
/// shape, and when the member gives back what the result type cannot hold; else what the component throws.
///
/// Shapes that fit beside the exact one: QVariant in the member's signature takes any argument but the text array; a
/// number may be any kind of number in the component, true and false being -1 and 0 where they become one; a result
/// may come back in a QVariant; a result that nobody asked for may be anything.
class Member {
public:
    enum class Kind : unsigned char { Method, PropertyRead, PropertyWrite };

    Member(const Member &) = delete;
    Member &operator=(const Member &) = delete;

    const char *name() const { return m_name; }
    Kind kind() const { return m_kind; }
    /// The type of the result, of the value for both directions of a property.
    Shape result() const { return m_result; }
    std::span<const Shape> arguments() const { return m_arguments; }
    std::size_t number() const { return m_number; }
    /// "NAME(QString, int)", or "NAME" for a property.
    QString signature() const;

    /// True when the object's class has a member of this name, whatever its shape; false for an empty owner.
    bool isIn(const AutomationObject &object) const;

protected:
    Member(const char *name, Kind kind, Shape result, std::span<const Shape> arguments);
    ~Member() = default;

    /// The call itself. `values` are pointers to the result (null when there is none) and to the arguments, each of the
    /// type that its shape says; for a property to its value alone.
    void call(const AutomationObject &object, void **values) const;

private:
    void callConverted(QObject *object, const MemberBinding &binding, void **values) const;

    const char *m_name;
    std::span<const Shape> m_arguments;
    std::size_t m_number; // counts all members of the program, the place in a class's list
    Kind m_kind;
    Shape m_result;
};

/// How one class has one member.
struct MemberBinding {
    enum class State : unsigned char { Unknown, Direct, Converted };

    State state = State::Unknown;
    int index = -1; ///< Among the class's methods or properties.
    // What the class itself takes and gives, where that is not what the caller passes.
    QMetaType result; ///< For a property the type of its value.
    std::vector<QMetaType> arguments;
};

/// What is known of one class: its members, as far as they were looked up.
class ClassMembers {
public:
    explicit ClassMembers(const QMetaObject *metaObject)
        : m_metaObject(metaObject) {}

    /// The one entry of a class, made at the first request and kept for the life of the program.
    static ClassMembers *of(const QMetaObject *metaObject);

    const MemberBinding &binding(const Member &member) {
        if (member.number() < m_bindings.size()) {
            const MemberBinding &known = m_bindings[member.number()];
            if (known.state != MemberBinding::State::Unknown)
                return known;
        }
        return lookUp(member);
    }
    /// Whether there is a member of that name, whatever its shape.
    bool has(const Member &member) {
        if (member.number() < m_present.size() && m_present[member.number()] != Presence::Unknown)
            return m_present[member.number()] == Presence::Yes;
        return lookFor(member);
    }
    std::size_t lookUps() const { return m_lookUps; }

private:
    enum class Presence : unsigned char { Unknown, Yes, No };

    const MemberBinding &lookUp(const Member &member);
    bool lookFor(const Member &member);

    const QMetaObject *m_metaObject;
    std::vector<MemberBinding> m_bindings; // by Member::number()
    std::vector<Presence> m_present;       // by Member::number()
    std::size_t m_lookUps = 0;
};

namespace detail {

template<class... Args>
inline constexpr std::array<Shape, sizeof...(Args)> shapes{shapeOf<Args>()...};

template<class T>
using Passed = std::conditional_t<std::is_reference_v<T>, T, const T &>;

template<class T>
void *slot(T &value) {
    return const_cast<void *>(static_cast<const void *>(&value));
}

} // namespace detail

template<class Signature>
class Method;

/// A method, or one direction of an indexed property: `const Method<bool(QString, QString)> load{"LoadDtb"};`, called
/// as `load(object, name, password)`. A trailing argument that may be left out makes a method of its own.
template<class R, class... Args>
class Method<R(Args...)> final : public Member {
    static_assert(sizeof...(Args) <= maximumArguments);

public:
    explicit Method(const char *name)
        : Member(name, Kind::Method, shapeOf<R>(), detail::shapes<Args...>) {}

    R operator()(const AutomationObject &object, detail::Passed<Args>... arguments) const {
        if constexpr (std::is_void_v<R>) {
            void *values[] = {nullptr, detail::slot(arguments)...};
            call(object, values);
        } else {
            R result{};
            read(object, result, arguments...);
            return result;
        }
    }

    /// The same into a result that keeps its memory.
    template<class T>
    void read(const AutomationObject &object, T &result, detail::Passed<Args>... arguments) const {
        static_assert(std::is_same_v<T, R>);
        void *values[] = {&result, detail::slot(arguments)...};
        call(object, values);
    }
};

/// A property without index: `const Property<bool> changed{"DtbHasChanged"};`.
template<class T>
class Property final {
public:
    explicit Property(const char *name)
        : m_reader(name, shapeOf<T>())
        , m_writer(name, shapeOf<T>()) {}

    T read(const AutomationObject &object) const {
        T result{};
        m_reader.access(object, &result);
        return result;
    }
    void write(const AutomationObject &object, const T &value) const { m_writer.access(object, detail::slot(value)); }
    /// True when the object's class has a property of this name.
    bool isIn(const AutomationObject &object) const { return m_reader.isIn(object); }

private:
    template<Member::Kind direction>
    struct Access final : Member {
        Access(const char *name, Shape shape)
            : Member(name, direction, shape, {}) {}
        void access(const AutomationObject &object, void *value) const { call(object, &value); }
    };
    Access<Member::Kind::PropertyRead> m_reader;
    Access<Member::Kind::PropertyWrite> m_writer;
};

} // namespace qir
