#include "platform/foundation/ActionTable.hpp"

namespace ns {

const ActionHandler* ActionTable::find(const Selector& selector) const {
    for (const ActionTable* table = this; table; table = table->m_base) {
        auto found = table->m_entries.find(selector.name());
        if (found != table->m_entries.end())
            return &found->second;
    }
    return nullptr;
}

} // namespace ns
