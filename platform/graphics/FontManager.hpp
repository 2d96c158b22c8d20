#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Font.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

using FontTraitMask = uint64_t;
constexpr FontTraitMask ItalicFontMask = 0x00000001;
constexpr FontTraitMask BoldFontMask = 0x00000002;
constexpr FontTraitMask UnboldFontMask = 0x00000004;
constexpr FontTraitMask NonStandardCharacterSetFontMask = 0x00000008;
constexpr FontTraitMask NarrowFontMask = 0x00000010;
constexpr FontTraitMask ExpandedFontMask = 0x00000020;
constexpr FontTraitMask CondensedFontMask = 0x00000040;
constexpr FontTraitMask SmallCapsFontMask = 0x00000080;
constexpr FontTraitMask PosterFontMask = 0x00000100;
constexpr FontTraitMask CompressedFontMask = 0x00000200;
constexpr FontTraitMask FixedPitchFontMask = 0x00000400;
constexpr FontTraitMask UnitalicFontMask = 0x01000000;

// Finds fonts by family and traits and converts fonts between faces of a family. Conversions
// that the installed faces cannot satisfy answer the font unchanged; a nil font gives nil.
class FontManager : public Object {
public:
    static Ref<FontManager> sharedFontManager();

    // The face of the same family closest to the font but with the trait (bold, unbold,
    // italic, unitalic, condensed/narrow, expanded); other traits leave the font as it is.
    Ref<Font> convertFontToHaveTrait(const Ref<Font>& font, FontTraitMask trait) const;
    Ref<Font> convertFontToNotHaveTrait(const Ref<Font>& font, FontTraitMask trait) const;
    Ref<Font> convertFontToSize(const Ref<Font>& font, double size) const;
    // The face of that family closest to the font's weight and slant; the font when the family
    // is not installed.
    Ref<Font> convertFontToFamily(const Ref<Font>& font, std::string_view family) const;
    // A face of the family with the traits, the weight closest to `weight` (0-15 scale, 5
    // regular, 9 bold); nil when the family is not installed.
    Ref<Font> fontWithFamily(std::string_view family, FontTraitMask traits, int64_t weight,
                             double size) const;

    // Bold, italic, fixed pitch, narrow/condensed and expanded as the face has them.
    FontTraitMask traitsOfFont(const Ref<Font>& font) const;
    // On the 0-15 scale (5 regular, 9 bold); 0 for nil.
    int64_t weightOfFont(const Ref<Font>& font) const;
    // Whether the named font exists and has all the traits.
    bool fontNamedHasTraits(std::string_view name, FontTraitMask traits) const;

    std::vector<std::string> availableFonts() const;
    std::vector<std::string> availableFontFamilies() const;
};

} // namespace ns
