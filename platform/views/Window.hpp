#pragma once

#include "platform/views/Responder.hpp"
#include "platform/views/View.hpp"

#include <functional>
#include <string>

namespace ns {

constexpr uint64_t WindowStyleMaskBorderless = 0;
constexpr uint64_t WindowStyleMaskTitled = 1ull << 0;
constexpr uint64_t WindowStyleMaskClosable = 1ull << 1;
constexpr uint64_t WindowStyleMaskMiniaturizable = 1ull << 2;
constexpr uint64_t WindowStyleMaskResizable = 1ull << 3;
constexpr uint64_t WindowStyleMaskUtilityWindow = 1ull << 4;
constexpr uint64_t WindowStyleMaskDocModalWindow = 1ull << 6;
constexpr uint64_t WindowStyleMaskFullSizeContentView = 1ull << 15;

using ModalResponse = int64_t;
constexpr ModalResponse ModalResponseOK = 1;
constexpr ModalResponse ModalResponseCancel = 0;

// A window: a frame on the screen (origin lower-left), a title bar for titled styles, and one
// content view that fills the rest. It is the next responder of its content view.
class Window : public Responder {
public:
    Window(Rect contentRect, uint64_t styleMask);
    static Ref<Window> make(Rect contentRect, uint64_t styleMask = WindowStyleMaskTitled);
    void didInit() override;

    // Height of the title bar of a titled window.
    static constexpr double TitleBarHeight = 22;
    static Rect frameRectForContentRect(Rect contentRect, uint64_t styleMask);
    static Rect contentRectForFrameRect(Rect frameRect, uint64_t styleMask);
    Rect contentRectForFrameRect(Rect frameRect) const {
        return contentRectForFrameRect(frameRect, m_styleMask);
    }
    Rect frameRectForContentRect(Rect contentRect) const {
        return frameRectForContentRect(contentRect, m_styleMask);
    }

    uint64_t styleMask() const { return m_styleMask; }
    Rect frame() const { return m_frame; }
    // Moves and resizes the window; the content view follows. Animation is not shown: the
    // frame is set at once either way, then displayed when asked.
    void setFrame(Rect frame, bool display, bool animate = false);
    void setContentSize(Size size);

    const Ref<View>& contentView() const { return m_contentView; }
    // Replaces the content view (nil leaves the window empty); it is sized to the content rect.
    void setContentView(const Ref<View>& view);

    const std::string& title() const { return m_title; }
    void setTitle(std::string title) { m_title = std::move(title); }

    // The responder that receives key events first: the window itself when none was chosen.
    Ref<Responder> firstResponder();
    // Asks the responder to take first-responder status; false when it refuses. nil makes the
    // window itself first responder.
    bool makeFirstResponder(const Ref<Responder>& responder);

    bool isVisible() const { return m_visible; }
    bool isKeyWindow() const;
    void makeKeyAndOrderFront();
    void orderOut();
    // Hides the window and takes it out of the application's window list.
    void close();

    // Lays out the content view's tree.
    void layoutIfNeeded();
    void display();
    uint64_t displayCount() const { return m_displayCount; }

    // The sheet shown on this window, its parent when it is a sheet.
    Ref<Window> attachedSheet() const { return m_attachedSheet; }
    Ref<Window> sheetParent() const { return m_sheetParent.lock(); }
    // Attaches the sheet; endSheet detaches it and calls the handler with the return code.
    void beginSheet(const Ref<Window>& sheet, std::function<void(ModalResponse)> completionHandler);
    void endSheet(const Ref<Window>& sheet, ModalResponse returnCode = ModalResponseCancel);

private:
    void sizeContentView();

    Rect m_frame;
    uint64_t m_styleMask;
    Ref<View> m_contentView;
    std::string m_title;
    WeakRef<Responder> m_firstResponder;
    bool m_visible = false;
    uint64_t m_displayCount = 0;
    Ref<Window> m_attachedSheet;
    WeakRef<Window> m_sheetParent;
    std::function<void(ModalResponse)> m_sheetHandler;
};

} // namespace ns
