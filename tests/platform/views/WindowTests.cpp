#include "platform/views/Application.hpp"
#include "platform/views/Event.hpp"
#include "platform/views/Window.hpp"

#include <gtest/gtest.h>

using ns::Rect;

namespace {

class KeyTaker : public ns::View {
public:
    bool acceptsFirstResponder() const override { return true; }
    void keyDown(const ns::Ref<ns::Event>& event) override {
        keys += event->characters();
        View::keyDown(event);
    }
    void save(const ns::Value& sender) { savedBy = sender.object(); }
    const ns::ActionTable& actionTable() const override {
        static const ns::ActionTable table(View::actionTable(), {{"save:", ns::action(&KeyTaker::save)}});
        return table;
    }
    std::string keys;
    ns::Ref<ns::Object> savedBy;
};

} // namespace

TEST(Window, FrameAndContentRectanglesForStyles) {
    EXPECT_EQ(ns::Window::frameRectForContentRect({10, 20, 300, 200}, ns::WindowStyleMaskTitled),
              Rect(10, 20, 300, 222));
    EXPECT_EQ(ns::Window::contentRectForFrameRect({10, 20, 300, 222}, ns::WindowStyleMaskTitled),
              Rect(10, 20, 300, 200));
    EXPECT_EQ(ns::Window::frameRectForContentRect({0, 0, 50, 50}, ns::WindowStyleMaskBorderless),
              Rect(0, 0, 50, 50));
    EXPECT_EQ(ns::Window::contentRectForFrameRect({0, 0, 50, 10}, ns::WindowStyleMaskTitled),
              Rect(0, 0, 50, 0));

    auto window = ns::Window::make({0, 0, 300, 200});
    EXPECT_EQ(window->contentView()->frame(), Rect(0, 0, 300, 200));
    EXPECT_EQ(window->contentView()->window(), window);
    window->setFrame({0, 0, 400, 322}, true, true);
    EXPECT_EQ(window->contentView()->frame(), Rect(0, 0, 400, 300));
    EXPECT_EQ(window->displayCount(), 1u);
    window->setContentSize({120, 80});
    EXPECT_EQ(window->frame(), Rect(0, 0, 120, 102));
}

TEST(Window, FirstResponderKeyWindowAndEvents) {
    auto window = ns::Window::make({0, 0, 200, 100});
    auto field = ns::create<KeyTaker>();
    window->contentView()->addSubview(field);
    EXPECT_EQ(field->window(), window);
    EXPECT_EQ(window->firstResponder(), window);
    EXPECT_FALSE(window->makeFirstResponder(ns::View::make())); // plain views refuse
    EXPECT_TRUE(window->makeFirstResponder(field));

    auto application = ns::Application::shared();
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_TRUE(window->isVisible());
    application->sendEvent(ns::Event::keyEvent(ns::EventType::KeyDown, "a", 0));
    EXPECT_EQ(field->keys, "a");

    // with no target, an action goes up the chain from the first responder
    auto sender = ns::create<ns::Object>();
    EXPECT_TRUE(application->sendAction(ns::Selector("save:"), nullptr, sender));
    EXPECT_EQ(field->savedBy, sender);
    EXPECT_FALSE(application->sendAction(ns::Selector("print:"), nullptr, sender));

    window->close();
    EXPECT_FALSE(window->isKeyWindow());
    EXPECT_EQ(application->keyWindow(), nullptr);
}

TEST(Window, SheetsCallTheirHandlerOnceWithTheReturnCode) {
    auto window = ns::Window::make({0, 0, 200, 100});
    auto sheet = ns::Window::make({0, 0, 100, 50});
    std::vector<ns::ModalResponse> responses;
    window->beginSheet(sheet, [&](ns::ModalResponse response) { responses.push_back(response); });
    EXPECT_EQ(window->attachedSheet(), sheet);
    EXPECT_EQ(sheet->sheetParent(), window);
    window->endSheet(ns::Window::make({0, 0, 1, 1}), 5); // not the sheet: ignored
    window->endSheet(sheet, 1001);
    window->endSheet(sheet, 1002);
    EXPECT_EQ(responses, (std::vector<ns::ModalResponse>{1001}));
    EXPECT_EQ(window->attachedSheet(), nullptr);
}

TEST(Window, ContentViewTreeIsLaidOutByConstraints) {
    auto window = ns::Window::make({0, 0, 200, 100});
    auto box = ns::View::make();
    box->setTranslatesAutoresizingMaskIntoConstraints(false);
    window->contentView()->addSubview(box);
    window->contentView()->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("H:|-[box]-|", 0, {}, {{"box", box}}));
    window->contentView()->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("V:|-[box]-|", 0, {}, {{"box", box}}));
    window->layoutIfNeeded();
    EXPECT_EQ(box->frame(), Rect(20, 20, 160, 60));
    window->setFrame({0, 0, 300, 222}, false);
    window->layoutIfNeeded();
    EXPECT_EQ(box->frame(), Rect(20, 20, 260, 160));
}
