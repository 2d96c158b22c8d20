#pragma once

#include "platform/views/View.hpp"

#include <vector>

namespace corvane {

// Switches each view of the list, in order, to layout by constraints only. Nil entries are
// skipped.
void qs_disableTranslatesAutoresizingMaskIntoConstraints(const std::vector<ns::Ref<ns::View>>& views);

// The same, asked of a view: the receiver itself is left as it is.
void qs_disableTranslatesAutoresizingMaskIntoConstraints(ns::View& receiver,
                                                         const std::vector<ns::Ref<ns::View>>& views);

} // namespace corvane
