#pragma once

#include "platform/views/ClipView.hpp"

namespace corvane {

// A clip view that is always flipped, so that a scroll container's content starts at its top
// left and grows downwards whatever the document view's own flipping.
class QSClipView : public ns::ClipView {
public:
    explicit QSClipView(ns::Rect frame = {}) : ns::ClipView(frame) {}
    static ns::Ref<QSClipView> make(ns::Rect frame = {}) { return ns::create<QSClipView>(frame); }

    bool isFlipped() const override { return true; }
};

} // namespace corvane
