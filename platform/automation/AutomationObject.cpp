#include "platform/automation/AutomationObject.h"

#include "platform/automation/Member.h"

namespace qir {

AutomationObject::AutomationObject(QObject *object)
    : m_object(object)
    , m_members(object ? ClassMembers::of(object->metaObject()) : nullptr) {}

std::size_t AutomationObject::lookUps() const {
    return isEmpty() ? 0 : m_members->lookUps();
}

} // namespace qir
