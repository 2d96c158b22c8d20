#include "platform/foundation/KeyedArchiver.hpp"
#include "platform/foundation/KeyedUnarchiver.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/ColorList.hpp"
#include "platform/graphics/Image.hpp"

#include <gtest/gtest.h>

using namespace ns;

namespace {

Ref<Color> roundTrip(const Ref<Color>& color) {
    Ref<Error> error;
    auto data = KeyedArchiver::archivedDataWithRootObject(color, true, &error);
    EXPECT_TRUE(data) << (error ? error->localizedDescription() : "");
    if (!data)
        return nullptr;
    auto decoded = KeyedUnarchiver::unarchivedObjectOfClass<Color>(*data, &error);
    EXPECT_FALSE(error) << (error ? error->localizedDescription() : "");
    return decoded;
}

} // namespace

TEST(ColorCoding, ComponentColoursComeBackInTheirOwnSpace) {
    for (const auto& color :
         {Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.4), Color::colorWithRed(1, 0.5, -0.02, 1),
          Color::colorWithDeviceRed(0, 1, 0, 1), Color::colorWithWhite(0.25, 0.5),
          Color::colorWithCalibratedWhite(0.75, 1), Color::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 1)}) {
        SCOPED_TRACE(color->description());
        auto decoded = roundTrip(color);
        ASSERT_TRUE(decoded);
        EXPECT_NE(decoded, color);
        EXPECT_TRUE(decoded->isEqual(*color));
        EXPECT_EQ(decoded->colorSpace(), color->colorSpace());
    }
}

TEST(ColorCoding, CatalogueColoursComeBackByName) {
    auto decoded = roundTrip(Color::textColor());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->catalogNameComponent(), "System");
    EXPECT_EQ(decoded->colorNameComponent(), "textColor");

    auto crayon = roundTrip(Color::colorWithCatalogName("Crayons", "Sea Foam"));
    ASSERT_TRUE(crayon);
    EXPECT_EQ(crayon->colorNameComponent(), "Sea Foam");
    EXPECT_DOUBLE_EQ(crayon->blueComponent(), 0x80 / 255.0);
}

TEST(ColorCoding, ACatalogueTheReaderLacksFailsCleanly) {
    auto list = ColorList::make("Coding Palette");
    list->setColor(Color::redColor(), "red");
    auto data =
        KeyedArchiver::archivedDataWithRootObject(Color::colorWithCatalogName("Coding Palette", "red"), true);
    ASSERT_TRUE(data);
    list->removeFile();
    LogCapture log;
    Ref<Error> error;
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Color>(*data, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), CoderReadCorruptError);
}

TEST(ColorCoding, PatternsAreRefused) {
    LogCapture log;
    Ref<Error> error;
    auto pattern = Color::colorWithPatternImage(Image::make({2, 2}));
    EXPECT_FALSE(KeyedArchiver::archivedDataWithRootObject(pattern, true, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), CoderInvalidValueError);
    EXPECT_TRUE(log.contains("pattern"));
}
