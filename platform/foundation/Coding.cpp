#include "platform/foundation/Coding.hpp"

#include <map>
#include <mutex>

namespace ns {

namespace {

std::mutex& registryMutex() {
    static std::mutex mutex;
    return mutex;
}

std::map<std::string, CodingClass, std::less<>>& registry() {
    static std::map<std::string, CodingClass, std::less<>> classes;
    return classes;
}

} // namespace

bool CodingClass::isKindOf(std::string_view other) const {
    if (name == other)
        return true;
    for (const std::string& superclass : superclasses)
        if (superclass == other)
            return true;
    return false;
}

void Coding::registerClass(const CodingClass& cls) {
    if (cls.name.empty() || !cls.decode)
        return;
    std::lock_guard lock(registryMutex());
    registry().try_emplace(cls.name, cls);
}

std::optional<CodingClass> Coding::registeredClass(std::string_view name) {
    std::lock_guard lock(registryMutex());
    auto found = registry().find(name);
    if (found == registry().end())
        return std::nullopt;
    return found->second;
}

} // namespace ns
