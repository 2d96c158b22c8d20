#include "core/SafelyRemoveObserver.hpp"

#include "platform/foundation/Log.hpp"

#include <gtest/gtest.h>

using corvane::core::safelyRemoveObserver;

namespace {

class Watcher : public ns::Object {
public:
    void observeValueForKeyPath(const std::string&, ns::Object*, const ns::Dictionary&, void*) override {}
};

int contextA;
int contextB;

} // namespace

TEST(SafelyRemoveObserver, RemovesAPresentObservationAndAbsorbsAnAbsentOneWithoutALogLine) {
    auto observed = ns::create<ns::Object>();
    auto watcher = ns::create<Watcher>();
    ns::LogCapture log;
    // The plain removal reports the absent observation; the safe one must not.
    EXPECT_FALSE(observed->removeObserver(*watcher, "hidden", &contextA));
    ASSERT_EQ(log.messages().size(), 1u);
    log.clear();

    EXPECT_FALSE(safelyRemoveObserver(*observed, *watcher, "hidden", &contextA));
    observed->addObserver(*watcher, "hidden", 0, &contextA);
    observed->addObserver(*watcher, "hidden", 0, &contextA);
    // Another context or key path is another observation, and stays.
    EXPECT_FALSE(safelyRemoveObserver(*observed, *watcher, "hidden", &contextB));
    EXPECT_FALSE(safelyRemoveObserver(*observed, *watcher, "frame", &contextA));
    EXPECT_TRUE(safelyRemoveObserver(*observed, *watcher, "hidden", &contextA));
    EXPECT_EQ(observed->observationCount(), 1u) << "one registration per call";
    EXPECT_TRUE(safelyRemoveObserver(*observed, *watcher, "hidden", &contextA));
    EXPECT_FALSE(safelyRemoveObserver(*observed, *watcher, "hidden", &contextA));
    EXPECT_EQ(observed->observationCount(), 0u);
    EXPECT_TRUE(log.messages().empty());
}
