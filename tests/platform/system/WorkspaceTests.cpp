#include "platform/system/Workspace.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

class WorkspaceLaunching : public ::testing::Test {
protected:
    void SetUp() override {
        ns::Workspace::shared()->setLauncher([this](const std::vector<std::string>& arguments) {
            launched.push_back(arguments);
            return succeed;
        });
    }
    void TearDown() override { ns::Workspace::shared()->setLauncher(nullptr); }

    std::vector<std::vector<std::string>> launched;
    bool succeed = true;
};

} // namespace

TEST_F(WorkspaceLaunching, FileNamesArePassedWhole) {
    const std::string awkward = "/tmp/it's a \"file\"; rm -rf ~ $(x).txt";
    EXPECT_TRUE(ns::Workspace::shared()->openFile(awkward));
    EXPECT_TRUE(ns::Workspace::shared()->openFile("-rf"));
    ASSERT_EQ(launched.size(), 2u);
    EXPECT_EQ(launched[0], (std::vector<std::string>{"xdg-open", awkward}));
    // a relative name becomes absolute, so it can never read as an option
    EXPECT_EQ(launched[1][1], (std::filesystem::current_path() / "-rf").string());
    EXPECT_FALSE(ns::Workspace::shared()->openFile(""));
    EXPECT_EQ(launched.size(), 2u);
}

TEST_F(WorkspaceLaunching, RevealAsksTheFileManagerThenFallsBackToTheFolder) {
    EXPECT_TRUE(ns::Workspace::shared()->selectFile("/tmp/a b/pay slip.pdf"));
    ASSERT_EQ(launched.size(), 1u);
    EXPECT_EQ(launched[0][0], "dbus-send");
    EXPECT_EQ(launched[0][6], "array:string:file:///tmp/a%20b/pay%20slip.pdf");
    launched.clear();
    succeed = false;
    EXPECT_FALSE(ns::Workspace::shared()->selectFile("/tmp/a b/pay slip.pdf"));
    ASSERT_EQ(launched.size(), 2u);
    EXPECT_EQ(launched[1], (std::vector<std::string>{"xdg-open", "/tmp/a b"}));
}

TEST(Workspace, RealLauncherStartsProgramsWithoutAShell) {
    EXPECT_TRUE(ns::Workspace::launch({"true"}));
    EXPECT_FALSE(ns::Workspace::launch({"/nonexistent/program"}));
    EXPECT_FALSE(ns::Workspace::launch({}));
}

TEST(Workspace, RemembersFileSystemChangeHints) {
    auto workspace = ns::Workspace::shared();
    uint64_t before = workspace->fileSystemChangeCount();
    workspace->noteFileSystemChanged("/tmp/x");
    EXPECT_EQ(workspace->fileSystemChangeCount(), before + 1);
    EXPECT_EQ(workspace->lastChangedPath(), "/tmp/x");
    EXPECT_TRUE(workspace->notificationCenter());
    EXPECT_NE(workspace->notificationCenter(), ns::NotificationCenter::defaultCenter());
}
