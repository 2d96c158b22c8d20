#include "platform/views/View.hpp"

#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/GraphicsContext.hpp"
#include "platform/layout/ConstraintLayoutEngine.hpp"
#include "platform/views/Layer.hpp"
#include "platform/views/ScrollView.hpp"
#include "platform/views/Window.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_set>

namespace ns {

View::View(Rect frame) : m_frame(frame) {}

View::~View() = default;

void View::setFrame(Rect frame) {
    bool resized = frame.size != m_frame.size;
    m_frame = frame;
    // A frame set by hand is a constraint only for views that translate it, and for the root.
    if (!m_applyingLayout && (m_translatesAutoresizingMask || !superview()))
        invalidateLayoutEngine();
    if (resized)
        setNeedsLayout(true);
}

void View::setBoundsOrigin(Point origin) {
    m_boundsOrigin = origin;
    setNeedsDisplay(true);
}

Ref<ScrollView> View::enclosingScrollView() const {
    for (Ref<View> view = superview(); view; view = view->superview())
        if (auto scrollView = std::dynamic_pointer_cast<ScrollView>(view))
            return scrollView;
    return nullptr;
}

void View::setFrameFromLayout(Rect frame) {
    m_applyingLayout = true;
    setFrame(frame);
    m_applyingLayout = false;
}

View* View::root() {
    View* view = this;
    while (Ref<View> superview = view->superview())
        view = superview.get();
    return view;
}

ConstraintLayoutEngine* View::engine() {
    View* top = root();
    if (!top->m_layoutEngine)
        top->m_layoutEngine = std::make_unique<ConstraintLayoutEngine>(*top);
    return top->m_layoutEngine.get();
}

void View::invalidateLayoutEngine() {
    View* top = root();
    if (top->m_layoutEngine)
        top->m_layoutEngine->setNeedsUpdate();
}

Ref<Window> View::window() const {
    const View* view = this;
    while (Ref<View> superview = view->superview())
        view = superview.get();
    return view->m_window.lock();
}

void View::layout() {
    ConstraintLayoutEngine* layoutEngine = engine();
    layoutEngine->updateIfNeeded();
    layoutEngine->applyFrames(*this);
}

// Lays the tree out top down. When the engine changed, every view is laid out; otherwise only
// the views that asked. A view's layout may change constraints (a delegate reacting to it), so
// the pass repeats, a bounded number of times, until the engine is settled.
void View::layoutSubtreeIfNeeded() {
    View* top = root();
    ConstraintLayoutEngine* layoutEngine = engine();
    for (int round = 0; round < 4; ++round) {
        bool everything = layoutEngine->updateIfNeeded();
        std::function<void(View&)> visit = [&](View& view) {
            if (everything || view.m_needsLayout) {
                view.m_needsLayout = false;
                view.layout();
            }
            for (size_t i = 0; i < view.m_subviews.size(); ++i)
                visit(*view.m_subviews[i]);
        };
        visit(*top);
        if (!layoutEngine->needsUpdate())
            return;
    }
}

void View::setAppearance(Ref<Appearance> appearance) {
    m_appearance = std::move(appearance);
    setNeedsDisplay(true);
}

Ref<Appearance> View::effectiveAppearance() const {
    for (const View* view = this; view; view = view->superview().get())
        if (view->m_appearance)
            return view->m_appearance;
    return Appearance::applicationEffectiveAppearance();
}

void View::drawRect(Rect) {}

void View::setWantsLayer(bool wantsLayer) {
    if (wantsLayer && !m_layer)
        m_layer = Layer::make();
    else if (!wantsLayer)
        m_layer.reset();
}

// Draws this view in the context's current user space, then its visible subviews, each moved
// to its frame origin and flipped when its flipping differs from its superview's.
void View::drawSubtree(GraphicsContext& context) {
    Rect bounds = this->bounds();
    context.saveGraphicsState();
    context.setFlipped(isFlipped());
    // The bounds origin is the point of the view's own coordinates that sits at its corner.
    context.translateBy(-m_boundsOrigin.x, -m_boundsOrigin.y);
    RectClip(bounds);
    effectiveAppearance()->performAsCurrentDrawingAppearance([&] {
        context.saveGraphicsState();
        if (m_layer && m_layer->backgroundColor()) {
            Color::colorWithCGColor(m_layer->backgroundColor())->setFill();
            RectFillUsingOperation(bounds, CompositingOperation::SourceOver);
        }
        drawRect(bounds);
        context.restoreGraphicsState();
    });
    for (const auto& subview : m_subviews) {
        if (subview->isHidden())
            continue;
        Rect frame = subview->frame();
        context.saveGraphicsState();
        context.translateBy(frame.x(), frame.y());
        if (subview->isFlipped() != isFlipped()) {
            context.translateBy(0, frame.height());
            context.scaleBy(1, -1);
        }
        subview->drawSubtree(context);
        context.restoreGraphicsState();
    }
    context.restoreGraphicsState();
}

void View::displayRectIgnoringOpacity(Rect) {
    if (auto context = GraphicsContext::currentContext())
        drawSubtree(*context);
}

Ref<BitmapImageRep> View::renderedBitmap() {
    Size size = bounds().size;
    auto bitmap = BitmapImageRep::make(std::max<int64_t>(1, static_cast<int64_t>(std::ceil(size.width))),
                                       std::max<int64_t>(1, static_cast<int64_t>(std::ceil(size.height))));
    auto context = GraphicsContext::graphicsContextWithBitmapImageRep(bitmap, isFlipped());
    if (!context)
        return bitmap;
    GraphicsContext::saveCurrentGraphicsState();
    GraphicsContext::setCurrentContext(context);
    drawSubtree(*context);
    GraphicsContext::restoreCurrentGraphicsState();
    setNeedsDisplay(false);
    return bitmap;
}

void View::display() {
    layoutSubtreeIfNeeded();
    m_needsDisplay = false;
}

Size View::fittingSize() {
    return ConstraintLayoutEngine::fittingSize(*this);
}

std::vector<Ref<LayoutConstraint>>
View::constraintsAffectingLayoutForOrientation(LayoutConstraintOrientation orientation) {
    std::vector<Ref<LayoutConstraint>> found;
    bool horizontal = orientation == LayoutConstraintOrientation::Horizontal;
    for (View* holder = this; holder; holder = holder->superview().get())
        for (const auto& constraint : holder->m_constraints) {
            bool involves = constraint->firstItem().get() == this || constraint->secondItem().get() == this;
            if (involves && isHorizontal(constraint->firstAttribute()) == horizontal)
                found.push_back(constraint);
        }
    return found;
}

void View::addSubview(const Ref<View>& view) {
    if (!view || view.get() == this)
        return;
    Ref<View> self = this->self<View>();
    view->viewWillMoveToSuperview(self);
    view->removeFromSuperview();
    m_subviews.push_back(view);
    view->m_superview = self;
    view->m_layoutEngine.reset(); // the tree it joins has its own
    view->setNextResponder(self);
    invalidateLayoutEngine();
    view->viewDidMoveToSuperview();
}

void View::removeFromSuperview() {
    Ref<View> superview = m_superview.lock();
    if (!superview)
        return;
    Ref<View> keepAlive = self<View>();
    superview->invalidateLayoutEngine();
    auto& siblings = superview->m_subviews;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), keepAlive), siblings.end());
    m_superview.reset();
    setNextResponder(nullptr);
}

bool View::isDescendantOf(const View& view) const {
    for (const View* v = this; v; v = v->m_superview.lock().get())
        if (v == &view)
            return true;
    return false;
}

void View::setHidden(bool hidden) {
    ChangeScope change(*this, "hidden");
    m_hidden = hidden;
}

bool View::isHiddenOrHasHiddenAncestor() const {
    for (auto view = std::static_pointer_cast<const View>(shared_from_this()); view; view = view->superview())
        if (view->m_hidden)
            return true;
    return false;
}

void View::addConstraint(const Ref<LayoutConstraint>& constraint) {
    if (!constraint)
        return;
    m_constraints.push_back(constraint);
    invalidateLayoutEngine();
    setNeedsLayout(true);
}

void View::addConstraints(const std::vector<Ref<LayoutConstraint>>& constraints) {
    for (const auto& constraint : constraints)
        addConstraint(constraint);
}

void View::removeConstraint(const Ref<LayoutConstraint>& constraint) {
    auto end = std::remove(m_constraints.begin(), m_constraints.end(), constraint);
    if (end == m_constraints.end())
        return;
    m_constraints.erase(end, m_constraints.end());
    invalidateLayoutEngine();
    setNeedsLayout(true);
}

// One pass over the held constraints, so that taking many out at once stays linear.
void View::removeConstraints(const std::vector<Ref<LayoutConstraint>>& constraints) {
    if (constraints.empty())
        return;
    std::unordered_set<const LayoutConstraint*> leaving;
    for (const auto& constraint : constraints)
        leaving.insert(constraint.get());
    auto end =
        std::remove_if(m_constraints.begin(), m_constraints.end(),
                       [&](const Ref<LayoutConstraint>& held) { return leaving.count(held.get()) > 0; });
    if (end == m_constraints.end())
        return;
    m_constraints.erase(end, m_constraints.end());
    invalidateLayoutEngine();
    setNeedsLayout(true);
}

void View::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    m_translatesAutoresizingMask = translates;
    invalidateLayoutEngine();
    setNeedsLayout(true);
}

void View::invalidateIntrinsicContentSize() {
    invalidateLayoutEngine();
    setNeedsLayout(true);
}

LayoutPriority View::contentHuggingPriority(LayoutConstraintOrientation orientation) const {
    return m_hugging[static_cast<int>(orientation) & 1];
}

void View::setContentHuggingPriority(LayoutPriority priority, LayoutConstraintOrientation orientation) {
    m_hugging[static_cast<int>(orientation) & 1] = priority;
    invalidateLayoutEngine();
}

LayoutPriority View::contentCompressionResistancePriority(LayoutConstraintOrientation orientation) const {
    return m_compressionResistance[static_cast<int>(orientation) & 1];
}

void View::setContentCompressionResistancePriority(LayoutPriority priority,
                                                   LayoutConstraintOrientation orientation) {
    m_compressionResistance[static_cast<int>(orientation) & 1] = priority;
    invalidateLayoutEngine();
}

void View::setNeedsLayout(bool needsLayout) {
    m_needsLayout = needsLayout;
    if (needsLayout)
        ++m_layoutRequests;
}

void View::setNeedsDisplay(bool needsDisplay) {
    m_needsDisplay = needsDisplay;
    if (needsDisplay)
        ++m_displayRequests;
}

const KeyTable& View::keyTable() const {
    static const KeyTable table(Responder::keyTable(),
                                {{"hidden", observable(&View::isHidden, &View::setHidden)}});
    return table;
}

} // namespace ns
