#include "platform/views/Window.hpp"

#include "platform/views/Application.hpp"

namespace ns {

Window::Window(Rect contentRect, uint64_t styleMask)
    : m_frame(frameRectForContentRect(contentRect, styleMask)), m_styleMask(styleMask) {}

Ref<Window> Window::make(Rect contentRect, uint64_t styleMask) {
    return create<Window>(contentRect, styleMask);
}

void Window::didInit() {
    Responder::didInit();
    setContentView(View::make());
}

Rect Window::frameRectForContentRect(Rect contentRect, uint64_t styleMask) {
    bool titled = (styleMask & WindowStyleMaskTitled) && !(styleMask & WindowStyleMaskFullSizeContentView);
    return titled ? Rect(contentRect.x(), contentRect.y(), contentRect.width(),
                         contentRect.height() + TitleBarHeight)
                  : contentRect;
}

Rect Window::contentRectForFrameRect(Rect frameRect, uint64_t styleMask) {
    bool titled = (styleMask & WindowStyleMaskTitled) && !(styleMask & WindowStyleMaskFullSizeContentView);
    return titled ? Rect(frameRect.x(), frameRect.y(), frameRect.width(),
                         std::max(0.0, frameRect.height() - TitleBarHeight))
                  : frameRect;
}

void Window::setFrame(Rect frame, bool display, bool) {
    m_frame = frame;
    sizeContentView();
    if (display)
        this->display();
}

void Window::setContentSize(Size size) {
    Rect content = contentRectForFrameRect(m_frame);
    content.size = size;
    setFrame(frameRectForContentRect(content), false);
}

void Window::setContentView(const Ref<View>& view) {
    if (m_contentView) {
        m_contentView->setWindow(nullptr);
        m_contentView->setNextResponder(nullptr);
    }
    m_contentView = view;
    if (!view)
        return;
    view->removeFromSuperview();
    view->setWindow(self<Window>());
    view->setNextResponder(self<Responder>());
    sizeContentView();
}

void Window::sizeContentView() {
    if (!m_contentView)
        return;
    Rect content = contentRectForFrameRect(m_frame);
    m_contentView->setFrame({0, 0, content.width(), content.height()});
}

Ref<Responder> Window::firstResponder() {
    auto responder = m_firstResponder.lock();
    return responder ? responder : self<Responder>();
}

bool Window::makeFirstResponder(const Ref<Responder>& responder) {
    if (!responder) {
        m_firstResponder.reset();
        return true;
    }
    if (!responder->acceptsFirstResponder())
        return false;
    m_firstResponder = responder;
    return true;
}

bool Window::isKeyWindow() const {
    return Application::shared()->keyWindow().get() == this;
}

void Window::makeKeyAndOrderFront() {
    m_visible = true;
    Application::shared()->addWindow(self<Window>());
    Application::shared()->setKeyWindow(self<Window>());
}

void Window::orderOut() {
    m_visible = false;
    auto application = Application::shared();
    if (application->keyWindow().get() == this)
        application->setKeyWindow(nullptr);
}

void Window::close() {
    orderOut();
    Application::shared()->removeWindow(*this);
}

void Window::layoutIfNeeded() {
    if (m_contentView)
        m_contentView->layoutSubtreeIfNeeded();
}

void Window::display() {
    layoutIfNeeded();
    ++m_displayCount;
}

void Window::beginSheet(const Ref<Window>& sheet, std::function<void(ModalResponse)> completionHandler) {
    if (!sheet)
        return;
    m_attachedSheet = sheet;
    m_sheetHandler = std::move(completionHandler);
    sheet->m_sheetParent = self<Window>();
    sheet->m_visible = true;
}

void Window::endSheet(const Ref<Window>& sheet, ModalResponse returnCode) {
    if (!sheet || sheet != m_attachedSheet)
        return;
    auto handler = std::move(m_sheetHandler);
    m_sheetHandler = nullptr;
    m_attachedSheet.reset();
    sheet->m_sheetParent.reset();
    sheet->m_visible = false;
    if (handler)
        handler(returnCode);
}

} // namespace ns
