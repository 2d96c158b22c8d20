#pragma once

#include "platform/foundation/Object.hpp"

#include <string>

namespace ns {

// One posted notification: its name, the object it concerns (may be nil) and extra information.
class Notification : public Object {
public:
    Notification(std::string name, Ref<Object> object, Dictionary userInfo)
        : m_name(std::move(name)), m_object(std::move(object)), m_userInfo(std::move(userInfo)) {}

    static Ref<Notification> make(std::string name, Ref<Object> object = nullptr, Dictionary userInfo = {}) {
        return create<Notification>(std::move(name), std::move(object), std::move(userInfo));
    }

    const std::string& name() const { return m_name; }
    const Ref<Object>& object() const { return m_object; }
    const Dictionary& userInfo() const { return m_userInfo; }

    // "Notification name = X, object = ..., userInfo = {...}"
    std::string description() const override;

private:
    std::string m_name;
    Ref<Object> m_object;
    Dictionary m_userInfo;
};

} // namespace ns
