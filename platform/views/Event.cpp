#include "platform/views/Event.hpp"

#include "platform/foundation/Format.hpp"

#include <chrono>

namespace ns {

namespace {
double now() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}
} // namespace

Ref<Event> Event::keyEvent(EventType type, const std::string& characters, uint16_t keyCode,
                           uint64_t modifierFlags, const Ref<Window>& window) {
    return create<Event>(type, Point{}, modifierFlags, now(), window, characters, keyCode, 0);
}

Ref<Event> Event::mouseEvent(EventType type, Point locationInWindow, int64_t clickCount,
                             uint64_t modifierFlags, const Ref<Window>& window) {
    return create<Event>(type, locationInWindow, modifierFlags, now(), window, std::string(), 0, clickCount);
}

std::string Event::description() const {
    return format("<Event type=%ld loc=%@ chars=\"%@\" keyCode=%u clicks=%ld>", static_cast<int64_t>(m_type),
                  describe(m_location), m_characters, m_keyCode, m_clickCount);
}

} // namespace ns
