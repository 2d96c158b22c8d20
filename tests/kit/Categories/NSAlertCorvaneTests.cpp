#include "kit/Categories/NSAlert+Corvane.hpp"

#include "platform/system/Workspace.hpp"
#include "platform/views/Button.hpp"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> titles(const ns::Ref<ns::Alert>& alert) {
    std::vector<std::string> out;
    for (const auto& button : alert->buttons())
        out.push_back(button->title() + "=" + std::to_string(button->tag()));
    return out;
}

} // namespace

TEST(StandardAlerts, TextsAndButtonSets) {
    auto bare = corvane::cv_alertWithMessage(std::nullopt, std::nullopt);
    EXPECT_EQ(bare->messageText(), "");
    EXPECT_TRUE(bare->buttons().empty());
    EXPECT_EQ(titles(corvane::cv_yesNoAlertWithMessage("m", "i")),
              (std::vector<std::string>{"Yes=1000", "No=1001"}));
    EXPECT_EQ(titles(corvane::cv_okCancelAlertWithMessage("m", "i")),
              (std::vector<std::string>{"OK=1000", "Cancel=1001"}));
    EXPECT_EQ(titles(corvane::cv_yesNoCancelAlertWithMessage("m", "i")),
              (std::vector<std::string>{"Yes=1000", "No=1001", "Cancel=1002"}));
    auto update = corvane::cv_okUpdateAlertWithMessage("Old data", std::nullopt);
    EXPECT_EQ(update->informativeText(),
              "Please check that you are using the most up to date version of Corvane.");
    EXPECT_EQ(titles(update), (std::vector<std::string>{"OK=1000", "Check for Updates\xE2\x80\xA6=1001"}));
    EXPECT_EQ(corvane::cv_okUpdateAlertWithMessage("m", "given")->informativeText(), "given");
    auto confirmation = corvane::cv_confirmationAlertWithMessage("Saved");
    EXPECT_EQ(titles(confirmation),
              (std::vector<std::string>{"OK=1000", "Open File\u2026=1001", "Show in Finder\u2026=1002"}));
    EXPECT_EQ(confirmation->informativeText(), "");
}

TEST(StandardAlerts, ConfirmationSheetCallsTheHandlerBeforeOpeningOrRevealing) {
    std::vector<std::string> events;
    ns::Workspace::shared()->setLauncher([&](const std::vector<std::string>& arguments) {
        events.push_back("launch " + arguments[0]);
        return true;
    });
    auto window = ns::Window::make({0, 0, 500, 300});
    for (size_t button : {0u, 1u, 2u}) {
        events.clear();
        auto alert = corvane::cv_beginConfirmationAlertForURL(
            "/tmp/payslip.pdf", window, "Saved", [&](int64_t r) { events.push_back(std::to_string(r)); });
        alert->buttons()[button]->performClick();
        EXPECT_FALSE(alert->window()->isVisible());
        const std::vector<std::vector<std::string>> expected = {
            {"1000"}, // nothing opened on "OK"
            {"1001", "launch xdg-open"},
            {"1002", "launch dbus-send"},
        };
        EXPECT_EQ(events, expected[button]);
    }
    events.clear();
    auto alert = corvane::cv_beginConfirmationAlertForURL("/tmp/payslip.pdf", window, "Saved", nullptr);
    alert->buttons()[1]->performClick(); // no handler: the file still opens
    EXPECT_EQ(events, (std::vector<std::string>{"launch xdg-open"}));
    ns::Workspace::shared()->setLauncher(nullptr);
}
