#pragma once

#include "platform/foundation/Object.hpp"

namespace ns {

class Appearance;

// A transient panel shown next to a view. Here it carries what drawing needs of it: the
// appearance its content draws in.
class Popover : public Object {
public:
    static Ref<Popover> make() { return create<Popover>(); }

    // The popover's own appearance; nil (the default) follows the application. Observable.
    const Ref<Appearance>& appearance() const { return m_appearance; }
    void setAppearance(Ref<Appearance> appearance);
    // Its own appearance, else the application's effective appearance; never nil.
    Ref<Appearance> effectiveAppearance() const;

    std::string description() const override;

private:
    Ref<Appearance> m_appearance;
};

} // namespace ns
