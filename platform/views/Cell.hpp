#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/ControlSize.hpp"
#include "platform/graphics/Geometry.hpp"
#include "platform/graphics/ParagraphStyle.hpp"

#include <string>

namespace ns {

class Color;
class Font;
class Image;
class View;

using ControlStateValue = int64_t;
constexpr ControlStateValue ControlStateValueMixed = -1;
constexpr ControlStateValue ControlStateValueOff = 0;
constexpr ControlStateValue ControlStateValueOn = 1;

enum class CellImagePosition : int64_t {
    NoImage = 0,
    ImageOnly = 1,
    ImageLeft = 2,
    ImageRight = 3,
    ImageBelow = 4,
    ImageAbove = 5,
    ImageOverlaps = 6,
    ImageLeading = 7,
    ImageTrailing = 8,
};

enum class ImageScaling : int64_t {
    ProportionallyDown = 0,
    AxesIndependently = 1,
    None = 2,
    ProportionallyUpOrDown = 3,
};

// What a control shows and how: its value, title, font, alignment, state and a few looks. A
// control keeps one cell and forwards these to it; table headers use cells of their own.
class Cell : public Object {
public:
    static Ref<Cell> make() { return create<Cell>(); }

    const Value& objectValue() const { return m_objectValue; }
    void setObjectValue(Value value) { m_objectValue = std::move(value); }
    // The value as text: a string as it is, anything else by its description ("" for nil).
    std::string stringValue() const;
    void setStringValue(std::string value) { m_objectValue = Value(std::move(value)); }
    std::string title() const { return stringValue(); }
    void setTitle(std::string title) { setStringValue(std::move(title)); }

    // The font, the system font of the control size when none was set.
    Ref<Font> font() const;
    void setFont(Ref<Font> font) { m_font = std::move(font); }
    TextAlignment alignment() const { return m_alignment; }
    void setAlignment(TextAlignment alignment) { m_alignment = alignment; }
    ControlSize controlSize() const { return m_controlSize; }
    void setControlSize(ControlSize size) { m_controlSize = size; }
    ControlStateValue state() const { return m_state; }
    void setState(ControlStateValue state) { m_state = state; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    int64_t tag() const { return m_tag; }
    void setTag(int64_t tag) { m_tag = tag; }
    bool isBordered() const { return m_bordered; }
    void setBordered(bool bordered) { m_bordered = bordered; }
    const Ref<Color>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(Ref<Color> color) { m_backgroundColor = std::move(color); }
    const Ref<Image>& image() const { return m_image; }
    void setImage(Ref<Image> image) { m_image = std::move(image); }

    // The size the content needs (text measured in the font), before any control padding.
    virtual Size cellSize() const;
    // Draws the content in the frame of the view (the current context is in its coordinates).
    virtual void drawWithFrame(Rect frame, View& controlView);

private:
    Value m_objectValue;
    Ref<Font> m_font;
    TextAlignment m_alignment = TextAlignment::Natural;
    ControlSize m_controlSize = ControlSize::Regular;
    ControlStateValue m_state = ControlStateValueOff;
    bool m_enabled = true;
    int64_t m_tag = 0;
    bool m_bordered = false;
    Ref<Color> m_backgroundColor;
    Ref<Image> m_image;
};

} // namespace ns
