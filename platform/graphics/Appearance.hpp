#pragma once

#include "platform/foundation/Object.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

inline constexpr const char* AppearanceNameAqua = "NSAppearanceNameAqua";
inline constexpr const char* AppearanceNameDarkAqua = "NSAppearanceNameDarkAqua";
inline constexpr const char* AppearanceNameVibrantLight = "NSAppearanceNameVibrantLight";
inline constexpr const char* AppearanceNameVibrantDark = "NSAppearanceNameVibrantDark";

// A named look that drawing follows: the light ("aqua") and dark ("dark aqua") appearances and
// their vibrant variants. There is one object per name for the life of the process.
//
// Three appearances matter when something draws: the current drawing appearance of the thread
// (set while a view draws), else the application's effective appearance.
class Appearance : public Object {
public:
    explicit Appearance(std::string name, std::vector<std::string> matches);

    // The appearance of that name; nil for an unknown name, and for the dark ones on a platform
    // release without a dark appearance (below 10.14).
    static Ref<Appearance> appearanceNamed(std::string_view name);

    const std::string& name() const { return m_name; }

    // The name among `names` that this appearance matches best: its own name first, then the
    // name of the appearance it derives from (vibrant dark derives from dark aqua, vibrant
    // light from aqua). Among equally good names the earliest wins; nullopt when none matches.
    std::optional<std::string> bestMatchFromAppearancesWithNames(const std::vector<std::string>& names) const;

    // The thread's current drawing appearance; nil when none is set.
    static Ref<Appearance> currentAppearance();
    // Sets the thread's current drawing appearance (nil clears it).
    static void setCurrentAppearance(const Ref<Appearance>& appearance);
    // The current appearance, else the application's effective appearance; never nil.
    static Ref<Appearance> currentDrawingAppearance();
    // Runs `body` with `appearance` as the thread's current appearance, then restores the
    // previous one (also when body throws). A nil appearance runs body with none set.
    void performAsCurrentDrawingAppearance(const std::function<void()>& body);
    static void performWithCurrentAppearance(const Ref<Appearance>& appearance,
                                             const std::function<void()>& body);

    // The appearance the application as a whole shows; aqua until set. Setting nil restores
    // aqua. Process-wide, safe from any thread.
    static Ref<Appearance> applicationEffectiveAppearance();
    static void setApplicationEffectiveAppearance(const Ref<Appearance>& appearance);

    // Whether colours that follow the appearance should take their dark values now: the
    // platform has a dark appearance, and the current drawing appearance matches dark aqua
    // better than aqua (asked in the order aqua, dark aqua).
    static bool currentDrawingAppearanceIsDark();

    std::string description() const override;

private:
    std::string m_name;
    // Names this appearance matches, best first.
    std::vector<std::string> m_matches;
};

} // namespace ns
