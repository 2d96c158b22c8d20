#include "platform/graphics/PlatformVersion.hpp"

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
    return std::to_string(version.majorVersion) + "." + std::to_string(version.minorVersion) + "." +
           std::to_string(version.patchVersion);
}

} // namespace ns
