#include "platform/views/Application.hpp"

#include "platform/graphics/Appearance.hpp"
#include "platform/views/Event.hpp"
#include "platform/views/Window.hpp"

#include <algorithm>

namespace ns {

Ref<Application> Application::shared() {
    static const Ref<Application> application = create<Application>();
    return application;
}

Ref<Appearance> Application::effectiveAppearance() const {
    return Appearance::applicationEffectiveAppearance();
}

void Application::addWindow(const Ref<Window>& window) {
    if (window && std::find(m_windows.begin(), m_windows.end(), window) == m_windows.end())
        m_windows.push_back(window);
}

void Application::removeWindow(const Window& window) {
    std::erase_if(m_windows, [&](const Ref<Window>& held) { return held.get() == &window; });
}

Ref<Object> Application::targetForAction(const Selector& action, const Ref<Object>& target) {
    if (target)
        return target->respondsToSelector(action) ? target : nullptr;
    Ref<Responder> responder = keyWindow() ? keyWindow()->firstResponder() : nullptr;
    for (; responder; responder = responder->nextResponder())
        if (responder->respondsToSelector(action))
            return responder;
    return respondsToSelector(action) ? self<Object>() : nullptr;
}

bool Application::sendAction(const Selector& action, const Ref<Object>& target, const Ref<Object>& sender) {
    Ref<Object> receiver = targetForAction(action, target);
    if (!receiver)
        return false;
    receiver->perform(action, Value(sender));
    return true;
}

void Application::sendEvent(const Ref<Event>& event) {
    if (!event)
        return;
    Ref<Window> window = event->window() ? event->window() : keyWindow();
    if (!window)
        return;
    if (event->type() == EventType::KeyDown)
        window->firstResponder()->keyDown(event);
}

} // namespace ns
