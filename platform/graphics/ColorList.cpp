#include "platform/graphics/ColorList.hpp"

#include "platform/foundation/Log.hpp"

#include <algorithm>

namespace ns {

namespace {

struct CrayonEntry {
    const char* key;
    uint32_t rgb;
};

// The crayon picker's colours as calibrated (generic) RGB, 8 bits a channel.
constexpr CrayonEntry kCrayons[] = {
    {"Licorice", 0x000000},   {"Lead", 0x191919},       {"Tungsten", 0x333333},  {"Iron", 0x4C4C4C},
    {"Steel", 0x666666},      {"Tin", 0x7F7F7F},        {"Nickel", 0x808080},    {"Aluminum", 0x999999},
    {"Magnesium", 0xB3B3B3},  {"Silver", 0xCCCCCC},     {"Mercury", 0xE6E6E6},   {"Snow", 0xFFFFFF},
    {"Cayenne", 0x800000},    {"Mocha", 0x804000},      {"Asparagus", 0x808000}, {"Fern", 0x408000},
    {"Clover", 0x008000},     {"Moss", 0x008040},       {"Teal", 0x008080},      {"Ocean", 0x004080},
    {"Midnight", 0x000080},   {"Eggplant", 0x400080},   {"Plum", 0x800080},      {"Maroon", 0x800040},
    {"Maraschino", 0xFF0000}, {"Tangerine", 0xFF8000},  {"Lemon", 0xFFFF00},     {"Lime", 0x80FF00},
    {"Spring", 0x00FF00},     {"Sea Foam", 0x00FF80},   {"Turquoise", 0x00FFFF}, {"Aqua", 0x0080FF},
    {"Blueberry", 0x0000FF},  {"Grape", 0x8000FF},      {"Magenta", 0xFF00FF},   {"Strawberry", 0xFF0080},
    {"Salmon", 0xFF6666},     {"Cantaloupe", 0xFFCC66}, {"Banana", 0xFFFF66},    {"Honeydew", 0xCCFF66},
    {"Flora", 0x66FF66},      {"Spindrift", 0x66FFCC},  {"Ice", 0x66FFFF},       {"Sky", 0x66CCFF},
    {"Orchid", 0x6666FF},     {"Lavendar", 0xCC66FF},   {"Bubblegum", 0xFF66FF}, {"Carnation", 0xFF6FCF},
};

struct Registry {
    std::mutex mutex;
    std::vector<Ref<ColorList>> lists;

    Registry() {
        ColorList::Entries crayons;
        for (const auto& entry : kCrayons)
            crayons.emplace_back(entry.key, Color::colorWithCalibratedRed(((entry.rgb >> 16) & 0xFF) / 255.0,
                                                                          ((entry.rgb >> 8) & 0xFF) / 255.0,
                                                                          (entry.rgb & 0xFF) / 255.0, 1.0));
        lists.push_back(makeFixed("Crayons", std::move(crayons)));
    }

    static Ref<ColorList> makeFixed(std::string name, ColorList::Entries entries) {
        return create<ColorList>(std::move(name), false, std::move(entries));
    }
};

Registry& registry() {
    static Registry instance;
    return instance;
}

} // namespace

ColorList::ColorList(std::string name, bool editable, Entries entries)
    : m_name(std::move(name)), m_editable(editable), m_entries(std::move(entries)) {}

Ref<ColorList> ColorList::make(std::string name) {
    auto list = create<ColorList>(std::move(name), true);
    auto& reg = registry();
    std::lock_guard lock(reg.mutex);
    bool taken = std::any_of(reg.lists.begin(), reg.lists.end(),
                             [&](const Ref<ColorList>& other) { return other->name() == list->name(); });
    if (!taken)
        reg.lists.push_back(list);
    return list;
}

Ref<ColorList> ColorList::colorListNamed(std::string_view name) {
    auto& reg = registry();
    std::lock_guard lock(reg.mutex);
    for (const auto& list : reg.lists)
        if (list->name() == name)
            return list;
    return nullptr;
}

std::vector<Ref<ColorList>> ColorList::availableColorLists() {
    auto& reg = registry();
    std::lock_guard lock(reg.mutex);
    return reg.lists;
}

void ColorList::removeFile() {
    auto& reg = registry();
    std::lock_guard lock(reg.mutex);
    std::erase_if(reg.lists, [this](const Ref<ColorList>& list) { return list.get() == this; });
}

std::vector<std::string> ColorList::allKeys() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> keys;
    keys.reserve(m_entries.size());
    for (const auto& [key, color] : m_entries)
        keys.push_back(key);
    return keys;
}

Ref<Color> ColorList::colorWithKey(std::string_view key) const {
    std::lock_guard lock(m_mutex);
    for (const auto& [k, color] : m_entries)
        if (k == key)
            return color;
    return nullptr;
}

bool ColorList::checkEditable(const char* what) const {
    if (!m_editable)
        Log("ColorList %@: %s ignored, the list cannot be edited.", m_name, what);
    return m_editable;
}

void ColorList::setColor(const Ref<Color>& color, std::string_view key) {
    if (!checkEditable("setColor") || !color)
        return;
    std::lock_guard lock(m_mutex);
    for (auto& [k, c] : m_entries)
        if (k == key) {
            c = color;
            return;
        }
    m_entries.emplace_back(std::string(key), color);
}

void ColorList::insertColor(const Ref<Color>& color, std::string_view key, uint64_t index) {
    if (!checkEditable("insertColor") || !color)
        return;
    std::lock_guard lock(m_mutex);
    std::erase_if(m_entries, [&](const auto& entry) { return entry.first == key; });
    auto at = std::min<uint64_t>(index, m_entries.size());
    m_entries.insert(m_entries.begin() + static_cast<ptrdiff_t>(at), {std::string(key), color});
}

void ColorList::removeColorWithKey(std::string_view key) {
    if (!checkEditable("removeColorWithKey"))
        return;
    std::lock_guard lock(m_mutex);
    std::erase_if(m_entries, [&](const auto& entry) { return entry.first == key; });
}

std::string ColorList::description() const {
    return format("<ColorList: %@>", m_name);
}

} // namespace ns
