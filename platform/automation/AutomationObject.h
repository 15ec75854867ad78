#pragma once

#include <QObject>

#include <cstddef>
#include <memory>

namespace qir {

class ClassMembers;

/// The owner of an object that is driven by member name (see Member.h), or of none.
///
/// Moved, never copied: there is one reference, and giving it up destroys the object there and then. The object
/// must be a plain QObject without a parent, of a class that stays loaded. One thread.
class AutomationObject {
public:
    AutomationObject() = default;
    /// Takes `object` over; null makes an empty owner.
    explicit AutomationObject(QObject *object);

    bool isEmpty() const { return m_object == nullptr; }
    /// Destroys the object, if there is one. Its destructor is the release; it cannot throw.
    void release() { m_object.reset(); }
    /// The object itself, still owned here; null when empty.
    QObject *object() const { return m_object.get(); }

    /// What is known of the object's class; null when empty. Shared by all objects of the class.
    ClassMembers *members() const { return isEmpty() ? nullptr : m_members; }
    /// How many members of the object's class were looked up by name so far, by all its objects.
    std::size_t lookUps() const;

private:
    std::unique_ptr<QObject> m_object;
    ClassMembers *m_members = nullptr;
};

} // namespace qir
