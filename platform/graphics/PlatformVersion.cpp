#include "platform/graphics/PlatformVersion.hpp"

#include "platform/foundation/Format.hpp"

#include <mutex>

namespace ns {

namespace {

std::mutex g_versionMutex;
OperatingSystemVersion g_version{10, 15, 0};

} // namespace

OperatingSystemVersion platformVersion() {
    std::lock_guard lock(g_versionMutex);
    return g_version;
}

void setPlatformVersion(OperatingSystemVersion version) {
    std::lock_guard lock(g_versionMutex);
    g_version = version;
}

bool isPlatformVersionAtLeast(OperatingSystemVersion version) {
    return platformVersion() >= version;
}

bool platformHasDarkAppearance() {
    return isPlatformVersionAtLeast({10, 14, 0});
}

std::string describe(const OperatingSystemVersion& version) {
    return format("%lld.%lld.%lld", static_cast<long long>(version.majorVersion),
                  static_cast<long long>(version.minorVersion), static_cast<long long>(version.patchVersion));
}

} // namespace ns
