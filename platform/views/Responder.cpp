#include "platform/views/Responder.hpp"

namespace ns {

void Responder::keyDown(const Ref<Event>& event) {
    if (auto next = nextResponder())
        next->keyDown(event);
}

bool Responder::tryToPerform(const Selector& selector, const Value& argument) {
    if (Object::tryToPerform(selector, argument))
        return true;
    auto next = nextResponder();
    return next && next->tryToPerform(selector, argument);
}

} // namespace ns
