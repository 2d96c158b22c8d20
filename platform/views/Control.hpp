#pragma once

#include "platform/views/Cell.hpp"
#include "platform/views/View.hpp"

namespace ns {

// A view that shows a value through its cell and sends an action to a target when the user
// works it.
class Control : public View {
public:
    explicit Control(Rect frame = {}, Ref<Cell> cell = nullptr);
    static Ref<Control> make(Rect frame = {}) { return create<Control>(frame); }

    const Ref<Cell>& cell() const { return m_cell; }
    // Replaces the cell; nil is ignored.
    void setCell(Ref<Cell> cell);

    Ref<Object> target() const { return m_target.lock(); }
    // Not owned; nil sends the action up the responder chain.
    void setTarget(const Ref<Object>& target) { m_target = target; }
    const Selector& action() const { return m_action; }
    void setAction(Selector action) { m_action = std::move(action); }
    int64_t tag() const override { return m_cell->tag(); }
    void setTag(int64_t tag) { m_cell->setTag(tag); }

    const Value& objectValue() const { return m_cell->objectValue(); }
    void setObjectValue(Value value);
    std::string stringValue() const { return m_cell->stringValue(); }
    void setStringValue(std::string value);
    double doubleValue() const { return m_cell->objectValue().doubleValue(); }
    int64_t integerValue() const { return m_cell->objectValue().integerValue(); }
    bool isEnabled() const { return m_cell->isEnabled(); }
    void setEnabled(bool enabled);
    Ref<Font> font() const { return m_cell->font(); }
    void setFont(Ref<Font> font);
    TextAlignment alignment() const { return m_cell->alignment(); }
    void setAlignment(TextAlignment alignment);
    ControlSize controlSize() const { return m_cell->controlSize(); }
    void setControlSize(ControlSize size);

    // Sends the action to the target (or up the chain); false when nobody took it or the
    // control is disabled.
    bool sendAction(const Selector& action, const Ref<Object>& target);
    // What a click does: sends the action.
    virtual void performClick();
    // Sets the frame size to the intrinsic size.
    void sizeToFit();

    void drawRect(Rect dirtyRect) override;
    const KeyTable& keyTable() const override;

protected:
    // Something the cell shows changed: size and drawing are asked for again.
    void contentDidChange();

private:
    Ref<Cell> m_cell;
    WeakRef<Object> m_target;
    Selector m_action;
};

} // namespace ns
