#include "platform/views/Control.hpp"

#include "platform/graphics/Font.hpp"
#include "platform/views/Application.hpp"

namespace ns {

Control::Control(Rect frame, Ref<Cell> cell) : View(frame), m_cell(cell ? std::move(cell) : Cell::make()) {}

void Control::setCell(Ref<Cell> cell) {
    if (!cell)
        return;
    m_cell = std::move(cell);
    contentDidChange();
}

void Control::contentDidChange() {
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

void Control::setObjectValue(Value value) {
    ChangeScope change(*this, "objectValue");
    m_cell->setObjectValue(std::move(value));
    contentDidChange();
}

void Control::setStringValue(std::string value) {
    ChangeScope change(*this, "stringValue");
    m_cell->setStringValue(std::move(value));
    contentDidChange();
}

void Control::setEnabled(bool enabled) {
    ChangeScope change(*this, "enabled");
    m_cell->setEnabled(enabled);
    setNeedsDisplay(true);
}

void Control::setFont(Ref<Font> font) {
    m_cell->setFont(std::move(font));
    contentDidChange();
}

void Control::setAlignment(TextAlignment alignment) {
    m_cell->setAlignment(alignment);
    setNeedsDisplay(true);
}

void Control::setControlSize(ControlSize size) {
    m_cell->setControlSize(size);
    contentDidChange();
}

bool Control::sendAction(const Selector& action, const Ref<Object>& target) {
    if (action.isEmpty() || !isEnabled())
        return false;
    return Application::shared()->sendAction(action, target, self<Object>());
}

void Control::performClick() {
    sendAction(m_action, target());
}

void Control::sizeToFit() {
    Size size = intrinsicContentSize();
    Size current = frame().size;
    setFrameSize({size.width == ViewNoIntrinsicMetric ? current.width : size.width,
                  size.height == ViewNoIntrinsicMetric ? current.height : size.height});
}

void Control::drawRect(Rect) {
    m_cell->drawWithFrame(bounds(), *this);
}

const KeyTable& Control::keyTable() const {
    static const KeyTable table(View::keyTable(),
                                {{"objectValue", observable(&Control::objectValue, &Control::setObjectValue)},
                                 {"value", observable(&Control::objectValue, &Control::setObjectValue)},
                                 {"stringValue", observable(&Control::stringValue, &Control::setStringValue)},
                                 {"enabled", observable(&Control::isEnabled, &Control::setEnabled)},
                                 {"tag", property(&Control::tag, &Control::setTag)}});
    return table;
}

} // namespace ns
