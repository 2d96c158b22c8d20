#pragma once

#include <cstdint>
#include <string>

namespace ns {

// The position, index or value answered when nothing was found.
constexpr int64_t NotFound = INT64_MAX;

// A run of positions in a sequence: its first position and its length.
struct Range {
    uint64_t location = 0;
    uint64_t length = 0;

    uint64_t max() const { return location + length; }
    bool contains(uint64_t position) const { return position >= location && position < max(); }
    // True when the range lies inside [0, size].
    bool fitsIn(uint64_t size) const { return location <= size && length <= size - location; }
    bool operator==(const Range&) const = default;
};

inline std::string describe(const Range& range) {
    std::string text = "{";
    text += std::to_string(range.location);
    text += ", ";
    text += std::to_string(range.length);
    text += '}';
    return text;
}

} // namespace ns
