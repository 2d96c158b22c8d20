#include "platform/foundation/UserDefaults.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/PropertyListSerialization.hpp"

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
    ~TempDir() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    std::string file(const std::string& name) const { return (fs::path(m_path) / name).string(); }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

// Runs `body` in a child process; returns its exit status (0 when every check held).
int inChildProcess(const std::function<int()>& body) {
    pid_t pid = fork();
    if (pid == 0)
        _exit(body());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

class EnvironmentScope {
public:
    explicit EnvironmentScope(const char* name) : m_name(name) {
        if (const char* value = std::getenv(name))
            m_old = value;
    }
    ~EnvironmentScope() {
        if (m_old)
            setenv(m_name, m_old->c_str(), 1);
        else
            unsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

} // namespace

TEST(UserDefaults, TypedReadersConvertOrAnswerNothing) {
    TempDir dir;
    auto defaults = UserDefaults::make(dir.file("d.plist"));
    defaults->setObject("YES", "yesString");
    defaults->setObject(" 42abc", "numberString");
    defaults->setInteger(7, "seven");
    defaults->setDouble(2.5, "half");
    defaults->setObject(Array{Value(1)}, "list");

    EXPECT_FALSE(defaults->boolForKey("absent"));
    EXPECT_EQ(defaults->integerForKey("absent"), 0);
    EXPECT_FALSE(defaults->stringForKey("absent"));
    EXPECT_TRUE(defaults->objectForKey("absent").isNil());

    EXPECT_TRUE(defaults->boolForKey("yesString"));
    EXPECT_EQ(defaults->integerForKey("numberString"), 42);
    EXPECT_EQ(defaults->stringForKey("seven"), "7");
    EXPECT_EQ(defaults->integerForKey("half"), 2);
    EXPECT_FLOAT_EQ(defaults->floatForKey("half"), 2.5f);
    EXPECT_FALSE(defaults->stringForKey("list"));
    EXPECT_FALSE(defaults->dataForKey("seven"));
    EXPECT_FALSE(defaults->dictionaryForKey("list"));
    EXPECT_EQ(defaults->arrayForKey("list")->size(), 1u);
    EXPECT_EQ(defaults->integerForKey("list"), 0);
}

TEST(UserDefaults, RefusesNonPropertyListValuesAndNilRemoves) {
    TempDir dir;
    auto defaults = UserDefaults::make(dir.file("d.plist"));
    LogCapture log;
    EXPECT_FALSE(defaults->setObject(create<Object>(), "object"));
    EXPECT_FALSE(defaults->setObject(Array{Value(Null{})}, "nullInside"));
    EXPECT_TRUE(log.contains("non-property list"));
    EXPECT_TRUE(defaults->objectForKey("object").isNil());

    defaults->setBool(true, "flag");
    EXPECT_TRUE(defaults->setObject(Value(), "flag"));
    EXPECT_FALSE(defaults->boolForKey("flag"));
}

TEST(UserDefaults, RegisteredDefaultsAreFallbacksOnly) {
    TempDir dir;
    std::string path = dir.file("d.plist");
    {
        auto defaults = UserDefaults::make(path);
        defaults->registerDefaults({{"size", 12}, {"name", "fallback"}});
        defaults->setObject("stored", "name");
        EXPECT_EQ(defaults->integerForKey("size"), 12);
        EXPECT_EQ(defaults->stringForKey("name"), "stored");
        ASSERT_TRUE(defaults->synchronize());
    }
    auto reread = UserDefaults::make(path);
    EXPECT_TRUE(reread->objectForKey("size").isNil());
    EXPECT_EQ(reread->stringForKey("name"), "stored");
}

TEST(UserDefaults, ValuesSurviveIntoAnotherProcess) {
    TempDir dir;
    std::string path = dir.file("shared.plist");
    auto defaults = UserDefaults::make(path);
    auto blob = Data::fromString(std::string("\x00\xff\x10", 3));
    defaults->setBool(true, "LogWindowResponderChain");
    defaults->setInteger(-12345678901, "big");
    defaults->setDouble(0.125, "eighth");
    defaults->setObject("na\u00efve", "text");
    defaults->setObject(blob, "blob");
    defaults->setObject(Dictionary{{"list", Array{Value(1), Value("two")}}}, "nested");
    ASSERT_TRUE(defaults->synchronize());

    int status = inChildProcess([&] {
        auto other = UserDefaults::make(path);
        int failures = 0;
        failures |= other->boolForKey("LogWindowResponderChain") ? 0 : 1;
        failures |= other->integerForKey("big") == -12345678901 ? 0 : 2;
        failures |= other->doubleForKey("eighth") == 0.125 ? 0 : 4;
        failures |= other->stringForKey("text") == "na\u00efve" ? 0 : 8;
        auto data = other->dataForKey("blob");
        failures |= data && data->isEqual(*blob) ? 0 : 16;
        auto nested = other->dictionaryForKey("nested");
        failures |= nested && Value(*nested)["list"] == Value(Array{Value(1), Value("two")}) ? 0 : 32;
        return failures;
    });
    EXPECT_EQ(status, 0) << "bit mask of the checks that failed in the child";
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

    int status = inChildProcess([&] {
        auto child = UserDefaults::make(path);
        child->setObject("theirs", "fromChild");
        child->setObject("child", "conflict");
        return child->synchronize() ? 0 : 1;
    });
    ASSERT_EQ(status, 0);

    ASSERT_TRUE(defaults->synchronize());
    EXPECT_EQ(defaults->stringForKey("fromChild"), "theirs");
    EXPECT_EQ(defaults->stringForKey("fromParent"), "mine");
    EXPECT_EQ(defaults->stringForKey("conflict"), "parent again");
    EXPECT_FALSE(defaults->stringForKey("untouched"));

    auto fresh = UserDefaults::make(path);
    EXPECT_EQ(fresh->dictionaryRepresentation().size(), 3u);
    EXPECT_EQ(fresh->stringForKey("conflict"), "parent again");
}

TEST(UserDefaults, WritesAreAtomicAndLeaveNoTemporaryFiles) {
    TempDir dir;
    std::string path = dir.file("sub/folder/atomic.plist");
    auto defaults = UserDefaults::make(path);
    for (int i = 0; i < 5; ++i) {
        defaults->setInteger(i, "counter");
        ASSERT_TRUE(defaults->synchronize());
    }
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(fs::path(path).parent_path()))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"atomic.plist"});

    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), {});
    EXPECT_EQ(bytes.substr(0, 8), "bplist00");
    Value onDisk = PropertyListSerialization::propertyListWithData(*Data::fromString(bytes));
    EXPECT_EQ(onDisk["counter"].integerValue(), 4);
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

    auto unwritable = UserDefaults::make("/proc/corvane-no-such-dir/x.plist");
    unwritable->setInteger(3, "kept");
    log.clear();
    EXPECT_FALSE(unwritable->synchronize());
    EXPECT_TRUE(log.contains("cannot write"));
    EXPECT_EQ(unwritable->integerForKey("kept"), 3);
}

TEST(UserDefaults, StandardDefaultsLiveUnderTheConfigurationFolder) {
    TempDir dir;
    EnvironmentScope xdg("XDG_CONFIG_HOME");
    EnvironmentScope home("HOME");
    setenv("XDG_CONFIG_HOME", dir.path().c_str(), 1);
    UserDefaults::setStandardDomain("corvane-tests");
    std::string expected = dir.path() + "/" + UserDefaults::ApplicationFolder + "/corvane-tests.plist";
    EXPECT_EQ(UserDefaults::standardPath(), expected);

    auto standard = UserDefaults::standardUserDefaults();
    EXPECT_EQ(standard, UserDefaults::standardUserDefaults());
    EXPECT_EQ(standard->path(), expected);
    standard->setBool(true, "LogWindowResponderChain");

    // Pointing elsewhere writes the old defaults out and reads the other file.
    UserDefaults::setStandardPath(dir.file("private.plist"));
    EXPECT_TRUE(fs::exists(expected));
    EXPECT_EQ(UserDefaults::standardUserDefaults()->path(), dir.file("private.plist"));
    EXPECT_FALSE(UserDefaults::standardUserDefaults()->boolForKey("LogWindowResponderChain"));

    UserDefaults::setStandardPath(std::nullopt);
    EXPECT_TRUE(UserDefaults::standardUserDefaults()->boolForKey("LogWindowResponderChain"));

    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", dir.path().c_str(), 1);
    EXPECT_EQ(UserDefaults::standardPath(), dir.path() + "/.config/corvane/corvane-tests.plist");
    UserDefaults::setStandardPath(dir.file("after.plist")); // leave nothing pointing into dir
}
