#pragma once

namespace ns {

class LayoutConstraint;

// What a constraint tells the engine that holds it about its own changes; the view layer's
// engine implements it over the constraint solver.
class LayoutEngine {
public:
    virtual ~LayoutEngine() = default;
    virtual void constraintConstantDidChange(LayoutConstraint& constraint) = 0;
    virtual void constraintPriorityDidChange(LayoutConstraint& constraint) = 0;
};

} // namespace ns
