#pragma once

#include "platform/views/Control.hpp"

namespace ns {

class AttributedString;
class Color;
class Image;

enum class BezelStyle : int64_t {
    Rounded = 1,
    RegularSquare = 2,
    Disclosure = 5,
    ShadowlessSquare = 6,
    Circular = 7,
    TexturedSquare = 8,
    HelpButton = 9,
    SmallSquare = 10,
    TexturedRounded = 11,
    RoundRect = 12,
    Recessed = 13,
    RoundedDisclosure = 14,
    Inline = 15,
};

enum class ButtonType : int64_t {
    MomentaryLight = 0,
    PushOnPushOff = 1,
    Toggle = 2,
    Switch = 3,
    Radio = 4,
    MomentaryChange = 5,
    OnOff = 6,
    MomentaryPushIn = 7,
};

// A push button, check box or radio button: a title and an optional image in a bezel.
class Button : public Control {
public:
    explicit Button(Rect frame = {});
    static Ref<Button> make(Rect frame = {}) { return create<Button>(frame); }
    static Ref<Button> buttonWithTitle(std::string title, const Ref<Object>& target, Selector action);
    static Ref<Button> checkboxWithTitle(std::string title, const Ref<Object>& target, Selector action);

    std::string title() const { return stringValue(); }
    void setTitle(std::string title) { setStringValue(std::move(title)); }
    // Styled title; nil returns to the plain title.
    const Ref<AttributedString>& attributedTitle() const { return m_attributedTitle; }
    void setAttributedTitle(Ref<AttributedString> title);
    const Ref<Image>& image() const { return cell()->image(); }
    void setImage(Ref<Image> image);
    CellImagePosition imagePosition() const { return m_imagePosition; }
    void setImagePosition(CellImagePosition position);
    ImageScaling imageScaling() const { return m_imageScaling; }
    void setImageScaling(ImageScaling scaling);
    BezelStyle bezelStyle() const { return m_bezelStyle; }
    void setBezelStyle(BezelStyle style);
    bool isBordered() const { return cell()->isBordered(); }
    void setBordered(bool bordered);
    ButtonType buttonType() const { return m_buttonType; }
    void setButtonType(ButtonType type);
    ControlStateValue state() const { return cell()->state(); }
    void setState(ControlStateValue state);
    // The bezel's fill; nil uses the control colour of the appearance.
    const Ref<Color>& backgroundColor() const { return cell()->backgroundColor(); }
    void setBackgroundColor(Ref<Color> color);
    const std::string& keyEquivalent() const { return m_keyEquivalent; }
    void setKeyEquivalent(std::string key) { m_keyEquivalent = std::move(key); }

    // Toggles the state of on/off types, then sends the action.
    void performClick() override;
    Size intrinsicContentSize() const override;
    void drawRect(Rect dirtyRect) override;
    const KeyTable& keyTable() const override;

    static constexpr double ImageTitleGap = 4;

private:
    Ref<AttributedString> titleToDraw() const;
    Size imageSizeIn(Size available) const;
    void drawImageAndTitle(Rect content);
    void drawMark(Rect box);
    bool isCheckOrRadio() const {
        return m_buttonType == ButtonType::Switch || m_buttonType == ButtonType::Radio;
    }

    Ref<AttributedString> m_attributedTitle;
    CellImagePosition m_imagePosition = CellImagePosition::NoImage;
    ImageScaling m_imageScaling = ImageScaling::ProportionallyDown;
    BezelStyle m_bezelStyle = BezelStyle::Rounded;
    ButtonType m_buttonType = ButtonType::MomentaryPushIn;
    std::string m_keyEquivalent;
};

} // namespace ns
