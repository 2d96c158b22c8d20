#pragma once

#include "platform/views/Responder.hpp"

#include <vector>

namespace ns {

class Appearance;
class Window;
class Event;

// The application object: its windows, the key window, and the delivery of events and actions.
class Application : public Responder {
public:
    static Ref<Application> shared();

    const std::vector<Ref<Window>>& windows() const { return m_windows; }
    void addWindow(const Ref<Window>& window);
    void removeWindow(const Window& window);
    Ref<Window> keyWindow() const { return m_keyWindow.lock(); }
    void setKeyWindow(const Ref<Window>& window) { m_keyWindow = window; }

    // The appearance the application shows (Appearance::applicationEffectiveAppearance); never nil.
    Ref<Appearance> effectiveAppearance() const;

    // Sends the action to the target, or with no target up the responder chain from the key
    // window's first responder to the window and the application. False when nobody took it.
    bool sendAction(const Selector& action, const Ref<Object>& target, const Ref<Object>& sender);
    // The responder that would receive the action, or nil.
    Ref<Object> targetForAction(const Selector& action, const Ref<Object>& target);
    // Hands a key event to the key window's first responder.
    void sendEvent(const Ref<Event>& event);

private:
    std::vector<Ref<Window>> m_windows;
    WeakRef<Window> m_keyWindow;
};

} // namespace ns
