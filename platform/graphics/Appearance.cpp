#include "platform/graphics/Appearance.hpp"

#include "platform/foundation/Format.hpp"

#include "platform/graphics/PlatformVersion.hpp"

#include <map>
#include <mutex>

namespace ns {

namespace {

struct Registry {
    std::map<std::string, Ref<Appearance>, std::less<>> byName;
    Registry() {
        auto add = [this](const char* name, std::vector<std::string> matches) {
            byName[name] = create<Appearance>(name, std::move(matches));
        };
        add(AppearanceNameAqua, {AppearanceNameAqua});
        add(AppearanceNameDarkAqua, {AppearanceNameDarkAqua});
        add(AppearanceNameVibrantLight, {AppearanceNameVibrantLight, AppearanceNameAqua});
        add(AppearanceNameVibrantDark, {AppearanceNameVibrantDark, AppearanceNameDarkAqua});
    }
};

const Registry& registry() {
    static const Registry instance;
    return instance;
}

bool isDarkName(std::string_view name) {
    return name == AppearanceNameDarkAqua || name == AppearanceNameVibrantDark;
}

thread_local Ref<Appearance> t_currentAppearance;

std::mutex g_applicationMutex;
Ref<Appearance> g_applicationAppearance;

} // namespace

Appearance::Appearance(std::string name, std::vector<std::string> matches)
    : m_name(std::move(name)), m_matches(std::move(matches)) {}

Ref<Appearance> Appearance::appearanceNamed(std::string_view name) {
    const auto& map = registry().byName;
    auto it = map.find(name);
    if (it == map.end())
        return nullptr;
    if (isDarkName(name) && !platformHasDarkAppearance())
        return nullptr;
    return it->second;
}

std::optional<std::string>
Appearance::bestMatchFromAppearancesWithNames(const std::vector<std::string>& names) const {
    for (const auto& candidate : m_matches)
        for (const auto& name : names)
            if (name == candidate)
                return name;
    return std::nullopt;
}

Ref<Appearance> Appearance::currentAppearance() {
    return t_currentAppearance;
}

void Appearance::setCurrentAppearance(const Ref<Appearance>& appearance) {
    t_currentAppearance = appearance;
}

Ref<Appearance> Appearance::currentDrawingAppearance() {
    if (t_currentAppearance)
        return t_currentAppearance;
    return applicationEffectiveAppearance();
}

void Appearance::performAsCurrentDrawingAppearance(const std::function<void()>& body) {
    performWithCurrentAppearance(self<Appearance>(), body);
}

void Appearance::performWithCurrentAppearance(const Ref<Appearance>& appearance,
                                              const std::function<void()>& body) {
    struct Restore {
        Ref<Appearance> previous = t_currentAppearance;
        ~Restore() { t_currentAppearance = previous; }
    } restore;
    t_currentAppearance = appearance;
    if (body)
        body();
}

Ref<Appearance> Appearance::applicationEffectiveAppearance() {
    std::lock_guard lock(g_applicationMutex);
    if (g_applicationAppearance)
        return g_applicationAppearance;
    return registry().byName.at(AppearanceNameAqua);
}

void Appearance::setApplicationEffectiveAppearance(const Ref<Appearance>& appearance) {
    std::lock_guard lock(g_applicationMutex);
    g_applicationAppearance = appearance;
}

bool Appearance::currentDrawingAppearanceIsDark() {
    if (!platformHasDarkAppearance())
        return false;
    auto match = currentDrawingAppearance()->bestMatchFromAppearancesWithNames(
        {AppearanceNameAqua, AppearanceNameDarkAqua});
    return match && *match == AppearanceNameDarkAqua;
}

std::string Appearance::description() const {
    return format("<Appearance: %@>", m_name);
}

} // namespace ns
