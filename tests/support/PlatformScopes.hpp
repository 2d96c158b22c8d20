#pragma once

#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/PlatformVersion.hpp"

// Runs a scope as another platform release, then restores the one before.
struct PlatformVersionScope {
    ns::OperatingSystemVersion previous = ns::platformVersion();
    explicit PlatformVersionScope(ns::OperatingSystemVersion version) { ns::setPlatformVersion(version); }
    ~PlatformVersionScope() { ns::setPlatformVersion(previous); }
};

// Runs a scope with the application showing the named appearance (and no drawing appearance on
// the thread), then restores both.
struct ApplicationAppearanceScope {
    ns::Ref<ns::Appearance> previousApplication = ns::Appearance::applicationEffectiveAppearance();
    ns::Ref<ns::Appearance> previousCurrent = ns::Appearance::currentAppearance();
    explicit ApplicationAppearanceScope(const char* name) {
        ns::Appearance::setApplicationEffectiveAppearance(ns::Appearance::appearanceNamed(name));
        ns::Appearance::setCurrentAppearance(nullptr);
    }
    ~ApplicationAppearanceScope() {
        ns::Appearance::setApplicationEffectiveAppearance(previousApplication);
        ns::Appearance::setCurrentAppearance(previousCurrent);
    }
};

inline ns::Ref<ns::Appearance> aqua() {
    return ns::Appearance::appearanceNamed(ns::AppearanceNameAqua);
}
inline ns::Ref<ns::Appearance> darkAqua() {
    return ns::Appearance::appearanceNamed(ns::AppearanceNameDarkAqua);
}
