#pragma once

#include "platform/foundation/Data.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/foundation/Value.hpp"

namespace ns {

constexpr int64_t PropertyListReadCorruptError = 3840;
constexpr int64_t PropertyListWriteInvalidError = 3851;

// Converts between Values and property lists. A property list holds booleans, integers,
// doubles, strings, Data objects, and arrays and dictionaries of those; nothing else.
class PropertyListSerialization {
public:
    // True when the value (and everything inside it) can be written as a property list.
    static bool isPropertyList(const Value& value);

    // The binary property list of the value; nil with *error filled when the value holds
    // anything that is not a property-list value (nil, null, objects other than Data, blocks...).
    static Ref<Data> dataWithPropertyList(const Value& value, Ref<Error>* error = nullptr);

    // The value read from binary or XML property-list bytes; nil with *error filled when the
    // bytes are not a property list. Dates and archive UIDs have no Value form and are dropped
    // (from containers) or read as nil.
    static Value propertyListWithData(const Data& data, Ref<Error>* error = nullptr);
};

} // namespace ns
