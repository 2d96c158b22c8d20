#pragma once

#include "platform/foundation/Object.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// An immutable run of bytes with identity, as stored in user defaults and produced by archives.
// Two Data objects are equal when their bytes are.
class Data : public Object {
public:
    explicit Data(std::vector<uint8_t> bytes) : m_bytes(std::move(bytes)) {}

    static Ref<Data> make(std::vector<uint8_t> bytes = {}) { return create<Data>(std::move(bytes)); }
    // Copies `length` bytes; a null pointer gives empty data.
    static Ref<Data> make(const void* bytes, size_t length);
    // The bytes of the text, without a terminator.
    static Ref<Data> fromString(std::string_view text);

    const std::vector<uint8_t>& bytes() const { return m_bytes; }
    std::span<const uint8_t> span() const { return m_bytes; }
    size_t length() const { return m_bytes.size(); }
    bool isEmpty() const { return m_bytes.empty(); }
    // The bytes as a string, unchanged (they need not be UTF-8).
    std::string string() const { return std::string(m_bytes.begin(), m_bytes.end()); }

    bool isEqual(const Object& other) const override;
    size_t hash() const override;
    // "{length = 3, bytes = 0x0a0b0c}"; long data is shortened in the middle.
    std::string description() const override;

private:
    std::vector<uint8_t> m_bytes;
};

} // namespace ns
