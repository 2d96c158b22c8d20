#include "platform/views/Alert.hpp"

#include "platform/graphics/Font.hpp"
#include "platform/views/Button.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

#include <mutex>

namespace ns {

namespace {

std::mutex& responderMutex() {
    static std::mutex mutex;
    return mutex;
}

Alert::ModalResponder& modalResponder() {
    static Alert::ModalResponder responder;
    return responder;
}

constexpr double PanelWidth = 420;
constexpr double TextWidth = PanelWidth - 40;

} // namespace

void Alert::setMessageText(std::string text) {
    m_messageText = std::move(text);
    m_panelBuilt = false;
}

void Alert::setInformativeText(std::string text) {
    m_informativeText = std::move(text);
    m_panelBuilt = false;
}

Ref<Button> Alert::addButtonWithTitle(std::string title) {
    auto button = Button::buttonWithTitle(std::move(title), self<Object>(), Selector("buttonPressed:"));
    button->setTag(AlertFirstButtonReturn + static_cast<int64_t>(m_buttons.size()));
    if (m_buttons.empty())
        button->setKeyEquivalent("\r");
    m_buttons.push_back(button);
    m_panelBuilt = false;
    return button;
}

Ref<Window> Alert::window() {
    if (!m_window)
        m_window =
            Window::make({0, 0, PanelWidth, 120}, WindowStyleMaskTitled | WindowStyleMaskDocModalWindow);
    if (!m_panelBuilt)
        buildPanel();
    return m_window;
}

// The panel: the message in bold, the informative text wrapped below it, and the buttons in a
// row at the trailing edge with the first button outermost.
void Alert::buildPanel() {
    m_panelBuilt = true;
    if (m_buttons.empty())
        addButtonWithTitle("OK");
    m_panelBuilt = true;

    std::vector<Ref<View>> column;
    auto message = TextField::labelWithString(m_messageText);
    message->setFont(Font::boldSystemFontOfSize(Font::systemFontSize()));
    message->setPreferredMaxLayoutWidth(TextWidth);
    column.push_back(message);
    if (!m_informativeText.empty()) {
        auto info = TextField::labelWithString(m_informativeText);
        info->setFont(Font::systemFontOfSize(Font::smallSystemFontSize()));
        info->setPreferredMaxLayoutWidth(TextWidth);
        column.push_back(info);
    }
    auto row = StackView::make();
    for (auto it = m_buttons.rbegin(); it != m_buttons.rend(); ++it)
        row->addView(*it, StackViewGravity::Trailing);
    column.push_back(row);

    auto stack = StackView::stackViewWithViews(column);
    stack->setOrientation(UserInterfaceLayoutOrientation::Vertical);
    stack->setAlignment(LayoutAttribute::Leading);
    stack->setEdgeInsets({20, 20, 20, 20});
    stack->setCustomSpacing(18, column[column.size() - 2]);
    stack->addConstraint(LayoutConstraint::constraintWithItem(
        row, LayoutAttribute::Width, LayoutRelation::Equal, stack, LayoutAttribute::Width, 1, -40));
    stack->addConstraint(
        LayoutConstraint::constraintWithItem(stack, LayoutAttribute::Width, LayoutRelation::Equal, nullptr,
                                             LayoutAttribute::NotAnAttribute, 1, PanelWidth));
    Size size = stack->fittingSize();
    m_window->setContentSize(size);
    auto content = m_window->contentView();
    for (const auto& old : std::vector<Ref<View>>(content->subviews()))
        old->removeFromSuperview();
    content->removeConstraints(content->constraints());
    stack->setTranslatesAutoresizingMaskIntoConstraints(false);
    content->addSubview(stack);
    content->addConstraints(
        LayoutConstraint::constraintsWithVisualFormat("H:|[stack]|", 0, {}, {{"stack", stack}}));
    content->addConstraints(
        LayoutConstraint::constraintsWithVisualFormat("V:|[stack]|", 0, {}, {{"stack", stack}}));
    m_window->layoutIfNeeded();
}

void Alert::setModalResponder(ModalResponder responder) {
    std::lock_guard lock(responderMutex());
    modalResponder() = std::move(responder);
}

ModalResponse Alert::runModal() {
    window();
    ModalResponder responder;
    {
        std::lock_guard lock(responderMutex());
        responder = modalResponder();
    }
    return responder ? responder(*this) : AlertFirstButtonReturn;
}

void Alert::beginSheetModalForWindow(const Ref<Window>& window, std::function<void(ModalResponse)> handler) {
    if (!window) {
        ModalResponse response = runModal();
        if (handler)
            handler(response);
        return;
    }
    window->beginSheet(this->window(), std::move(handler));
}

void Alert::buttonPressed(const Value& sender) {
    auto button = sender.objectAs<Button>();
    if (!button || !m_window)
        return;
    if (auto parent = m_window->sheetParent())
        parent->endSheet(m_window, button->tag());
}

const ActionTable& Alert::actionTable() const {
    static const ActionTable table(Object::actionTable(),
                                   {{"buttonPressed:", action(&Alert::buttonPressed)}});
    return table;
}

} // namespace ns
