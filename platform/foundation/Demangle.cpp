#include "platform/foundation/Demangle.hpp"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace ns {

std::string demangle(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                std::free);
    return status == 0 && name ? std::string(name.get()) : std::string(type.name());
}

std::string shortTypeName(const std::type_info& type) {
    std::string name = demangle(type);
    // Strip namespaces but keep template arguments intact.
    size_t depth = 0, start = 0;
    for (size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '<')
            ++depth;
        else if (name[i] == '>')
            --depth;
        else if (depth == 0 && name[i] == ':' && i + 1 < name.size() && name[i + 1] == ':')
            start = i + 2;
    }
    return name.substr(start);
}

} // namespace ns
