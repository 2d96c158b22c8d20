#include "platform/foundation/Exception.hpp"

#include <gtest/gtest.h>

TEST(Exception, RaiseCarriesNameAndReason) {
    try {
        ns::Exception::raise("Invalid queue request.", "Perform blk is nil.");
        FAIL() << "raise returned";
    } catch (const ns::Exception& e) {
        EXPECT_EQ(e.name(), "Invalid queue request.");
        EXPECT_EQ(e.reason(), "Perform blk is nil.");
        EXPECT_EQ(e.description(), "Invalid queue request.: Perform blk is nil.");
    }
}
