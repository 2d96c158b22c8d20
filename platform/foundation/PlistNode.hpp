#pragma once

#include <plist/plist.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// Owns one libplist tree (or nothing). Used by property-list serialisation and keyed archives;
// not part of the public platform surface.
class PlistNode {
public:
    PlistNode() = default;
    explicit PlistNode(plist_t node) : m_node(node) {}
    ~PlistNode() { reset(); }
    PlistNode(PlistNode&& other) noexcept : m_node(other.release()) {}
    PlistNode& operator=(PlistNode&& other) noexcept {
        if (this != &other) {
            reset();
            m_node = other.release();
        }
        return *this;
    }
    PlistNode(const PlistNode&) = delete;
    PlistNode& operator=(const PlistNode&) = delete;

    plist_t get() const { return m_node; }
    plist_t release() {
        plist_t node = m_node;
        m_node = nullptr;
        return node;
    }
    void reset(plist_t node = nullptr) {
        if (m_node)
            plist_free(m_node);
        m_node = node;
    }
    explicit operator bool() const { return m_node != nullptr; }

    // Binary property-list bytes of the tree; empty when there is no tree.
    std::vector<uint8_t> toBinary() const;
    // Parses binary (or XML) property-list bytes; an empty node when they are not a property list.
    static PlistNode fromBytes(const uint8_t* bytes, size_t length);

private:
    plist_t m_node = nullptr;
};

// Small readers that answer nothing for a node of another type (or a null node).
namespace plist {

plist_type typeOf(plist_t node);
std::optional<std::string> string(plist_t node);
std::optional<uint64_t> uid(plist_t node);
// Every key of a dictionary node, in the tree's order.
std::vector<std::string> keys(plist_t dict);

} // namespace plist

} // namespace ns
