#include "platform/graphics/FontManager.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace ns {

namespace {

struct Wanted {
    int weight;
    bool italic;
    int width;
};

// The face of the family nearest to what is wanted: slant first, then width, then weight.
const Font::Face* nearestFace(const std::vector<Font::Face>& faces, const Wanted& wanted) {
    const Font::Face* best = nullptr;
    long bestScore = std::numeric_limits<long>::max();
    for (const auto& face : faces) {
        long score = (face.italic != wanted.italic ? 100000L : 0L) +
                     std::abs(face.width - wanted.width) * 100L + std::abs(face.weight - wanted.weight);
        if (score < bestScore) {
            bestScore = score;
            best = &face;
        }
    }
    return best;
}

Ref<Font> convert(const Ref<Font>& font, const std::function<void(Wanted&)>& change,
                  const std::function<bool(const Font::Face&)>& accept) {
    if (!font)
        return nullptr;
    const auto& face = font->face();
    Wanted wanted{face.weight, face.italic, face.width};
    change(wanted);
    auto faces = Font::facesOfFamily(face.family);
    const Font::Face* found = nearestFace(faces, wanted);
    if (!found || !accept(*found))
        return font;
    return Font::fontWithFace(*found, font->pointSize());
}

int otWeightForScale(int64_t weight) {
    static constexpr int table[] = {100, 100, 200, 300, 400, 400, 500, 600,
                                    600, 700, 800, 900, 900, 900, 900, 900};
    return table[std::clamp<int64_t>(weight, 0, 15)];
}

} // namespace

Ref<FontManager> FontManager::sharedFontManager() {
    static const Ref<FontManager> manager = create<FontManager>();
    return manager;
}

Ref<Font> FontManager::convertFontToHaveTrait(const Ref<Font>& font, FontTraitMask trait) const {
    if (trait & BoldFontMask)
        return convert(
            font, [](Wanted& w) { w.weight = std::max(w.weight, 700); },
            [](const Font::Face& f) { return f.weight >= 600; });
    if (trait & UnboldFontMask)
        return convert(
            font, [](Wanted& w) { w.weight = 400; }, [](const Font::Face& f) { return f.weight < 600; });
    if (trait & ItalicFontMask)
        return convert(
            font, [](Wanted& w) { w.italic = true; }, [](const Font::Face& f) { return f.italic; });
    if (trait & UnitalicFontMask)
        return convert(
            font, [](Wanted& w) { w.italic = false; }, [](const Font::Face& f) { return !f.italic; });
    if (trait & (CondensedFontMask | NarrowFontMask))
        return convert(
            font, [](Wanted& w) { w.width = 75; }, [](const Font::Face& f) { return f.width < 100; });
    if (trait & ExpandedFontMask)
        return convert(
            font, [](Wanted& w) { w.width = 125; }, [](const Font::Face& f) { return f.width > 100; });
    return font;
}

Ref<Font> FontManager::convertFontToNotHaveTrait(const Ref<Font>& font, FontTraitMask trait) const {
    if (trait & BoldFontMask)
        return convertFontToHaveTrait(font, UnboldFontMask);
    if (trait & ItalicFontMask)
        return convertFontToHaveTrait(font, UnitalicFontMask);
    if (trait & (CondensedFontMask | NarrowFontMask | ExpandedFontMask))
        return convert(
            font, [](Wanted& w) { w.width = 100; }, [](const Font::Face& f) { return f.width == 100; });
    return font;
}

Ref<Font> FontManager::convertFontToSize(const Ref<Font>& font, double size) const {
    return font ? font->fontWithSize(size) : nullptr;
}

Ref<Font> FontManager::convertFontToFamily(const Ref<Font>& font, std::string_view family) const {
    if (!font)
        return nullptr;
    auto faces = Font::facesOfFamily(family);
    const auto& face = font->face();
    const Font::Face* found = nearestFace(faces, {face.weight, face.italic, face.width});
    return found ? Font::fontWithFace(*found, font->pointSize()) : font;
}

Ref<Font> FontManager::fontWithFamily(std::string_view family, FontTraitMask traits, int64_t weight,
                                      double size) const {
    auto faces = Font::facesOfFamily(family);
    Wanted wanted{otWeightForScale(weight), (traits & ItalicFontMask) != 0, 100};
    if (traits & BoldFontMask)
        wanted.weight = std::max(wanted.weight, 700);
    if (traits & (CondensedFontMask | NarrowFontMask))
        wanted.width = 75;
    if (traits & ExpandedFontMask)
        wanted.width = 125;
    const Font::Face* found = nearestFace(faces, wanted);
    return found ? Font::fontWithFace(*found, size) : nullptr;
}

FontTraitMask FontManager::traitsOfFont(const Ref<Font>& font) const {
    if (!font)
        return 0;
    const auto& face = font->face();
    FontTraitMask traits = 0;
    if (face.weight >= 600)
        traits |= BoldFontMask;
    if (face.italic)
        traits |= ItalicFontMask;
    if (face.fixedPitch)
        traits |= FixedPitchFontMask;
    if (face.width < 100)
        traits |= NarrowFontMask | CondensedFontMask;
    if (face.width > 100)
        traits |= ExpandedFontMask;
    return traits;
}

int64_t FontManager::weightOfFont(const Ref<Font>& font) const {
    if (!font)
        return 0;
    static constexpr std::pair<int, int64_t> table[] = {{100, 2}, {200, 3}, {300, 4},  {400, 5}, {500, 6},
                                                        {600, 8}, {700, 9}, {800, 10}, {900, 11}};
    int weight = font->face().weight;
    int64_t best = 5;
    int distance = 1 << 30;
    for (const auto& [w, scale] : table)
        if (std::abs(w - weight) < distance) {
            distance = std::abs(w - weight);
            best = scale;
        }
    return best;
}

bool FontManager::fontNamedHasTraits(std::string_view name, FontTraitMask traits) const {
    auto font = Font::fontWithName(name, 12);
    return font && (traitsOfFont(font) & traits) == traits;
}

std::vector<std::string> FontManager::availableFonts() const {
    std::vector<std::string> names;
    for (const auto& face : Font::availableFaces())
        names.push_back(face.postScriptName);
    return names;
}

std::vector<std::string> FontManager::availableFontFamilies() const {
    return Font::availableFamilies();
}

} // namespace ns
