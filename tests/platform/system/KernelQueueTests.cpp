#include "platform/system/KernelQueue.hpp"

#include "platform/system/DescriptorTable.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr uint32_t AllNotes = 0x7F;
constexpr uint16_t WatcherFlags = ns::EV_ADD | ns::EV_ENABLE | ns::EV_CLEAR;
constexpr uint32_t Grown = ns::NOTE_WRITE | ns::NOTE_EXTEND;

long maxQueuedEvents() {
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    long value = 16384;
    limit >> value;
    return value;
}

// Each test gets a queue and a temporary folder of real files, both gone afterwards.
class KernelQueueTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "kqueue-test-XXXXXX").string();
        ASSERT_TRUE(::mkdtemp(pattern.data())) << std::strerror(errno);
        m_folder = pattern;
        m_kq = ns::kqueue();
        ASSERT_GE(m_kq, 0) << std::strerror(errno);
    }

    void TearDown() override {
        for (int fd : m_open) {
            ns::closeDescriptor(fd);
        }
        if (m_kq >= 0) {
            EXPECT_EQ(ns::closeDescriptor(m_kq), 0);
        }
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::string path(const std::string& name) const { return m_folder + "/" + name; }

    void write(const std::string& name, const std::string& text, int mode = O_APPEND) {
        int fd = ::open(path(name).c_str(), O_WRONLY | O_CREAT | mode, 0644);
        ASSERT_GE(fd, 0) << name << ": " << std::strerror(errno);
        ASSERT_EQ(::write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        ::close(fd);
    }

    // New data over the first bytes: the size stays.
    void overwrite(const std::string& name) {
        int fd = ::open(path(name).c_str(), O_WRONLY);
        ASSERT_EQ(::pwrite(fd, "z", 1, 0), 1);
        ::close(fd);
    }

    int open(const std::string& name) {
        int fd = ns::openForEvents(path(name).c_str(), ns::O_EVTONLY, 0);
        EXPECT_GE(fd, 0) << name << ": " << std::strerror(errno);
        m_open.push_back(fd);
        return fd;
    }

    void close(int fd) {
        std::erase(m_open, fd);
        EXPECT_EQ(ns::closeDescriptor(fd), 0);
    }

    // Registers the way the path watcher does: one change, no event list, zero timeout.
    int change(int fd, uint32_t notes, void* udata = nullptr, uint16_t flags = WatcherFlags) {
        ns::KernelEvent record{static_cast<uintptr_t>(fd), ns::EVFILT_VNODE, flags, notes, 0, udata};
        timespec zero{0, 0};
        return ns::kevent(m_kq, &record, 1, nullptr, 0, &zero);
    }

    int watch(const std::string& name, uint32_t notes = AllNotes, void* udata = nullptr,
              uint16_t flags = WatcherFlags) {
        int fd = open(name);
        EXPECT_EQ(change(fd, notes, udata, flags), 0) << std::strerror(errno);
        return fd;
    }

    // Everything reported now, one event per call as the watcher thread takes them. inotify
    // queues a notification within the system call that causes it, so nothing comes late.
    std::vector<ns::KernelEvent> events() {
        std::vector<ns::KernelEvent> result;
        timespec zero{0, 0};
        ns::KernelEvent event{};
        while (ns::kevent(m_kq, nullptr, 0, &event, 1, &zero) == 1) {
            EXPECT_EQ(event.filter, ns::EVFILT_VNODE);
            result.push_back(event);
        }
        return result;
    }

    // Per descriptor: how many events, and the bits they carried together.
    std::map<uintptr_t, std::pair<int, uint32_t>> tally() {
        std::map<uintptr_t, std::pair<int, uint32_t>> result;
        for (const ns::KernelEvent& event : events()) {
            result[event.ident].first++;
            result[event.ident].second |= event.fflags;
        }
        return result;
    }

    // The bits of the one event now reported, which must be for `fd`.
    uint32_t notesOf(int fd) {
        auto reported = tally();
        EXPECT_EQ(reported.size(), 1u);
        EXPECT_EQ(reported[fd].first, 1) << "events for descriptor " << fd;
        return reported[fd].second;
    }

    uint64_t overflows() { return ns::DescriptorTable::shared().queue(m_kq)->overflowCount(); }

    std::string m_folder;
    int m_kq = -1;
    std::vector<int> m_open;
};

// --- what each kind of change reports ------------------------------------------------------------

TEST_F(KernelQueueTest, FileChangesReportTheirBits) {
    write("f", "abc");
    int fd = watch("f");
    write("f", "def");
    EXPECT_EQ(notesOf(fd), Grown);
    overwrite("f");
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
    ASSERT_EQ(::truncate(path("f").c_str(), 2), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_ATTRIB);
    ASSERT_EQ(::link(path("f").c_str(), path("g").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_ATTRIB | ns::NOTE_LINK);
    // With a name left the file is still there; without, it is gone, though held open.
    ASSERT_EQ(::unlink(path("f").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_ATTRIB | ns::NOTE_LINK);
    ASSERT_EQ(::unlink(path("g").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_ATTRIB | ns::NOTE_LINK | ns::NOTE_DELETE);
    EXPECT_TRUE(events().empty());
}

TEST_F(KernelQueueTest, RenamesReportRenameAndReplacementReportsDelete) {
    write("f", "abc");
    write("saved", "old");
    ASSERT_EQ(::mkdir(path("elsewhere").c_str(), 0755), 0);
    int fd = watch("f");
    int saved = watch("saved");
    ASSERT_EQ(::rename(path("f").c_str(), path("g").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_RENAME);
    ASSERT_EQ(::rename(path("g").c_str(), path("elsewhere/g").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_RENAME);

    // How editors save: a new file renamed over the old one, which is deleted, not renamed.
    write("saved.new", "new");
    ASSERT_EQ(::rename(path("saved.new").c_str(), path("saved").c_str()), 0);
    uint32_t notes = notesOf(saved);
    EXPECT_TRUE(notes & ns::NOTE_DELETE);
    EXPECT_FALSE(notes & ns::NOTE_RENAME);
}

TEST_F(KernelQueueTest, FolderEntriesReportWriteAndSubfoldersLink) {
    ASSERT_EQ(::mkdir(path("d").c_str(), 0755), 0);
    int fd = watch("d");
    write("d/a", "abc");
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
    ASSERT_EQ(::rename(path("d/a").c_str(), path("d/b").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
    ASSERT_EQ(::rename(path("d/b").c_str(), path("b").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
    ASSERT_EQ(::rename(path("b").c_str(), path("d/b").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
    // Writing to an entry or changing its attributes leaves the folder as it is.
    write("d/b", "more");
    ASSERT_EQ(::chmod(path("d/b").c_str(), 0600), 0);
    EXPECT_TRUE(events().empty());
    ASSERT_EQ(::unlink(path("d/b").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);

    ASSERT_EQ(::mkdir(path("d/sub").c_str(), 0755), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE | ns::NOTE_LINK);
    ASSERT_EQ(::rmdir(path("d/sub").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE | ns::NOTE_LINK);
    // Come and gone before anyone looked: the link count is back where it was, yet it moved.
    ASSERT_EQ(::mkdir(path("d/sub").c_str(), 0755), 0);
    ASSERT_EQ(::rmdir(path("d/sub").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE | ns::NOTE_LINK);
}

TEST_F(KernelQueueTest, RemovedFolderReportsDelete) {
    // inotify tells a folder nothing of its removal while it is held open; its parent has to, and
    // the parent listened to must follow the folder when it moves.
    for (const char* name : {"stays", "moves", "elsewhere"}) {
        ASSERT_EQ(::mkdir(path(name).c_str(), 0755), 0);
    }
    int stays = watch("stays");
    int moves = watch("moves");
    ASSERT_EQ(::rmdir(path("stays").c_str()), 0);
    EXPECT_EQ(notesOf(stays), ns::NOTE_DELETE | ns::NOTE_LINK);

    ASSERT_EQ(::rename(path("moves").c_str(), path("elsewhere/moves").c_str()), 0);
    EXPECT_EQ(notesOf(moves), ns::NOTE_RENAME);
    ASSERT_EQ(::rmdir(path("elsewhere/moves").c_str()), 0);
    EXPECT_EQ(notesOf(moves), ns::NOTE_DELETE | ns::NOTE_LINK);
}

// --- registrations -------------------------------------------------------------------------------

TEST_F(KernelQueueTest, ChangesGatherUntilReported) {
    write("f", "abc");
    int marker = 0;
    int fd = watch("f", AllNotes, &marker);
    for (int i = 0; i < 5; ++i) {
        write("f", "more");
    }
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    std::vector<ns::KernelEvent> reported = events();
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0].ident, static_cast<uintptr_t>(fd));
    EXPECT_EQ(reported[0].fflags, Grown | ns::NOTE_ATTRIB);
    EXPECT_EQ(reported[0].udata, &marker);
    EXPECT_EQ(reported[0].data, 0);

    overwrite("f");
    EXPECT_EQ(notesOf(fd), ns::NOTE_WRITE);
}

TEST_F(KernelQueueTest, OnlyRegisteredBitsAreReported) {
    write("f", "abc");
    int fd = watch("f", ns::NOTE_DELETE | ns::NOTE_RENAME);
    write("f", "more");
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    EXPECT_TRUE(events().empty());
    // A rename over the file also moves its attributes and link count; only the delete was asked for.
    write("g", "new");
    ASSERT_EQ(::rename(path("g").c_str(), path("f").c_str()), 0);
    EXPECT_EQ(notesOf(fd), ns::NOTE_DELETE);
}

TEST_F(KernelQueueTest, RegisteringAgainReplacesFlagsAndUserData) {
    write("f", "abc");
    int first = 1;
    int second = 2;
    int fd = watch("f", ns::NOTE_WRITE, &first);
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    ASSERT_EQ(change(fd, ns::NOTE_WRITE | ns::NOTE_ATTRIB, &second), 0);
    // The chmod before the wider registration is not reported; the one after is.
    EXPECT_TRUE(events().empty());
    ASSERT_EQ(::chmod(path("f").c_str(), 0640), 0);
    std::vector<ns::KernelEvent> reported = events();
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0].fflags, ns::NOTE_ATTRIB);
    EXPECT_EQ(reported[0].udata, &second);
}

TEST_F(KernelQueueTest, ClosingTheDescriptorDropsItsPendingChanges) {
    write("f", "abc");
    write("g", "abc");
    int fd = watch("f");
    write("f", "more");
    close(fd);
    EXPECT_TRUE(events().empty());
    // The number is free again; whatever gets it starts with a clean slate.
    int next = watch("g");
    EXPECT_TRUE(events().empty());
    write("g", "more");
    write("f", "more");
    EXPECT_EQ(notesOf(next), Grown);
}

TEST_F(KernelQueueTest, TwoDescriptorsOnOneFileBothHear) {
    write("f", "abc");
    int one = watch("f", ns::NOTE_WRITE);
    int two = watch("f", ns::NOTE_WRITE | ns::NOTE_ATTRIB);
    write("f", "more");
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    auto reported = tally();
    EXPECT_EQ(reported.size(), 2u);
    EXPECT_EQ(reported[one], std::make_pair(1, ns::NOTE_WRITE));
    EXPECT_EQ(reported[two], std::make_pair(1, ns::NOTE_WRITE | ns::NOTE_ATTRIB));
    // The shared watch stays while one registration is left.
    close(one);
    write("f", "more");
    EXPECT_EQ(notesOf(two), ns::NOTE_WRITE);
}

TEST_F(KernelQueueTest, OtherFlagsBehaveAsOnBsd) {
    write("f", "abc");
    write("g", "abc");
    int fd = watch("f");
    ASSERT_EQ(change(fd, 0, nullptr, ns::EV_DISABLE), 0);
    write("f", "more");
    EXPECT_TRUE(events().empty());
    ASSERT_EQ(change(fd, 0, nullptr, ns::EV_ENABLE), 0);
    EXPECT_EQ(notesOf(fd), Grown);
    ASSERT_EQ(change(fd, 0, nullptr, ns::EV_DELETE), 0);
    EXPECT_EQ(change(fd, 0, nullptr, ns::EV_DELETE), -1);
    EXPECT_EQ(errno, ENOENT);

    // Without EV_CLEAR a change stays reported; EV_ONESHOT reports once and ends the registration.
    ASSERT_EQ(change(fd, ns::NOTE_WRITE, nullptr, ns::EV_ADD), 0);
    int once = watch("g", ns::NOTE_WRITE, nullptr, ns::EV_ADD | ns::EV_ONESHOT);
    write("f", "more");
    write("g", "more");
    ns::KernelEvent list[4]{};
    timespec zero{0, 0};
    std::map<uintptr_t, int> counts;
    for (int i = 0; i < 3; ++i) { // one at a time, the level-triggered file must not crowd out the other
        ASSERT_EQ(ns::kevent(m_kq, nullptr, 0, list, 1, &zero), 1);
        counts[list[0].ident]++;
    }
    EXPECT_EQ(counts[fd], 2);
    EXPECT_EQ(counts[once], 1);
    EXPECT_EQ(change(once, 0, nullptr, ns::EV_DELETE), -1);
    // One call reports a registration once, however much room there is.
    ASSERT_EQ(ns::kevent(m_kq, nullptr, 0, list, 4, &zero), 1);
    EXPECT_EQ(list[0].ident, static_cast<uintptr_t>(fd));
}

TEST_F(KernelQueueTest, FailedChangesAreReportedInTheEventList) {
    write("f", "abc");
    int fd = open("f");
    int marker = 0;
    auto ident = static_cast<uintptr_t>(fd);
    // One list as both change list and event list, as BSD code often does.
    ns::KernelEvent list[3] = {{ident, ns::EVFILT_VNODE, ns::EV_DELETE, 0, 0, &marker},
                               {ident, ns::EVFILT_VNODE, WatcherFlags, AllNotes, 0, nullptr},
                               {ident, -1, WatcherFlags, AllNotes, 0, nullptr}};
    timespec zero{0, 0};
    ASSERT_EQ(ns::kevent(m_kq, list, 3, list, 3, &zero), 2);
    EXPECT_EQ(list[0].flags, ns::EV_ERROR);
    EXPECT_EQ(list[0].data, ENOENT);
    EXPECT_EQ(list[0].udata, &marker);
    EXPECT_EQ(list[1].flags, ns::EV_ERROR);
    EXPECT_EQ(list[1].data, EINVAL);
    // The valid change between them was applied.
    write("f", "more");
    EXPECT_EQ(notesOf(fd), Grown);
}

TEST_F(KernelQueueTest, BadRequestsFailWithErrno) {
    EXPECT_EQ(ns::openForEvents(path("missing").c_str(), ns::O_EVTONLY, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    write("f", "abc");
    EXPECT_EQ(ns::openForEvents(path("f").c_str(), O_RDONLY, 0), -1);
    EXPECT_EQ(errno, EINVAL);
    if (::geteuid() != 0) {
        ASSERT_EQ(::chmod(path("f").c_str(), 0), 0);
        EXPECT_EQ(ns::openForEvents(path("f").c_str(), ns::O_EVTONLY, 0), -1);
        EXPECT_EQ(errno, EACCES);
        ASSERT_EQ(::chmod(path("f").c_str(), 0644), 0);
    }

    // Only descriptors from openForEvents can be registered, and only on a queue.
    int plain = ::open(path("f").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(change(plain, AllNotes), -1);
    EXPECT_EQ(errno, EBADF);
    ::close(plain);
    int fd = open("f");
    ns::KernelEvent record{static_cast<uintptr_t>(fd), ns::EVFILT_VNODE, WatcherFlags, AllNotes, 0, nullptr};
    EXPECT_EQ(ns::kevent(fd, &record, 1, nullptr, 0, nullptr), -1);
    EXPECT_EQ(errno, EBADF);
    timespec malformed{0, 1'000'000'000};
    EXPECT_EQ(ns::kevent(m_kq, nullptr, 0, &record, 1, &malformed), -1);
    EXPECT_EQ(errno, EINVAL);

    close(fd);
    EXPECT_EQ(ns::closeDescriptor(fd), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(change(fd, AllNotes), -1);
    EXPECT_EQ(errno, EBADF);
}

// --- waiting -------------------------------------------------------------------------------------

TEST_F(KernelQueueTest, WaitHonoursItsTimeout) {
    write("f", "abc");
    watch("f", ns::NOTE_DELETE);
    ns::KernelEvent event{};
    auto start = std::chrono::steady_clock::now();
    timespec zero{0, 0};
    EXPECT_EQ(ns::kevent(m_kq, nullptr, 0, &event, 1, &zero), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 50ms);

    // A change not asked for wakes the queue but does not end the wait.
    ASSERT_EQ(::chmod(path("f").c_str(), 0600), 0);
    start = std::chrono::steady_clock::now();
    timespec shortWait{0, 150'000'000};
    EXPECT_EQ(ns::kevent(m_kq, nullptr, 0, &event, 1, &shortWait), 0);
    auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, 150ms);
    EXPECT_LT(waited, 1s);
}

TEST_F(KernelQueueTest, RegistrationFromAnotherThreadWhileOneWaits) {
    constexpr int Files = 20;
    std::vector<int> markers(Files);
    for (int i = 0; i < Files; ++i) {
        write(std::to_string(i), "abc");
    }
    // The watcher thread's loop: one event at a time, one-second waits, a stop flag.
    std::atomic<bool> running{true};
    std::map<void*, int> heard;
    std::thread waiter([&] {
        ns::KernelEvent event{};
        timespec oneSecond{1, 0};
        while (running.load()) {
            if (ns::kevent(m_kq, nullptr, 0, &event, 1, &oneSecond) >= 1 && event.fflags != 0) {
                heard[event.udata]++;
            }
        }
    });
    std::vector<int> fds;
    for (int i = 0; i < Files; ++i) {
        fds.push_back(watch(std::to_string(i), AllNotes, &markers[i]));
        write(std::to_string(i), "more");
    }
    // Closing while the other thread reads must be safe too.
    for (int i = 0; i < Files; i += 2) {
        close(fds[i]);
    }
    for (int i = 1; i < Files; i += 2) {
        write(std::to_string(i), "more");
    }
    std::this_thread::sleep_for(200ms);
    running = false;
    write("1", "more"); // wakes the waiter rather than waiting out its second
    waiter.join();
    for (int i = 1; i < Files; i += 2) {
        EXPECT_GE(heard[&markers[i]], 1) << "file " << i;
    }
}

TEST_F(KernelQueueTest, ClosingTheQueueWakesItsWaiter) {
    int result = 0;
    int error = 0;
    std::thread waiter([&] {
        ns::KernelEvent event{};
        timespec tenSeconds{10, 0}; // long enough to tell waking from timing out, short of a hang
        result = ns::kevent(m_kq, nullptr, 0, &event, 1, &tenSeconds);
        error = errno;
    });
    std::this_thread::sleep_for(50ms);
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ns::closeDescriptor(m_kq), 0);
    waiter.join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(error, EBADF);
    m_kq = -1;
}

// --- lost notifications -----------------------------------------------------------------------

// Many files past inotify's limit are covered end to end by the path watcher's burst test.
TEST_F(KernelQueueTest, OverflowStillReportsEachKindOfChange) {
    for (const char* name : {"filler1", "filler2", "grown", "rewritten", "chmodded", "renamed", "unlinked"}) {
        write(name, "abc");
    }
    ASSERT_EQ(::mkdir(path("d").c_str(), 0755), 0);
    ASSERT_EQ(::mkdir(path("gone").c_str(), 0755), 0);
    std::map<std::string, int> fds;
    for (const char* name : {"grown", "rewritten", "chmodded", "renamed", "unlinked", "d", "gone"}) {
        fds[name] = watch(name);
    }
    watch("filler1", ns::NOTE_DELETE);
    watch("filler2", ns::NOTE_DELETE);

    // Fill inotify's queue; alternating files keeps it from merging the notifications.
    int filler[2] = {::open(path("filler1").c_str(), O_WRONLY), ::open(path("filler2").c_str(), O_WRONLY)};
    for (long i = 0; i <= maxQueuedEvents(); ++i) {
        ASSERT_EQ(::pwrite(filler[i % 2], "z", 1, 0), 1);
    }
    ::close(filler[0]);
    ::close(filler[1]);

    // Every notification from here on is dropped.
    write("grown", "more");
    overwrite("rewritten");
    ASSERT_EQ(::chmod(path("chmodded").c_str(), 0600), 0);
    ASSERT_EQ(::rename(path("renamed").c_str(), path("d/renamed").c_str()), 0);
    ASSERT_EQ(::unlink(path("unlinked").c_str()), 0);
    ASSERT_EQ(::mkdir(path("d/sub").c_str(), 0755), 0);
    ASSERT_EQ(::rmdir(path("gone").c_str()), 0);

    auto reported = tally();
    EXPECT_GE(overflows(), 1u);
    EXPECT_EQ(reported.size(), 7u);
    EXPECT_EQ(reported[fds["grown"]].second, Grown);
    EXPECT_EQ(reported[fds["rewritten"]].second, ns::NOTE_WRITE);
    EXPECT_EQ(reported[fds["chmodded"]].second, ns::NOTE_ATTRIB);
    EXPECT_EQ(reported[fds["renamed"]].second, ns::NOTE_RENAME);
    EXPECT_EQ(reported[fds["unlinked"]].second, ns::NOTE_LINK | ns::NOTE_DELETE);
    EXPECT_EQ(reported[fds["d"]].second, ns::NOTE_WRITE | ns::NOTE_LINK);
    EXPECT_EQ(reported[fds["gone"]].second, ns::NOTE_LINK | ns::NOTE_DELETE);
}

} // namespace
