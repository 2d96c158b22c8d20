#include "platform/foundation/PlistNode.hpp"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace ns {

std::vector<uint8_t> PlistNode::toBinary() const {
    if (!m_node)
        return {};
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(m_node, &bytes, &length);
    if (!bytes)
        return {};
    std::vector<uint8_t> out(reinterpret_cast<uint8_t*>(bytes), reinterpret_cast<uint8_t*>(bytes) + length);
    plist_to_bin_free(bytes);
    return out;
}

PlistNode PlistNode::fromBytes(const uint8_t* bytes, size_t length) {
    if (!bytes || length < 8 || length > std::numeric_limits<uint32_t>::max())
        return {};
    plist_t node = nullptr;
    const char* text = reinterpret_cast<const char*>(bytes);
    if (std::memcmp(text, "bplist00", 8) == 0)
        plist_from_bin(text, static_cast<uint32_t>(length), &node);
    else if (std::memchr(text, '<', length)) {
        // The XML reader is only safe on terminated text; data bytes carry no terminator.
        std::string terminated(text, length);
        plist_from_xml(terminated.c_str(), static_cast<uint32_t>(length), &node);
    }
    return PlistNode(node);
}

namespace plist {

plist_type typeOf(plist_t node) {
    return node ? plist_get_node_type(node) : PLIST_NONE;
}

std::optional<std::string> string(plist_t node) {
    if (typeOf(node) != PLIST_STRING)
        return std::nullopt;
    uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return text ? std::string(text, length) : std::string();
}

std::optional<uint64_t> uid(plist_t node) {
    if (typeOf(node) != PLIST_UID)
        return std::nullopt;
    uint64_t value = 0;
    plist_get_uid_val(node, &value);
    return value;
}

std::vector<std::string> keys(plist_t dict) {
    std::vector<std::string> out;
    if (typeOf(dict) != PLIST_DICT)
        return out;
    plist_dict_iter iter = nullptr;
    plist_dict_new_iter(dict, &iter);
    if (!iter)
        return out;
    while (true) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(dict, iter, &key, &value);
        if (!value) {
            std::free(key);
            break;
        }
        out.emplace_back(key ? key : "");
        std::free(key);
    }
    std::free(iter);
    return out;
}

} // namespace plist

} // namespace ns
