#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace ns {

// A platform release number, compared part by part.
struct OperatingSystemVersion {
    int64_t majorVersion = 0;
    int64_t minorVersion = 0;
    int64_t patchVersion = 0;
    auto operator<=>(const OperatingSystemVersion&) const = default;
};

// The platform release this process behaves as: 10.15.0 unless changed. Behaviour that depends
// on the release (the dark appearance exists from 10.14 on) asks here, so tests can select an
// older one. Safe from any thread.
OperatingSystemVersion platformVersion();
void setPlatformVersion(OperatingSystemVersion version);
bool isPlatformVersionAtLeast(OperatingSystemVersion version);
// Whether this release has a dark appearance (10.14 and later).
bool platformHasDarkAppearance();

std::string describe(const OperatingSystemVersion& version);

} // namespace ns
