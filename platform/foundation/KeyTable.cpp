#include "platform/foundation/KeyTable.hpp"

#include <set>

namespace ns {

const PropertyAccess* KeyTable::find(std::string_view key) const {
    for (const KeyTable* table = this; table; table = table->m_base) {
        auto found = table->m_entries.find(key);
        if (found != table->m_entries.end())
            return &found->second;
    }
    return nullptr;
}

std::vector<std::string> KeyTable::keys() const {
    std::set<std::string> all;
    for (const KeyTable* table = this; table; table = table->m_base)
        for (const auto& entry : table->m_entries)
            all.insert(entry.first);
    return {all.begin(), all.end()};
}

} // namespace ns
