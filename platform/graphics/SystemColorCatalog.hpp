#pragma once

#include "platform/graphics/Color.hpp"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// The process's table of fixed colours (blackColor ...) and system colours (textColor ...) by
// method name, with the replacements an application has installed. Safe from any thread.
class SystemColorCatalog {
public:
    static SystemColorCatalog& shared();

    // The replacement if one is installed, else the platform's colour; nil for unknown names.
    Ref<Color> colorNamed(std::string_view name) const;
    std::vector<std::string> names() const;
    // False (and a log line) for an unknown name; nil removes the replacement.
    bool replace(std::string_view name, const Ref<Color>& replacement);
    // As replace, with the replacement made by the provider at the first request (outside the
    // lock, so the provider may itself ask for colours).
    bool replaceLazily(std::string_view name, std::function<Ref<Color>()> provider);

private:
    SystemColorCatalog();
    bool install(std::string_view name, const Ref<Color>& replacement, std::function<Ref<Color>()> provider);

    mutable std::mutex m_mutex;
    std::map<std::string, Ref<Color>, std::less<>> m_colors;
    // Filled from the providers by colorNamed, hence mutable.
    mutable std::map<std::string, Ref<Color>, std::less<>> m_replacements;
    mutable std::map<std::string, std::function<Ref<Color>()>, std::less<>> m_providers;
};

} // namespace ns
