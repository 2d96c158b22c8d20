#pragma once

#include "platform/foundation/Coding.hpp"
#include "platform/foundation/Data.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/foundation/PlistNode.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// Writes a keyed archive: a binary property list holding an object graph, each object as a
// dictionary of the keys it encoded. An object reached twice is written once and referred to
// twice. Values that can be archived: nil, null, booleans, numbers, strings, Data, arrays and
// dictionaries of archivable values, and objects implementing Coding. Anything else is logged,
// recorded as error() and written as nil.
class KeyedArchiver : public Object {
public:
    explicit KeyedArchiver(bool requiresSecureCoding);
    ~KeyedArchiver() override;

    // With requiresSecureCoding, objects whose class does not support secure coding are refused.
    static Ref<KeyedArchiver> make(bool requiresSecureCoding = true) {
        return create<KeyedArchiver>(requiresSecureCoding);
    }

    // The archive of `root` under the key "root"; nil with *error filled when any part of the
    // graph could not be archived.
    static Ref<Data> archivedDataWithRootObject(const Value& root, bool requiringSecureCoding,
                                                Ref<Error>* error = nullptr);

    bool requiresSecureCoding() const { return m_requiresSecureCoding; }

    // Each encode writes into the object being encoded (at the outermost level, the archive's
    // top). Encoding a key again replaces it. Calls after finishEncoding are logged and ignored.
    void encodeObject(const Value& value, std::string_view key);
    void encodeBool(bool value, std::string_view key);
    void encodeInteger(int64_t value, std::string_view key);
    void encodeDouble(double value, std::string_view key);
    void encodeFloat(float value, std::string_view key);

    // For an object that finds, while encoding itself, that it cannot be archived: records the
    // error (the first one is kept) and logs it. The archive is then unusable, as after any
    // failure.
    void failWithError(const Ref<Error>& error);

    // Closes the archive; further encodes are refused.
    void finishEncoding();
    // The archive bytes (finishing it first).
    Ref<Data> encodedData();
    // The first failure, or nil.
    const Ref<Error>& error() const { return m_error; }

private:
    uint64_t encodeValue(const Value& value);
    uint64_t encodeCodingObject(const Ref<Object>& object);
    uint64_t encodeArray(const Array& array);
    uint64_t encodeDictionary(const Dictionary& dictionary);
    uint64_t classUid(const std::string& name, const std::vector<std::string>& superclasses);
    uint64_t append(plist_t node);
    void setInFrame(std::string_view key, plist_t node);
    void fail(std::string reason);

    bool m_requiresSecureCoding;
    bool m_finished = false;
    PlistNode m_top;
    std::vector<PlistNode> m_objects;
    // Dictionaries of the objects whose encodeWithCoder is running, innermost last.
    std::vector<PlistNode> m_frames;
    std::map<const Object*, uint64_t> m_objectUids;
    std::vector<Ref<Object>> m_retained; // keeps addresses in m_objectUids unique
    std::map<std::string, uint64_t, std::less<>> m_stringUids;
    std::map<std::string, uint64_t, std::less<>> m_classUids;
    uint64_t m_nullUid = 0;
    Ref<Data> m_data;
    Ref<Error> m_error;
};

} // namespace ns
