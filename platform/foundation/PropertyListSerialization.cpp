#include "platform/foundation/PropertyListSerialization.hpp"

#include "platform/foundation/PlistNode.hpp"

namespace ns {

namespace {

// Deep property lists are rejected rather than risking the stack on hostile input.
constexpr int MaxDepth = 512;

plist_t toNode(const Value& value, int depth) {
    if (depth > MaxDepth)
        return nullptr;
    switch (value.kind()) {
    case Value::Kind::Bool:
        return plist_new_bool(value.boolValue() ? 1 : 0);
    case Value::Kind::Integer:
        // Stored as the two's-complement bits; readers cast back to signed.
        return plist_new_uint(static_cast<uint64_t>(value.integerValue()));
    case Value::Kind::Double:
        return plist_new_real(value.doubleValue());
    case Value::Kind::String:
        return plist_new_string(value.string()->c_str());
    case Value::Kind::Object: {
        auto data = value.objectAs<Data>();
        if (!data)
            return nullptr;
        return plist_new_data(reinterpret_cast<const char*>(data->bytes().data()), data->length());
    }
    case Value::Kind::Array: {
        PlistNode array(plist_new_array());
        for (const Value& element : value.array()) {
            plist_t node = toNode(element, depth + 1);
            if (!node)
                return nullptr;
            plist_array_append_item(array.get(), node);
        }
        return array.release();
    }
    case Value::Kind::Dictionary: {
        PlistNode dict(plist_new_dict());
        for (const auto& [key, element] : value.dictionary()) {
            plist_t node = toNode(element, depth + 1);
            if (!node)
                return nullptr;
            plist_dict_set_item(dict.get(), key.c_str(), node);
        }
        return dict.release();
    }
    default:
        return nullptr;
    }
}

Value fromNode(plist_t node, int depth) {
    if (depth > MaxDepth)
        return {};
    switch (plist::typeOf(node)) {
    case PLIST_BOOLEAN: {
        uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return flag != 0;
    }
    case PLIST_UINT: {
        uint64_t bits = 0;
        plist_get_uint_val(node, &bits);
        return static_cast<int64_t>(bits);
    }
    case PLIST_REAL: {
        double number = 0;
        plist_get_real_val(node, &number);
        return number;
    }
    case PLIST_STRING:
        return *plist::string(node);
    case PLIST_DATA: {
        uint64_t length = 0;
        const char* bytes = plist_get_data_ptr(node, &length);
        return Data::make(bytes, static_cast<size_t>(length));
    }
    case PLIST_ARRAY: {
        Array array;
        uint32_t size = plist_array_get_size(node);
        for (uint32_t i = 0; i < size; ++i) {
            Value element = fromNode(plist_array_get_item(node, i), depth + 1);
            if (!element.isNil())
                array.push_back(std::move(element));
        }
        return array;
    }
    case PLIST_DICT: {
        Dictionary dict;
        for (const std::string& key : plist::keys(node)) {
            Value element = fromNode(plist_dict_get_item(node, key.c_str()), depth + 1);
            if (!element.isNil())
                dict[key] = std::move(element);
        }
        return dict;
    }
    default:
        return {};
    }
}

Ref<Error> makeError(int64_t code, const std::string& reason) {
    return Error::make(CocoaErrorDomain, code, {{LocalizedDescriptionKey, reason}});
}

} // namespace

bool PropertyListSerialization::isPropertyList(const Value& value) {
    PlistNode node(toNode(value, 0));
    return static_cast<bool>(node);
}

Ref<Data> PropertyListSerialization::dataWithPropertyList(const Value& value, Ref<Error>* error) {
    PlistNode node(toNode(value, 0));
    if (!node) {
        if (error)
            *error =
                makeError(PropertyListWriteInvalidError,
                          "Property list invalid for format (the value holds a non-property-list object)");
        return nullptr;
    }
    return Data::make(node.toBinary());
}

Value PropertyListSerialization::propertyListWithData(const Data& data, Ref<Error>* error) {
    PlistNode node = PlistNode::fromBytes(data.bytes().data(), data.length());
    Value value = node ? fromNode(node.get(), 0) : Value();
    if (value.isNil() && error)
        *error = makeError(PropertyListReadCorruptError,
                           "The data couldn\u2019t be read because it isn\u2019t in the correct format.");
    return value;
}

} // namespace ns
