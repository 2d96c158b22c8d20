#include "kit/Views/QSStackView.hpp"

#include "core/SafelyRemoveObserver.hpp"
#include "kit/Categories/NSView+QSStackView.hpp"
#include "kit/Views/QSClipView.hpp"
#include "platform/foundation/Format.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/views/Layer.hpp"
#include "platform/views/ScrollView.hpp"

#include <algorithm>

namespace corvane {

void* CVContextHidden = nullptr;

namespace {

constexpr const char* HiddenKey = "hidden";

constexpr ns::StackViewGravity Gravities[] = {ns::StackViewGravity::Top, ns::StackViewGravity::Center,
                                              ns::StackViewGravity::Bottom};

int64_t key(ns::StackViewGravity gravity) {
    return static_cast<int64_t>(gravity);
}

bool contains(const QSStackView::ViewList& list, const ns::Ref<ns::View>& view) {
    return std::find(list.begin(), list.end(), view) != list.end();
}

// The class-level slots, shared by the class and its subclasses.
QSStackViewAwakeBlock& awakeSlot() {
    static QSStackViewAwakeBlock slot;
    return slot;
}

QSScrollViewContainerAwakeBlock& scrollAwakeSlot() {
    static QSScrollViewContainerAwakeBlock slot;
    return slot;
}

} // namespace

QSStackView::QSStackView(ns::Rect frame) : ns::StackView(frame) {
    m_pendingVisible.reserve(3);
    m_pendingHidden.reserve(3);
}

QSStackView::~QSStackView() {
    // Views may outlive the stack; none of them may keep an observation by it.
    removeAllViewObservations();
}

void QSStackView::didInit() {
    ns::StackView::didInit();
    setWantsLayer(true);
    if (auto awake = awakeBlock())
        awake(*this);
}

// --- Class level ------------------------------------------------------------------------------

void QSStackView::setAwakeBlock(QSStackViewAwakeBlock block) {
    awakeSlot() = std::move(block);
}
QSStackViewAwakeBlock QSStackView::awakeBlock() {
    return awakeSlot();
}
void QSStackView::setScrollViewContainerAwakeBlock(QSScrollViewContainerAwakeBlock block) {
    scrollAwakeSlot() = std::move(block);
}
QSScrollViewContainerAwakeBlock QSStackView::scrollViewContainerAwakeBlock() {
    return scrollAwakeSlot();
}

ns::Ref<QSStackView> QSStackView::stackViewWithViews(const ns::Array& views) {
    return stackViewWithViews(views, ns::StackViewGravity::Top);
}

ns::Ref<QSStackView> QSStackView::stackViewWithViews(const ns::Array& views, ns::StackViewGravity gravity) {
    ViewList flat = flattenViews(views);
    qs_disableTranslatesAutoresizingMaskIntoConstraints(flat);
    if (gravity == ns::StackViewGravity::Top)
        return ns::StackView::stackViewWithViews<QSStackView>(flat);
    auto stack = ns::StackView::stackViewWithViews<QSStackView>({});
    for (const auto& view : flat)
        stack->addView(view, gravity);
    return stack;
}

QSStackView::ViewList QSStackView::flattenViews(const ns::Array& views) {
    ViewList flat;
    flat.reserve(views.size());
    for (const auto& item : views) {
        if (auto view = item.objectAs<ns::View>()) {
            flat.push_back(std::move(view));
        } else if (item.isArray()) {
            ViewList nested = flattenViews(item.array());
            flat.insert(flat.end(), nested.begin(), nested.end());
        } else {
            ns::Log("Cannot flatten this : %@", item);
        }
    }
    return flat;
}

// --- Visibility -------------------------------------------------------------------------------

void QSStackView::setVisibleViews(const ViewList& views, ns::StackViewGravity gravity) {
    ViewList visible;
    for (const auto& view : views)
        if (!view->isHidden())
            visible.push_back(view);
    ns::StackView::setViews(visible, gravity);
    // Callbacks run once the new placement stands, in the list's order.
    for (const auto& view : views)
        applyPending(view);
    invalidateContentSize();
}

// A recorded change is applied only when it agrees with the view's state now; one that no longer
// does (hidden, then shown again) waits in its list.
void QSStackView::applyPending(const ns::Ref<ns::View>& view) {
    ViewList& pending = view->isHidden() ? m_pendingHidden : m_pendingVisible;
    if (!contains(pending, view))
        return;
    std::erase(pending, view);
    const auto& callback = view->isHidden() ? m_onHidden : m_onVisible;
    if (callback)
        callback(*this, view);
}

void QSStackView::setObservedViews(const ViewList& views, ns::StackViewGravity gravity) {
    removeViewObservations(observedViewsInGravity(gravity));
    m_observed[key(gravity)] = views;
    addViewObservations(&m_observed[key(gravity)]);
}

QSStackView::ViewList* QSStackView::observedViewsInGravity(ns::StackViewGravity gravity) {
    auto found = m_observed.find(key(gravity));
    return found == m_observed.end() ? nullptr : &found->second;
}

QSStackView::ViewList QSStackView::allViews() const {
    ViewList all;
    for (auto gravity : Gravities)
        if (auto found = m_observed.find(key(gravity)); found != m_observed.end())
            all.insert(all.end(), found->second.begin(), found->second.end());
    return all;
}

void QSStackView::showViews(const ViewList& views) {
    for (const auto& view : views)
        view->setHidden(false);
}

void QSStackView::hideViews(const ViewList& views) {
    for (const auto& view : views)
        view->setHidden(true);
}

void QSStackView::showViewsInGravity(ns::StackViewGravity gravity) {
    showViews(viewsInGravity(gravity));
}
void QSStackView::hideViewsInGravity(ns::StackViewGravity gravity) {
    hideViews(viewsInGravity(gravity));
}

ns::StackViewGravity QSStackView::gravityForObservedView(const ns::Ref<ns::View>& view) const {
    for (auto gravity : Gravities)
        if (auto found = m_observed.find(key(gravity));
            found != m_observed.end() && contains(found->second, view))
            return gravity;
    return QSGravityNotFound;
}

ns::StackViewGravity QSStackView::gravityForView(const ns::Ref<ns::View>& view) const {
    for (auto gravity : Gravities)
        if (contains(viewsInGravity(gravity), view))
            return gravity;
    return QSGravityNotFound;
}

void QSStackView::suspendAutoLayoutWhenSubviewVisibilityChanges() {
    m_doLayout = false;
}

void QSStackView::resumeAutoLayoutWhenSubviewVisibilityChanges() {
    m_doLayout = true;
    for (auto gravity : Gravities) {
        const ViewList* observed = observedViewsInGravity(gravity);
        // A copy: callbacks may change the membership while the gravity is rebuilt.
        setVisibleViews(observed ? ViewList(*observed) : ViewList{}, gravity);
    }
}

// --- Observation ------------------------------------------------------------------------------

void QSStackView::addViewObservation(const ns::Ref<ns::View>& view) {
    view->addObserver(*this, HiddenKey, ns::KeyValueObservingOptionNew | ns::KeyValueObservingOptionOld,
                      &CVContextHidden);
}

void QSStackView::removeViewObservation(const ns::Ref<ns::View>& view) {
    core::safelyRemoveObserver(*view, *this, HiddenKey, &CVContextHidden);
}

void QSStackView::addViewObservations(const ViewList* views) {
    if (views)
        for (const auto& view : *views)
            addViewObservation(view);
}

void QSStackView::removeViewObservations(const ViewList* views) {
    if (views)
        for (const auto& view : *views)
            removeViewObservation(view);
}

void QSStackView::removeAllViewObservations() {
    for (auto gravity : Gravities)
        removeViewObservations(observedViewsInGravity(gravity));
}

void QSStackView::observeValueForKeyPath(const std::string&, ns::Object* object, const ns::Dictionary& change,
                                         void* context) {
    if (context != &CVContextHidden)
        return;
    auto view = std::dynamic_pointer_cast<ns::View>(object ? object->shared_from_this() : nullptr);
    if (!view)
        return;
    auto flag = [&](const char* name) {
        auto found = change.find(name);
        return found != change.end() && found->second.boolValue();
    };
    bool wasHidden = flag(ns::KeyValueChangeOldKey);
    bool isHidden = flag(ns::KeyValueChangeNewKey);
    if (wasHidden && !isHidden)
        m_pendingVisible.push_back(view);
    else if (isHidden && !wasHidden)
        m_pendingHidden.push_back(view);
    if (!m_doLayout)
        return;
    // A view in no observed list (an observation added by hand, outside membership) has no
    // gravity to rebuild: its change stays recorded and is applied if the view joins a gravity.
    ns::StackViewGravity gravity = gravityForObservedView(view);
    if (gravity == QSGravityNotFound)
        return;
    setVisibleViews(ViewList(*observedViewsInGravity(gravity)), gravity);
}

// --- Membership -------------------------------------------------------------------------------

void QSStackView::setViews(const ViewList& views, ns::StackViewGravity gravity) {
    ViewList list;
    for (const auto& view : views)
        if (view)
            list.push_back(view);
    qs_disableTranslatesAutoresizingMaskIntoConstraints(list);
    setObservedViews(list, gravity);
    setVisibleViews(list, gravity);
    invalidateContentSize();
}

void QSStackView::addView(const ns::Ref<ns::View>& view, ns::StackViewGravity gravity) {
    if (!view)
        return;
    qs_disableTranslatesAutoresizingMaskIntoConstraints({view});
    if (view->isHidden())
        commitView(view, ns::NotFound, gravity);
    else
        // The base appends through insertView, which commits the view to the observed list.
        ns::StackView::addView(view, gravity);
}

void QSStackView::addViews(const ns::Array& views, ns::StackViewGravity gravity) {
    for (const auto& view : flattenViews(views))
        addView(view, gravity);
}

void QSStackView::insertView(const ns::Ref<ns::View>& view, uint64_t index, ns::StackViewGravity gravity) {
    if (!view)
        return;
    qs_disableTranslatesAutoresizingMaskIntoConstraints({view});
    uint64_t placed = viewsInGravity(gravity).size();
    uint64_t at = std::min(index, placed);
    if (!view->isHidden())
        ns::StackView::insertView(view, at, gravity);
    commitView(view, at, gravity);
}

// A view stands at most once in the observed lists, as it does in the placed lists: committing
// a view that is already observed moves it, dropping the old entry and its observation. So each
// observed view has exactly one observation and one gravity, and removeView ends it for good.
void QSStackView::commitView(const ns::Ref<ns::View>& view, uint64_t index, ns::StackViewGravity gravity) {
    if (!view)
        return;
    for (auto& [_, list] : m_observed) {
        if (contains(list, view)) {
            removeViewObservation(view);
            std::erase(list, view);
        }
    }
    ViewList& list = m_observed[key(gravity)];
    auto position = list.end();
    if (index != static_cast<uint64_t>(ns::NotFound)) {
        int64_t visibleIndex = -1;
        for (auto it = list.begin(); it != list.end(); ++it) {
            if (!(*it)->isHidden())
                ++visibleIndex;
            if (visibleIndex == static_cast<int64_t>(index)) {
                position = it;
                break;
            }
        }
    }
    list.insert(position, view);
    addViewObservation(view);
    invalidateContentSize();
}

void QSStackView::removeView(const ns::Ref<ns::View>& view) {
    ViewList* list = nullptr;
    for (auto gravity : Gravities) {
        list = observedViewsInGravity(gravity);
        if (list && contains(*list, view))
            break;
        list = nullptr;
    }
    if (!list) {
        ns::Log("View not found in stack.");
        invalidateContentSize();
        return;
    }
    removeViewObservation(view);
    if (!view->isHidden())
        ns::StackView::removeView(view);
    std::erase(*list, view);
    invalidateContentSize();
}

void QSStackView::removeViews(const ViewList& views) {
    for (const auto& view : views)
        removeView(view);
}

void QSStackView::removeAllViews() {
    for (auto gravity : Gravities)
        if (const ViewList* list = observedViewsInGravity(gravity))
            removeViews(ViewList(*list));
}

// --- Content size -----------------------------------------------------------------------------

ns::Size QSStackView::intrinsicContentSize() const {
    ns::Size size{ns::ViewNoInstrinsicMetric, ns::ViewNoInstrinsicMetric};
    ViewList placed = views();
    ns::EdgeInsets insets = edgeInsets();
    // Sums one axis along the placed views, with the spacing after every view but the last.
    auto sum = [&](double start, auto extent) {
        double total = start;
        for (size_t i = 0; i < placed.size(); ++i) {
            total += extent(placed[i]->fittingSize());
            if (i + 1 == placed.size())
                break;
            double after = customSpacingAfterView(placed[i]);
            total += after == ns::StackViewSpacingUseDefault ? spacing() : after;
        }
        return total;
    };
    if (m_intrinsicOptions & QSStackViewContentSizeHeight)
        size.height = sum(insets.top + insets.bottom, [](ns::Size s) { return s.height; });
    if (m_intrinsicOptions & QSStackViewContentSizeWidth)
        size.width = sum(insets.left + insets.right, [](ns::Size s) { return s.width; });
    return size;
}

void QSStackView::setIntrinsicContentSizeOptions(uint64_t options) {
    m_intrinsicOptions = options;
    invalidateContentSize();
}

void QSStackView::setAutoContentSizeOptions(uint64_t options) {
    m_autoOptions = options;
    updateAutoContentSizeConstraints();
}

void QSStackView::invalidateContentSize() {
    invalidateIntrinsicContentSize();
    updateAutoContentSizeConstraints();
}

void QSStackView::updateAutoContentSizeConstraints() {
    if (m_autoHeight)
        removeConstraint(m_autoHeight);
    if (m_autoWidth)
        removeConstraint(m_autoWidth);
    ViewList placed = views();
    if (placed.empty())
        return;
    const auto& last = placed.back();
    auto self = std::static_pointer_cast<ns::View>(shared_from_this());
    if (m_autoOptions & QSStackViewContentSizeHeight) {
        m_autoHeight = ns::LayoutConstraint::constraintWithItem(last, ns::LayoutAttribute::Bottom,
                                                                ns::LayoutRelation::Equal, self,
                                                                ns::LayoutAttribute::Bottom, 1.0, 0);
        addConstraint(m_autoHeight);
    }
    if (m_autoOptions & QSStackViewContentSizeWidth) {
        m_autoWidth = ns::LayoutConstraint::constraintWithItem(last, ns::LayoutAttribute::Right,
                                                               ns::LayoutRelation::Equal, self,
                                                               ns::LayoutAttribute::Right, 1.0, 0);
        addConstraint(m_autoWidth);
    }
}

// --- Scroll container and background ----------------------------------------------------------

ns::Ref<ns::ScrollView> QSStackView::scrollViewContainer() {
    if (m_scrollViewAllocated)
        return enclosingScrollView();
    m_scrollViewAllocated = true;
    auto scrollView = ns::ScrollView::make(ns::Rect{{0, 0}, {100, 100}});
    scrollView->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto& present = scrollView->contentView();
    scrollView->setContentView(QSClipView::make(present ? present->frame() : ns::Rect{}));
    scrollView->setBorderType(ns::BorderType::NoBorder);
    scrollView->setHasHorizontalScroller(true);
    scrollView->setHasVerticalScroller(true);
    scrollView->setAutohidesScrollers(true);
    auto self = std::static_pointer_cast<ns::View>(shared_from_this());
    scrollView->setDocumentView(self);
    // A column is held to the visible width and scrolls vertically; a row the other way round.
    bool vertical = orientation() == ns::UserInterfaceLayoutOrientation::Vertical;
    m_stackViewConstraints = ns::LayoutConstraint::constraintsWithVisualFormat(
        vertical ? "H:|-0-[self]-0-|" : "V:|-0-[self]-0-|", 0, {}, {{"self", ns::Value(self)}});
    scrollView->addConstraints(m_stackViewConstraints);
    if (auto awake = scrollViewContainerAwakeBlock())
        awake(*scrollView);
    return scrollView;
}

void QSStackView::updateLayer() {
    if (m_backgroundColor && layer())
        layer()->setBackgroundColor(m_backgroundColor->CGColor());
}

// The platform has no layer update pass of its own: the colour is taken at every layout, ahead of
// the drawing that follows it.
void QSStackView::layout() {
    ns::StackView::layout();
    updateLayer();
}

std::string QSStackView::description() const {
    return ns::format("<%s: %p; observed %lu, placed %lu%s>", className().c_str(),
                      static_cast<const void*>(this), static_cast<unsigned long>(allViews().size()),
                      static_cast<unsigned long>(views().size()), m_doLayout ? "" : ", suspended");
}

} // namespace corvane
