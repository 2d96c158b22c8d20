#include "platform/foundation/Data.hpp"

#include "platform/foundation/Format.hpp"

namespace ns {

Ref<Data> Data::make(const void* bytes, size_t length) {
    if (!bytes || length == 0)
        return make();
    auto begin = static_cast<const uint8_t*>(bytes);
    return make(std::vector<uint8_t>(begin, begin + length));
}

Ref<Data> Data::fromString(std::string_view text) {
    return make(text.data(), text.size());
}

bool Data::isEqual(const Object& other) const {
    auto data = dynamic_cast<const Data*>(&other);
    return data && data->m_bytes == m_bytes;
}

size_t Data::hash() const {
    // FNV-1a over the bytes: equal content must hash alike.
    uint64_t value = 14695981039346656037ull;
    for (uint8_t byte : m_bytes) {
        value ^= byte;
        value *= 1099511628211ull;
    }
    return static_cast<size_t>(value);
}

std::string Data::description() const {
    static const char digits[] = "0123456789abcdef";
    auto hex = [&](size_t from, size_t to) {
        std::string text;
        for (size_t i = from; i < to; ++i) {
            text += digits[m_bytes[i] >> 4];
            text += digits[m_bytes[i] & 0xf];
        }
        return text;
    };
    std::string bytes;
    if (m_bytes.size() <= 24)
        bytes = hex(0, m_bytes.size());
    else
        bytes = hex(0, 8) + " ... " + hex(m_bytes.size() - 8, m_bytes.size());
    return format("{length = %zu, bytes = 0x%@}", m_bytes.size(), bytes);
}

} // namespace ns
