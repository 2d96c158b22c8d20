#include "kit/Objects/CVPathQueue.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/RunLoop.hpp"
#include "platform/system/DescriptorTable.hpp"
#include "platform/system/Workspace.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

using corvane::CVPathQueue;
using Names = std::vector<std::string>;

const std::string Renamed = "CVPathQueueFileRenamedNotification";
const std::string Written = "CVPathQueueFileWrittenToNotification";
const std::string Deleted = "CVPathQueueFileDeletedNotification";
const std::string AttributesChanged = "CVPathQueueFileAttributesChangedNotification";
const std::string SizeIncreased = "CVPathQueueFileSizeIncreasedNotification";
const std::string LinkCountChanged = "CVPathQueueLinkCountChangedNotification";

// Generous, for sanitized builds on a loaded machine; tests wait only as long as they must.
bool pumpUntil(const std::function<bool()>& predicate, std::chrono::milliseconds timeout = 10s) {
    return ns::RunLoop::main().runUntil(predicate, timeout);
}

std::vector<std::string> openDescriptors() {
    std::vector<std::string> targets;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        targets.push_back(entry.path().filename().string() + " " +
                          std::filesystem::read_symlink(entry.path(), error).string());
    }
    return targets;
}

// A watcher and the descriptor of its kernel queue (the inotify instance it brought), for the
// tests that look behind it.
std::pair<ns::Ref<CVPathQueue>, int> makeWatcherShowingItsQueue() {
    std::vector<std::string> before = openDescriptors();
    auto queue = CVPathQueue::make();
    for (const std::string& entry : openDescriptors()) {
        if (entry.ends_with("anon_inode:inotify") &&
            std::find(before.begin(), before.end(), entry) == before.end()) {
            return {queue, std::stoi(entry)};
        }
    }
    return {queue, -1};
}

struct Report {
    std::string how; // "delegate" or "post"
    std::string name;
    std::string path;
};

class RecordingDelegate : public corvane::CVPathQueueDelegate {
public:
    explicit RecordingDelegate(std::vector<Report>& reports) : m_reports(reports) {}
    void pathQueue(CVPathQueue& queue, const std::string& name, const std::string& path) override {
        queues.insert(&queue);
        m_reports.push_back({"delegate", name, path});
    }
    std::set<CVPathQueue*> queues;

private:
    std::vector<Report>& m_reports;
};

// Each test gets a watcher, a temporary folder of real files, and a record of what was posted for
// the watcher on the workspace's centre.
class CVPathQueueTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "pathqueue-test-XXXXXX").string();
        ASSERT_TRUE(::mkdtemp(pattern.data())) << std::strerror(errno);
        m_folder = pattern;
        m_queue = CVPathQueue::make();
        ASSERT_TRUE(m_queue);
        m_token = ns::Workspace::shared()->notificationCenter()->addObserver(
            "", m_queue.get(), [this](const ns::Notification& notification) {
                // The watcher is the object and the path the only user information.
                EXPECT_EQ(notification.object(), m_queue);
                EXPECT_EQ(notification.userInfo().size(), 1u);
                ns::Value path = ns::Value(notification.userInfo())["path"];
                ASSERT_TRUE(path.string()) << notification.description();
                m_reports.push_back({"post", notification.name(), *path.string()});
            });
    }

    void TearDown() override {
        ns::Workspace::shared()->notificationCenter()->removeObserver(m_token);
        m_queue.reset();
        ns::RunLoop::main().drain();
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::string path(const std::string& name) const { return m_folder + "/" + name; }

    void append(const std::string& name, const std::string& text = "x") {
        int fd = ::open(path(name).c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        ASSERT_EQ(::write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size())) << name;
        ::close(fd);
    }

    // New bytes over old ones: written, but no bigger.
    void overwrite(const std::string& name) {
        int fd = ::open(path(name).c_str(), O_WRONLY);
        ASSERT_EQ(::pwrite(fd, "z", 1, 0), 1) << name;
        ::close(fd);
    }

    // What was heard of a file, in order; with `how`, each name says how it came.
    Names heard(const std::string& name, bool how = false) const {
        Names names;
        for (const Report& report : m_reports) {
            if (report.path == path(name)) {
                names.push_back(how ? report.how + " " + report.name : report.name);
            }
        }
        return names;
    }

    // Changes a watched file of its own and waits to hear it. Reports come in the order of the
    // changes, so whatever an earlier change brings has arrived by then.
    void barrier() {
        append("sentinel");
        m_queue->addPath(path("sentinel"));
        size_t before = heard("sentinel").size();
        append("sentinel");
        ASSERT_TRUE(pumpUntil([&] { return heard("sentinel").size() > before; })) << "sentinel unheard";
    }

    // Changes a file and waits until the watcher thread has handed the change to the main queue,
    // without running that queue: the change is then on its way.
    void overwriteAndWaitUntilSeen(const std::string& name) {
        uint64_t hints = ns::Workspace::shared()->fileSystemChangeCount();
        overwrite(name);
        for (int i = 0; i < 10'000 && ns::Workspace::shared()->fileSystemChangeCount() == hints; ++i) {
            std::this_thread::sleep_for(1ms);
        }
        ASSERT_EQ(ns::Workspace::shared()->lastChangedPath(), path(name));
    }

    std::string m_folder;
    ns::Ref<CVPathQueue> m_queue;
    std::vector<Report> m_reports;
    ns::NotificationObserverToken m_token = 0;
};

TEST_F(CVPathQueueTest, EachKindOfChangeArrivesAsItsNamesInOrder) {
    const Names files{"grown", "rewritten", "chmodded", "linked", "renamed", "unlinked", "saved"};
    for (const std::string& name : files) {
        append(name, "abc");
        m_queue->addPath(path(name));
    }
    for (const char* name : {"folder", "gone"}) {
        ASSERT_EQ(::mkdir(path(name).c_str(), 0755), 0);
        m_queue->addPath(path(name));
    }
    EXPECT_EQ(m_queue->numberOfWatchedPaths(), 9u);

    append("grown", "more");
    overwrite("rewritten");
    ASSERT_EQ(::chmod(path("chmodded").c_str(), 0600), 0);
    ASSERT_EQ(::link(path("linked").c_str(), path("linked2").c_str()), 0);
    ASSERT_EQ(::rename(path("renamed").c_str(), path("renamed2").c_str()), 0);
    ASSERT_EQ(::unlink(path("unlinked").c_str()), 0);
    // How editors save: a new file renamed over the old one, which is gone rather than renamed.
    append("saved.new", "new");
    ASSERT_EQ(::rename(path("saved.new").c_str(), path("saved").c_str()), 0);
    append("folder/entry");
    ASSERT_EQ(::rmdir(path("gone").c_str()), 0);
    barrier();

    EXPECT_EQ(heard("grown"), (Names{Written, SizeIncreased}));
    EXPECT_EQ(heard("rewritten"), (Names{Written}));
    EXPECT_EQ(heard("chmodded"), (Names{AttributesChanged}));
    EXPECT_EQ(heard("linked"), (Names{AttributesChanged, LinkCountChanged}));
    EXPECT_EQ(heard("renamed"), (Names{Renamed})); // under the path that was watched
    EXPECT_EQ(heard("unlinked"), (Names{Deleted, AttributesChanged, LinkCountChanged}));
    EXPECT_EQ(heard("saved"), (Names{Deleted, AttributesChanged, LinkCountChanged}));
    EXPECT_EQ(heard("folder"), (Names{Written}));
    EXPECT_EQ(heard("gone"), (Names{Deleted, LinkCountChanged}));
    EXPECT_EQ(m_reports.size(), 16u + heard("sentinel").size());
}

TEST_F(CVPathQueueTest, TheDelegateHearsFirstAndPostsFollowOnlyWhenAsked) {
    RecordingDelegate delegate(m_reports);
    m_queue->setDelegate(&delegate);
    for (const char* name : {"quiet", "loud", "late"}) {
        append(name, "abc");
        m_queue->addPath(path(name));
    }
    ASSERT_EQ(::unlink(path("quiet").c_str()), 0);
    barrier();
    EXPECT_EQ(heard("quiet", true), (Names{"delegate " + Deleted, "delegate " + AttributesChanged,
                                           "delegate " + LinkCountChanged}));
    EXPECT_EQ(delegate.queues, std::set<CVPathQueue*>{m_queue.get()});

    m_queue->setAlwaysPostNotifications(true);
    ASSERT_EQ(::unlink(path("loud").c_str()), 0);
    barrier();
    EXPECT_EQ(heard("loud", true), (Names{"delegate " + Deleted, "post " + Deleted,
                                          "delegate " + AttributesChanged, "post " + AttributesChanged,
                                          "delegate " + LinkCountChanged, "post " + LinkCountChanged}));

    // The settings are those of the moment of delivery, not of the change.
    m_queue->setAlwaysPostNotifications(false);
    overwriteAndWaitUntilSeen("late");
    m_queue->setDelegate(nullptr);
    barrier();
    EXPECT_EQ(heard("late", true), (Names{"post " + Written}));
}

TEST_F(CVPathQueueTest, AddingAgainKeepsTheRegistrationAndAskingForMoreWidensIt) {
    append("f", "abc");
    ns::LogCapture log;
    m_queue->addPath(path("f"), ns::NOTE_WRITE);
    m_queue->addPath(path("f"));
    m_queue->addPath(path("f"), ns::NOTE_ATTRIB);
    auto entry = m_queue->addPathToQueue(path("f"), ns::NOTE_WRITE);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->subscriptionFlags(), ns::NOTE_WRITE);
    EXPECT_EQ(m_queue->numberOfWatchedPaths(), 1u);
    EXPECT_TRUE(log.messages().empty());
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    overwrite("f");
    barrier();
    EXPECT_EQ(heard("f"), (Names{Written}));

    int fd = entry->watchedFD();
    EXPECT_EQ(m_queue->addPathToQueue(path("f"), ns::NOTE_DELETE), entry);
    EXPECT_EQ(entry->subscriptionFlags(), ns::NOTE_WRITE | ns::NOTE_DELETE);
    EXPECT_EQ(entry->watchedFD(), fd);
    EXPECT_EQ(m_queue->addPathToQueue(path("f"), ns::NOTE_WRITE), entry);
    EXPECT_EQ(entry->subscriptionFlags(), ns::NOTE_WRITE | ns::NOTE_DELETE);
    // The kernel sees an attribute and a link change too, but only what was asked for is heard.
    ASSERT_EQ(::unlink(path("f").c_str()), 0);
    barrier();
    EXPECT_EQ(heard("f"), (Names{Written, Deleted}));
}

TEST_F(CVPathQueueTest, APathThatCannotBeOpenedIsLoggedAndNotStored) {
    ns::LogCapture log;
    m_queue->addPath(path("missing"));
    m_queue->addPath(path("missing"), ns::NOTE_WRITE);
    const std::string message =
        "CVPathQueue tried to add the path " + path("missing") +
        " to watchedPathEntries, but the CVPathQueueEntry was nil. \nIt's possible that "
        "the host process has hit its max open file descriptors limit.";
    EXPECT_EQ(log.messages(), (Names{message, message}));
    EXPECT_EQ(m_queue->numberOfWatchedPaths(), 0u);
    // The registration step only answers nil; nil paths do nothing.
    log.clear();
    EXPECT_FALSE(m_queue->addPathToQueue(path("missing"), 0x7F));
    m_queue->addPath(std::nullopt);
    EXPECT_FALSE(m_queue->addPathToQueue(std::nullopt, 0x7F));
    m_queue->removePath(std::nullopt);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(CVPathQueueTest, RemovingAPathEndsItsReports) {
    for (const char* name : {"kept", "dropped", "pending"}) {
        append(name, "abc");
        m_queue->addPath(path(name));
    }
    int fd = m_queue->addPathToQueue(path("dropped"), 0x7F)->watchedFD();
    m_queue->removePath(path("dropped"));
    EXPECT_EQ(::fcntl(fd, F_GETFD), -1); // the entry went, and its descriptor with it
    m_queue->removePath(path("never watched"));
    EXPECT_EQ(m_queue->numberOfWatchedPaths(), 2u);
    overwrite("dropped");
    overwrite("kept");
    // Seen by the watcher thread but not yet delivered when the path goes: dropped as well.
    overwriteAndWaitUntilSeen("pending");
    m_queue->removePath(path("pending"));
    barrier();
    EXPECT_TRUE(heard("dropped").empty());
    EXPECT_TRUE(heard("pending").empty());
    EXPECT_EQ(heard("kept"), (Names{Written}));

    m_queue->removeAllPaths();
    EXPECT_EQ(m_queue->numberOfWatchedPaths(), 0u);
    overwrite("kept");
    barrier();
    EXPECT_EQ(heard("kept"), (Names{Written}));
}

TEST_F(CVPathQueueTest, StoppedOrDestroyedWatchersDeliverNothingMoreAndReleaseEverything) {
    m_queue.reset();
    size_t baseline = openDescriptors().size();
    auto released = [&] {
        return openDescriptors().size() <= baseline;
    };
    RecordingDelegate delegate(m_reports);
    for (int i = 0; i < 200; ++i) {
        append(std::to_string(i), "abc");
    }

    // Stopped with a change on its way: the thread closes the queue within a second.
    auto queue = CVPathQueue::make();
    queue->setDelegate(&delegate);
    queue->addPath(path("0"));
    overwriteAndWaitUntilSeen("0");
    queue->stop();
    EXPECT_TRUE(queue->isStopped());
    EXPECT_EQ(queue->numberOfWatchedPaths(), 0u);
    ns::LogCapture log;
    queue->addPath(path("1"));
    EXPECT_FALSE(queue->addPathToQueue(path("1"), 0x7F));
    EXPECT_EQ(queue->numberOfWatchedPaths(), 0u);
    EXPECT_TRUE(log.messages().empty());
    EXPECT_TRUE(pumpUntil(released, 3s)) << testing::PrintToString(openDescriptors());

    // Destroyed while its thread works through a burst.
    queue = CVPathQueue::make();
    queue->setDelegate(&delegate);
    queue->setAlwaysPostNotifications(true);
    for (int i = 0; i < 200; ++i) {
        queue->addPath(path(std::to_string(i)));
    }
    for (int i = 0; i < 200; ++i) {
        append(std::to_string(i));
    }
    std::this_thread::sleep_for(2ms);
    queue.reset();
    EXPECT_TRUE(pumpUntil(released, 3s)) << testing::PrintToString(openDescriptors());

    // Never started: nobody else would close the queue.
    CVPathQueue::make().reset();
    EXPECT_TRUE(released());
    EXPECT_TRUE(m_reports.empty());
}

TEST_F(CVPathQueueTest, PathsComeAndGoWhileAnotherThreadWritesToThem) {
    constexpr int Files = 50;
    for (int i = 0; i < Files; ++i) {
        append(std::to_string(i), "abc");
    }
    std::atomic<bool> writing{true};
    std::thread writer([&] {
        while (writing.load()) {
            for (int i = 0; i < Files; ++i) {
                overwrite(std::to_string(i));
            }
        }
    });
    // Entries go while events naming them are on their way; a use after free shows here.
    for (auto until = std::chrono::steady_clock::now() + 500ms; std::chrono::steady_clock::now() < until;) {
        for (int i = 0; i < Files; ++i) {
            m_queue->removePath(path(std::to_string(i)));
            m_queue->addPath(path(std::to_string(i)));
        }
        ns::RunLoop::main().runOnce();
    }
    writing.store(false);
    writer.join();

    m_queue->removeAllPaths();
    ns::RunLoop::main().drain();
    m_reports.clear();
    m_queue->addPath(path("0"));
    overwrite("0");
    overwrite("1");
    barrier();
    EXPECT_EQ(heard("0"), (Names{Written}));
    EXPECT_TRUE(heard("1").empty());
}

TEST_F(CVPathQueueTest, AQueueClosedUnderTheThreadIsReportedWhenTheThreadEnds) {
    auto [queue, queueFD] = makeWatcherShowingItsQueue();
    ASSERT_GE(queueFD, 0);
    append("f");
    queue->addPath(path("f"));
    ASSERT_EQ(ns::closeDescriptor(queueFD), 0);
    ns::LogCapture log;
    queue.reset();
    EXPECT_TRUE(pumpUntil([&] { return !log.messages().empty(); }, 4s));
    EXPECT_EQ(log.messages(), Names{"CVPathQueue watcherThread: Couldn't close main kqueue (9)"});
}

TEST_F(CVPathQueueTest, BurstsFarPastTheKernelLimitLoseAndDoubleNothing) {
    constexpr int Files = 1000;
    constexpr int Writes = 30; // per file and burst, where inotify queues 16,384 changes by default
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = std::max<rlim_t>(limit.rlim_cur, std::min<rlim_t>(limit.rlim_max, 2 * Files + 100));
    if (::setrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur < 2 * Files + 100) {
        GTEST_SKIP() << "descriptor limit too low for " << Files << " files";
    }
    auto [queue, queueFD] = makeWatcherShowingItsQueue();
    std::swap(m_queue, queue);
    RecordingDelegate delegate(m_reports);
    m_queue->setDelegate(&delegate);
    std::vector<int> writers;
    for (int i = 0; i < Files; ++i) {
        writers.push_back(::open(path(std::to_string(i)).c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644));
        ASSERT_GE(writers.back(), 0) << std::strerror(errno);
        m_queue->addPath(path(std::to_string(i)));
    }
    // File after file, so that inotify cannot merge the notifications; last, one more link (or one
    // less) each. A link count, like growth, is only seen by comparing the file's status, so it is
    // neither heard twice nor lost without the test noticing.
    auto burst = [&](bool link) {
        for (int round = 0; round < Writes; ++round) {
            for (int fd : writers) {
                ASSERT_EQ(::write(fd, "y", 1), 1);
            }
        }
        for (int i = 0; i < Files; ++i) {
            std::string name = path(std::to_string(i));
            ASSERT_EQ(link ? ::link(name.c_str(), (name + "+").c_str()) : ::unlink((name + "+").c_str()), 0);
        }
    };
    std::map<std::string, std::map<std::string, int>> counts;
    auto everyFileLinkHeard = [&](int times) {
        counts.clear();
        for (const Report& report : m_reports) {
            counts[report.path][report.name]++;
        }
        for (int i = 0; i < Files; ++i) {
            if (counts[path(std::to_string(i))][LinkCountChanged] < times) {
                return false;
            }
        }
        return true;
    };
    auto expectEveryChangeHeardOnce = [&](int bursts) {
        barrier();
        ASSERT_TRUE(everyFileLinkHeard(bursts));
        for (int i = 0; i < Files; ++i) {
            auto names = counts[path(std::to_string(i))];
            names.erase(AttributesChanged); // inotify's own word of a link change, when not lost
            EXPECT_EQ(names[LinkCountChanged], bursts) << "file " << i;
            EXPECT_GE(names[SizeIncreased], bursts) << "file " << i;
            EXPECT_LE(names[SizeIncreased], bursts * Writes + 1) << "file " << i;
            EXPECT_GE(names[Written], names[SizeIncreased]) << "file " << i;
            EXPECT_EQ(names.size(), 3u) << "file " << i;
        }
    };

    // The watcher thread keeping up, as it normally does.
    auto started = std::chrono::steady_clock::now();
    burst(true);
    ASSERT_TRUE(pumpUntil([&] { return everyFileLinkHeard(1); }, 20s));
    EXPECT_LT(std::chrono::steady_clock::now() - started, 10s);
    expectEveryChangeHeardOnce(1);

    // The watcher thread held up for the whole burst: inotify's queue overflows.
    auto kernelQueue = ns::DescriptorTable::shared().queue(queueFD);
    ASSERT_TRUE(kernelQueue);
    uint64_t overflows = kernelQueue->overflowCount();
    {
        std::lock_guard holdUp(*m_queue);
        // One change first, which the thread takes and then waits with, reading nothing more.
        ASSERT_EQ(::write(writers[0], "y", 1), 1);
        std::this_thread::sleep_for(20ms);
        burst(false);
    }
    ASSERT_TRUE(pumpUntil([&] { return everyFileLinkHeard(2); }, 20s));
    EXPECT_GT(kernelQueue->overflowCount(), overflows);
    expectEveryChangeHeardOnce(2);
    for (int fd : writers) {
        ::close(fd);
    }
}

} // namespace
