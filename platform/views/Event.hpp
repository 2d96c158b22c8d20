#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"

#include <string>

namespace ns {

class Window;

enum class EventType : int64_t {
    LeftMouseDown = 1,
    LeftMouseUp = 2,
    RightMouseDown = 3,
    RightMouseUp = 4,
    MouseMoved = 5,
    KeyDown = 10,
    KeyUp = 11,
    ApplicationDefined = 15,
};

constexpr uint64_t EventModifierFlagShift = 1ull << 17;
constexpr uint64_t EventModifierFlagControl = 1ull << 18;
constexpr uint64_t EventModifierFlagOption = 1ull << 19;
constexpr uint64_t EventModifierFlagCommand = 1ull << 20;
constexpr uint64_t EventMaskAny = ~0ull;

// One input event: a key press or a mouse action, with where and when it happened.
class Event : public Object {
public:
    Event(EventType type, Point locationInWindow, uint64_t modifierFlags, double timestamp,
          WeakRef<Window> window, std::string characters, uint16_t keyCode, int64_t clickCount)
        : m_type(type), m_location(locationInWindow), m_modifierFlags(modifierFlags), m_timestamp(timestamp),
          m_window(std::move(window)), m_characters(std::move(characters)), m_keyCode(keyCode),
          m_clickCount(clickCount) {}

    static Ref<Event> keyEvent(EventType type, const std::string& characters, uint16_t keyCode,
                               uint64_t modifierFlags = 0, const Ref<Window>& window = nullptr);
    static Ref<Event> mouseEvent(EventType type, Point locationInWindow, int64_t clickCount = 1,
                                 uint64_t modifierFlags = 0, const Ref<Window>& window = nullptr);

    EventType type() const { return m_type; }
    Point locationInWindow() const { return m_location; }
    uint64_t modifierFlags() const { return m_modifierFlags; }
    double timestamp() const { return m_timestamp; }
    Ref<Window> window() const { return m_window.lock(); }
    const std::string& characters() const { return m_characters; }
    uint16_t keyCode() const { return m_keyCode; }
    int64_t clickCount() const { return m_clickCount; }
    std::string description() const override;

private:
    EventType m_type;
    Point m_location;
    uint64_t m_modifierFlags;
    double m_timestamp;
    WeakRef<Window> m_window;
    std::string m_characters;
    uint16_t m_keyCode;
    int64_t m_clickCount;
};

} // namespace ns
