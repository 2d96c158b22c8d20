#include "platform/graphics/SystemColorCatalog.hpp"

#include "platform/foundation/Log.hpp"

namespace ns {

namespace {

// An 8-bit sRGB value with an alpha of 0-255.
Ref<Color> srgb(uint32_t rgb, int alpha = 255) {
    return Color::colorWithSRGBRed(((rgb >> 16) & 0xFF) / 255.0, ((rgb >> 8) & 0xFF) / 255.0,
                                   (rgb & 0xFF) / 255.0, alpha / 255.0);
}

Ref<Color> named(const std::string& name, Ref<Color> light, Ref<Color> dark) {
    Color::Data data;
    data.kind = Color::Kind::Catalog;
    data.catalogName = "System";
    data.colorName = name;
    data.lightValue = std::move(light);
    data.darkValue = std::move(dark);
    return create<Color>(std::move(data));
}

} // namespace

SystemColorCatalog& SystemColorCatalog::shared() {
    static SystemColorCatalog catalog;
    return catalog;
}

SystemColorCatalog::SystemColorCatalog() {
    // Fixed colours: greys in generic gamma 2.2 grey, the others in sRGB.
    auto gray = [](double white, double alpha = 1) {
        return Color::colorWithGenericGamma22White(white, alpha);
    };
    m_colors["blackColor"] = gray(0);
    m_colors["darkGrayColor"] = gray(1.0 / 3.0);
    m_colors["grayColor"] = gray(0.5);
    m_colors["lightGrayColor"] = gray(2.0 / 3.0);
    m_colors["whiteColor"] = gray(1);
    m_colors["clearColor"] = gray(0, 0);
    m_colors["redColor"] = Color::colorWithSRGBRed(1, 0, 0, 1);
    m_colors["greenColor"] = Color::colorWithSRGBRed(0, 1, 0, 1);
    m_colors["blueColor"] = Color::colorWithSRGBRed(0, 0, 1, 1);
    m_colors["cyanColor"] = Color::colorWithSRGBRed(0, 1, 1, 1);
    m_colors["yellowColor"] = Color::colorWithSRGBRed(1, 1, 0, 1);
    m_colors["magentaColor"] = Color::colorWithSRGBRed(1, 0, 1, 1);
    m_colors["orangeColor"] = Color::colorWithSRGBRed(1, 0.5, 0, 1);
    m_colors["purpleColor"] = Color::colorWithSRGBRed(0.5, 0, 0.5, 1);
    m_colors["brownColor"] = Color::colorWithSRGBRed(0.6, 0.4, 0.2, 1);

    // System colours, light and dark, as measured on running systems (sRGB).
    auto add = [this](const char* name, Ref<Color> light, Ref<Color> dark) {
        m_colors[name] = named(name, std::move(light), std::move(dark));
    };
    add("textColor", srgb(0x000000), srgb(0xFFFFFF));
    add("textBackgroundColor", srgb(0xFFFFFF), srgb(0x1E1E1E));
    add("labelColor", srgb(0x000000, 216), srgb(0xFFFFFF, 216));
    add("secondaryLabelColor", srgb(0x000000, 128), srgb(0xFFFFFF, 140));
    add("tertiaryLabelColor", srgb(0x000000, 64), srgb(0xFFFFFF, 64));
    add("controlTextColor", srgb(0x000000, 216), srgb(0xFFFFFF, 216));
    add("disabledControlTextColor", srgb(0x000000, 64), srgb(0xFFFFFF, 64));
    add("headerTextColor", srgb(0x000000, 216), srgb(0xFFFFFF));
    add("linkColor", srgb(0x0068DA), srgb(0x419CFF));
    add("windowBackgroundColor", srgb(0xECECEC), srgb(0x323232));
    add("controlBackgroundColor", srgb(0xFFFFFF), srgb(0x1E1E1E));
    add("controlColor", srgb(0xFFFFFF), srgb(0xFFFFFF, 64));
    add("selectedContentBackgroundColor", srgb(0x0064E1), srgb(0x0059D1));
    add("selectedTextBackgroundColor", srgb(0xB3D7FF), srgb(0x3F638B));
    add("gridColor", srgb(0xE6E6E6), srgb(0x1A1A1A));
    add("separatorColor", srgb(0x000000, 26), srgb(0xFFFFFF, 26));
}

Ref<Color> SystemColorCatalog::colorNamed(std::string_view name) const {
    std::unique_lock lock(m_mutex);
    if (auto it = m_providers.find(name); it != m_providers.end()) {
        auto provider = it->second;
        lock.unlock();
        Ref<Color> made = provider();
        lock.lock();
        // Another request may have made it meanwhile, or the provider been replaced: the first
        // colour made under the current provider wins.
        if (auto still = m_providers.find(name); still != m_providers.end()) {
            m_providers.erase(still);
            if (made)
                m_replacements[std::string(name)] = made;
        }
    }
    if (auto it = m_replacements.find(name); it != m_replacements.end())
        return it->second;
    if (auto it = m_colors.find(name); it != m_colors.end())
        return it->second;
    return nullptr;
}

std::vector<std::string> SystemColorCatalog::names() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> result;
    for (const auto& [name, color] : m_colors)
        result.push_back(name);
    return result;
}

bool SystemColorCatalog::replace(std::string_view name, const Ref<Color>& replacement) {
    return install(name, replacement, nullptr);
}

bool SystemColorCatalog::replaceLazily(std::string_view name, std::function<Ref<Color>()> provider) {
    return install(name, nullptr, std::move(provider));
}

bool SystemColorCatalog::install(std::string_view name, const Ref<Color>& replacement,
                                 std::function<Ref<Color>()> provider) {
    std::lock_guard lock(m_mutex);
    if (!m_colors.contains(name)) {
        Log("Color: no system color named %@ to replace.", name);
        return false;
    }
    // A name has one replacement at most: a colour, a provider of one, or neither.
    if (auto it = m_providers.find(name); it != m_providers.end())
        m_providers.erase(it);
    if (auto it = m_replacements.find(name); it != m_replacements.end())
        m_replacements.erase(it);
    if (replacement)
        m_replacements[std::string(name)] = replacement;
    else if (provider)
        m_providers[std::string(name)] = std::move(provider);
    return true;
}

} // namespace ns
