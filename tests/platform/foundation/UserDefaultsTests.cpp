#include "platform/foundation/UserDefaults.hpp"

#include "platform/foundation/Log.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace ns;
namespace fs = std::filesystem;

namespace {

class TempDir {
public:
    TempDir() {
        std::string pattern = (fs::temp_directory_path() / "corvane-defaults-XXXXXX").string();
        m_path = ::mkdtemp(pattern.data());
    }
    ~TempDir() { fs::remove_all(m_path); }
    std::string file(const std::string& name) const { return m_path + "/" + name; }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

// Runs `body` in a forked child; returns its exit status (0 when every check held).
int inChildProcess(const std::function<int()>& body) {
    pid_t pid = fork();
    if (pid == 0)
        _exit(body());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

} // namespace

TEST(UserDefaults, ReadersConvertOrAnswerNothingAndOnlyPropertyListsAreStored) {
    TempDir dir;
    auto defaults = UserDefaults::make(dir.file("d.plist"));
    defaults->setObject("YES", "yesString");
    defaults->setObject(" 42abc", "numberString");
    defaults->setDouble(2.5, "half");
    defaults->setObject(Array{Value(1)}, "list");
    defaults->registerDefaults({{"size", 12}, {"half", 9}});

    EXPECT_FALSE(defaults->boolForKey("absent"));
    EXPECT_FALSE(defaults->stringForKey("absent"));
    EXPECT_TRUE(defaults->boolForKey("yesString"));
    EXPECT_EQ(defaults->integerForKey("numberString"), 42);
    EXPECT_EQ(defaults->stringForKey("half"), "2.5");
    EXPECT_EQ(defaults->integerForKey("size"), 12); // registered fallback
    EXPECT_FALSE(defaults->stringForKey("list"));
    EXPECT_FALSE(defaults->dataForKey("half"));
    EXPECT_FALSE(defaults->dictionaryForKey("list"));

    LogCapture log;
    EXPECT_FALSE(defaults->setObject(create<Object>(), "object"));
    EXPECT_FALSE(defaults->setObject(Array{Value(Null{})}, "nullInside"));
    EXPECT_TRUE(log.contains("non-property list"));
    EXPECT_TRUE(defaults->setObject(Value(), "yesString"));
    EXPECT_FALSE(defaults->boolForKey("yesString"));
}

TEST(UserDefaults, ValuesSurviveIntoAnotherProcess) {
    TempDir dir;
    std::string path = dir.file("sub/shared.plist");
    auto defaults = UserDefaults::make(path);
    auto blob = Data::fromString(std::string("\x00\xff", 2));
    defaults->setBool(true, "LogWindowResponderChain");
    defaults->setInteger(-12345678901, "big");
    defaults->setDouble(0.125, "eighth");
    defaults->setObject("na\u00efve", "text");
    defaults->setObject(blob, "blob");
    defaults->setObject(Dictionary{{"list", Array{Value(1), Value("two")}}}, "nested");
    defaults->registerDefaults({{"registered", 1}});
    ASSERT_TRUE(defaults->synchronize());

    int status = inChildProcess([&] {
        auto other = UserDefaults::make(path);
        auto data = other->dataForKey("blob");
        auto nested = other->dictionaryForKey("nested");
        return (other->boolForKey("LogWindowResponderChain") ? 0 : 1) |
               (other->integerForKey("big") == -12345678901 ? 0 : 2) |
               (other->doubleForKey("eighth") == 0.125 ? 0 : 4) |
               (other->stringForKey("text") == "na\u00efve" ? 0 : 8) |
               (data && data->isEqual(*blob) ? 0 : 16) |
               (nested && Value(*nested)["list"] == Value(Array{Value(1), Value("two")}) ? 0 : 32) |
               (other->objectForKey("registered").isNil() ? 0 : 64);
    });
    EXPECT_EQ(status, 0) << "bit mask of the checks that failed in the child";
    // Written by temporary file and rename: nothing else is left beside the file.
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.file("sub")), fs::directory_iterator()), 1);
}

TEST(UserDefaults, SynchronizeMergesWhatAnotherProcessWrote) {
    TempDir dir;
    std::string path = dir.file("merge.plist");
    auto defaults = UserDefaults::make(path);
    defaults->setObject("parent", "conflict");
    defaults->setObject("keep", "untouched");
    ASSERT_TRUE(defaults->synchronize());
    defaults->setObject("mine", "fromParent");
    defaults->setObject("parent again", "conflict");
    defaults->removeObjectForKey("untouched");

    ASSERT_EQ(inChildProcess([&] {
                  auto child = UserDefaults::make(path);
                  child->setObject("theirs", "fromChild");
                  child->setObject("child", "conflict");
                  return child->synchronize() ? 0 : 1;
              }),
              0);

    ASSERT_TRUE(defaults->synchronize());
    EXPECT_EQ(defaults->stringForKey("fromChild"), "theirs");
    EXPECT_EQ(defaults->stringForKey("conflict"), "parent again");
    auto fresh = UserDefaults::make(path);
    EXPECT_EQ(
        Value(fresh->dictionaryRepresentation()),
        Value(Dictionary{{"fromChild", "theirs"}, {"fromParent", "mine"}, {"conflict", "parent again"}}));
}

TEST(UserDefaults, DamagedOrUnwritableFilesAreLoggedNotFatal) {
    TempDir dir;
    std::string path = dir.file("bad.plist");
    std::ofstream(path) << "this is not a property list";
    LogCapture log;
    auto defaults = UserDefaults::make(path);
    EXPECT_TRUE(log.contains("is not a property list"));
    EXPECT_TRUE(defaults->dictionaryRepresentation().empty());
    defaults->setBool(true, "repaired");
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_TRUE(UserDefaults::make(path)->boolForKey("repaired"));
    // A file edited by hand as XML is read too.
    std::ofstream(path, std::ios::trunc) << "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
                                            "<key>n</key><integer>-3</integer></dict></plist>";
    EXPECT_EQ(UserDefaults::make(path)->integerForKey("n"), -3);

    auto unwritable = UserDefaults::make("/proc/corvane-no-such-dir/x.plist");
    unwritable->setInteger(3, "kept");
    EXPECT_FALSE(unwritable->synchronize());
    EXPECT_TRUE(log.contains("cannot write"));
    EXPECT_EQ(unwritable->integerForKey("kept"), 3);
}

TEST(UserDefaults, StandardDefaultsLiveUnderTheConfigurationFolder) {
    TempDir dir;
    const char* oldXdg = std::getenv("XDG_CONFIG_HOME");
    std::string restoreXdg = oldXdg ? oldXdg : "";
    setenv("XDG_CONFIG_HOME", dir.path().c_str(), 1);
    UserDefaults::setStandardDomain("corvane-tests");
    std::string expected = dir.path() + "/corvane/corvane-tests.plist";
    EXPECT_EQ(UserDefaults::standardPath(), expected);
    auto standard = UserDefaults::standardUserDefaults();
    EXPECT_EQ(standard, UserDefaults::standardUserDefaults());
    EXPECT_EQ(standard->path(), expected);
    standard->setBool(true, "LogWindowResponderChain");

    // Pointing elsewhere writes the old defaults out and reads the other file.
    UserDefaults::setStandardPath(dir.file("private.plist"));
    EXPECT_TRUE(fs::exists(expected));
    EXPECT_FALSE(UserDefaults::standardUserDefaults()->boolForKey("LogWindowResponderChain"));
    UserDefaults::setStandardPath(std::nullopt);
    EXPECT_TRUE(UserDefaults::standardUserDefaults()->boolForKey("LogWindowResponderChain"));

    UserDefaults::setStandardPath(dir.file("after.plist"));
    oldXdg ? setenv("XDG_CONFIG_HOME", restoreXdg.c_str(), 1) : unsetenv("XDG_CONFIG_HOME");
}
