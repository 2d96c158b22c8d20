#pragma once

#include "platform/views/Popover.hpp"

namespace corvane {

// Gives the popover the application's current look, light or dark (light below 10.14). It is
// a fixed appearance: the popover does not follow later changes of the application's.
void cv_adoptAppearance(ns::Popover& popover);
// Gives the popover the dark appearance whatever the application shows (light below 10.14).
void cv_adoptHUDAppearance(ns::Popover& popover);

} // namespace corvane
