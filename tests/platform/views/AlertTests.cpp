#include "platform/views/Alert.hpp"
#include "platform/views/Button.hpp"

#include <gtest/gtest.h>

TEST(Alert, ButtonsAnswerInTheOrderTheyWereAdded) {
    auto alert = ns::Alert::make();
    alert->setMessageText("Delete the pay run?");
    alert->addButtonWithTitle("Yes");
    alert->addButtonWithTitle("No");
    alert->addButtonWithTitle("Cancel");
    ASSERT_EQ(alert->buttons().size(), 3u);
    EXPECT_EQ(alert->buttons()[0]->tag(), 1000);
    EXPECT_EQ(alert->buttons()[2]->tag(), 1002);

    // the panel shows the first button outermost, at the trailing edge
    auto window = alert->window();
    double yes = alert->buttons()[0]->frame().x(), no = alert->buttons()[1]->frame().x();
    EXPECT_GT(yes, no);
    EXPECT_GT(window->contentView()->frame().height(), 40);
}

TEST(Alert, ModalRunsAskTheResponderOrAnswerTheFirstButton) {
    auto alert = ns::Alert::make();
    EXPECT_EQ(alert->runModal(), ns::AlertFirstButtonReturn);
    EXPECT_EQ(alert->buttons().size(), 1u); // the "OK" an alert without buttons shows
    EXPECT_EQ(alert->buttons()[0]->title(), "OK");
    ns::Alert::setModalResponder([](ns::Alert& asked) { return asked.buttons().back()->tag(); });
    alert->addButtonWithTitle("Later");
    EXPECT_EQ(alert->runModal(), 1001);
    ns::Alert::setModalResponder(nullptr);
}

TEST(Alert, SheetsEndWithTheClickedButton) {
    auto parent = ns::Window::make({0, 0, 500, 300});
    auto alert = ns::Alert::make();
    alert->addButtonWithTitle("OK");
    alert->addButtonWithTitle("Cancel");
    std::vector<ns::ModalResponse> responses;
    alert->beginSheetModalForWindow(parent, [&](ns::ModalResponse r) { responses.push_back(r); });
    EXPECT_EQ(parent->attachedSheet(), alert->window());
    EXPECT_TRUE(responses.empty());
    alert->buttons()[1]->performClick();
    EXPECT_EQ(responses, (std::vector<ns::ModalResponse>{1001}));
    EXPECT_EQ(parent->attachedSheet(), nullptr);
    alert->buttons()[0]->performClick(); // the sheet is over: nothing more happens
    EXPECT_EQ(responses.size(), 1u);
}
