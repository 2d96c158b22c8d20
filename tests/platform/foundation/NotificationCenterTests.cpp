#include "platform/foundation/NotificationCenter.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace ns;

namespace {

struct Recorder {
    std::vector<std::string> calls;
    NotificationCallback as(std::string label) {
        return [this, label](const Notification& n) {
            calls.push_back(label + ":" + n.name());
        };
    }
};

} // namespace

TEST(NotificationCenter, FiltersByNameAndObjectInRegistrationOrder) {
    auto center = NotificationCenter::make();
    auto sender = create<Object>();
    auto other = create<Object>();
    Recorder r;
    center->addObserver("A", nullptr, r.as("anyA"));
    center->addObserver("", sender, r.as("allFromSender"));
    center->addObserver("A", sender, r.as("AFromSender"));
    center->addObserver("", nullptr, r.as("everything"));
    Dictionary info;
    center->addObserver("B", nullptr, [&](const Notification& n) { info = n.userInfo(); });
    int defaultCalls = 0;
    auto token =
        NotificationCenter::defaultCenter()->addObserver("", nullptr, [&](auto&) { ++defaultCalls; });

    center->post("A", sender);
    center->post("B", other, {{"path", "/tmp/x"}});
    center->post("A", other);
    EXPECT_EQ(r.calls, (std::vector<std::string>{"anyA:A", "allFromSender:A", "AFromSender:A", "everything:A",
                                                 "everything:B", "anyA:A", "everything:A"}));
    EXPECT_EQ(Value(info), Value(Dictionary{{"path", "/tmp/x"}}));
    EXPECT_EQ(defaultCalls, 0) << "centres are independent";
    NotificationCenter::defaultCenter()->removeObserver(token);
}

TEST(NotificationCenter, RemovalDuringAPostTakesEffectAtOnceAdditionsAtTheNextPost) {
    auto center = NotificationCenter::make();
    Recorder r;
    NotificationObserverToken second = 0;
    center->addObserver("N", nullptr, [&](const Notification& n) {
        r.calls.push_back("first:" + n.name());
        center->removeObserver(second);
        center->addObserver("N", nullptr, r.as("late"));
    });
    second = center->addObserver("N", nullptr, r.as("second"));
    center->post("N");
    EXPECT_EQ(r.calls, (std::vector<std::string>{"first:N"}));
    r.calls.clear();
    center->post("N");
    EXPECT_EQ(r.calls, (std::vector<std::string>{"first:N", "late:N"}));
    EXPECT_FALSE(center->removeObserver(second));
    EXPECT_EQ(center->addObserver("N", nullptr, NotificationCallback()), 0u);
}

TEST(NotificationCenter, ADeadFilterObjectIsNotMatched) {
    auto center = NotificationCenter::make();
    int calls = 0;
    auto sender = create<Object>();
    center->addObserver("N", sender, [&](const Notification&) { ++calls; });
    center->post("N", sender);
    sender.reset();
    for (int i = 0; i < 50; ++i) // whatever later lives at that address is another object
        center->post("N", create<Object>());
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, RegistrationAndPostingFromManyThreads) {
    auto center = NotificationCenter::make();
    std::atomic<int> delivered{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                auto token = center->addObserver("N", nullptr, [&](const Notification&) { ++delivered; });
                center->post("N");
                center->removeObserver(token);
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(center->observerCount(), 0u);
    EXPECT_GE(delivered.load(), 800); // each post reaches at least its own thread's observer
}
