#include "kit/Categories/NSView+QSStackView.hpp"

namespace corvane {

void qs_disableTranslatesAutoresizingMaskIntoConstraints(const std::vector<ns::Ref<ns::View>>& views) {
    for (const auto& view : views)
        if (view)
            view->setTranslatesAutoresizingMaskIntoConstraints(false);
}

void qs_disableTranslatesAutoresizingMaskIntoConstraints(ns::View&,
                                                         const std::vector<ns::Ref<ns::View>>& views) {
    qs_disableTranslatesAutoresizingMaskIntoConstraints(views);
}

} // namespace corvane
