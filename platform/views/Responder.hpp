#pragma once

#include "platform/foundation/Object.hpp"

namespace ns {

class Event;

// A link in the responder chain: events and actions that a responder does not handle travel to
// its next responder.
class Responder : public Object {
public:
    Ref<Responder> nextResponder() const { return m_nextResponder.lock(); }
    void setNextResponder(const Ref<Responder>& next) { m_nextResponder = next; }

    virtual bool acceptsFirstResponder() const { return false; }
    // Passes the key press on to the next responder; the end of the chain ignores it.
    virtual void keyDown(const Ref<Event>& event);

    // Performs the action here when this responder answers to it, else further up the chain.
    bool tryToPerform(const Selector& selector, const Value& argument = {}) override;

private:
    WeakRef<Responder> m_nextResponder;
};

} // namespace ns
