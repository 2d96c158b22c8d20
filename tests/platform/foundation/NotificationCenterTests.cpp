#include "platform/foundation/NotificationCenter.hpp"

#include "platform/foundation/ActionTable.hpp"

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

TEST(NotificationCenter, FiltersByNameAndObjectAndDeliversInRegistrationOrder) {
    auto center = NotificationCenter::make();
    auto sender = create<Object>();
    auto other = create<Object>();
    Recorder r;
    center->addObserver("A", nullptr, r.as("anyA"));
    center->addObserver("", sender, r.as("allFromSender"));
    center->addObserver("A", sender, r.as("AFromSender"));
    center->addObserver("", nullptr, r.as("everything"));

    center->post("A", sender);
    center->post("B", other);
    center->post("A", other);
    EXPECT_EQ(r.calls, (std::vector<std::string>{"anyA:A", "allFromSender:A", "AFromSender:A", "everything:A",
                                                 "everything:B", "anyA:A", "everything:A"}));
}

TEST(NotificationCenter, CarriesObjectAndUserInfoAndCentresAreIndependent) {
    auto workspace = NotificationCenter::make();
    auto sender = create<Object>();
    Ref<Object> seenObject;
    Dictionary seenInfo;
    int defaultCalls = 0;
    auto token = NotificationCenter::defaultCenter()->addObserver(
        "Changed", nullptr, [&](const Notification&) { ++defaultCalls; });
    workspace->addObserver("Changed", nullptr, [&](const Notification& n) {
        seenObject = n.object();
        seenInfo = n.userInfo();
    });
    workspace->post("Changed", sender, {{"path", "/tmp/x"}});
    EXPECT_EQ(seenObject, sender);
    EXPECT_EQ(Value(seenInfo), Value(Dictionary{{"path", "/tmp/x"}}));
    EXPECT_EQ(defaultCalls, 0);
    EXPECT_EQ(NotificationCenter::defaultCenter(), NotificationCenter::defaultCenter());
    NotificationCenter::defaultCenter()->removeObserver(token);
}

TEST(NotificationCenter, RemovalDuringAPostStopsLaterDeliveryAdditionsWaitForTheNextPost) {
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

    EXPECT_FALSE(center->removeObserver(second)); // already gone
    EXPECT_FALSE(center->removeObserver(0));
    EXPECT_EQ(center->addObserver("N", nullptr, NotificationCallback()), 0u);
}

TEST(NotificationCenter, ADeadFilterObjectNoLongerMatches) {
    auto center = NotificationCenter::make();
    int calls = 0;
    auto sender = create<Object>();
    const Object* address = sender.get();
    center->addObserver("N", address, [&](const Notification&) { ++calls; });
    center->post("N", sender);
    sender.reset();
    // Whatever later lives at that address is a different object.
    for (int i = 0; i < 50; ++i) {
        auto reused = create<Object>();
        center->post("N", reused);
    }
    EXPECT_EQ(calls, 1);
}

namespace {

class Listener : public Object {
public:
    const ActionTable& actionTable() const override {
        static const ActionTable table(Object::actionTable(), {{"changed:", action(&Listener::changed)}});
        return table;
    }
    void changed(const Value& notification) {
        received.push_back(notification.objectAs<Notification>()->name());
    }

    std::vector<std::string> received;
};

} // namespace

TEST(NotificationCenter, SelectorObserversAreNotRetainedAndRemoveAsAWhole) {
    auto center = NotificationCenter::make();
    auto listener = create<Listener>();
    center->addObserver(*listener, Selector("changed:"), "A", nullptr);
    center->addObserver(*listener, Selector("changed:"), "B", nullptr);
    center->post("A");
    center->post("B");
    EXPECT_EQ(listener->received, (std::vector<std::string>{"A", "B"}));

    center->removeObserver(*listener);
    EXPECT_EQ(center->observerCount(), 0u);
    center->post("A");
    EXPECT_EQ(listener->received.size(), 2u);

    center->addObserver(*listener, Selector("changed:"), "A", nullptr);
    listener.reset();
    center->post("A"); // a dead observer is skipped, not called
}

TEST(NotificationCenter, ConcurrentRegistrationAndPosting) {
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
    // Each post reaches at least the observer its own thread registered just before.
    EXPECT_GE(delivered.load(), 800);
}
