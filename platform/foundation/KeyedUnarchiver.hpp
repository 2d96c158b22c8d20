#pragma once

#include "platform/foundation/Class.hpp"
#include "platform/foundation/Coding.hpp"
#include "platform/foundation/Data.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/foundation/PlistNode.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// Reads a keyed archive written by KeyedArchiver. Each decode reads a key of the object being
// decoded (at the outermost level, the archive's top). Nothing here throws or crashes on bad
// input: a missing key gives nil, 0 or false; a value of the wrong kind, a refused class or
// damaged data gives nil, is logged, and is recorded as error() (the first failure is kept).
//
// Secure coding (on by default): an object is decoded only when its class supports secure
// coding and is, or derives from, one of the classes the caller allows. Strings, numbers, Data,
// null, and arrays and dictionaries are always allowed; the objects inside a container are held
// to the same allowed classes as the container. decodeObjectForKey allows no object classes
// under secure coding.
class KeyedUnarchiver : public Object {
public:
    KeyedUnarchiver(PlistNode archive, plist_t top, plist_t objects);
    ~KeyedUnarchiver() override;

    // An unarchiver for the bytes; nil with *error filled when they are not a keyed archive.
    static Ref<KeyedUnarchiver> make(const Data& data, Ref<Error>* error = nullptr);

    // The root object, held to `cls` under secure coding; nil with *error filled on any failure.
    static Value unarchivedObjectOfClass(const Ref<Class>& cls, const Data& data,
                                         Ref<Error>* error = nullptr);
    static Value unarchivedObjectOfClasses(const std::vector<Ref<Class>>& classes, const Data& data,
                                           Ref<Error>* error = nullptr);
    template <class T>
    static Ref<T> unarchivedObjectOfClass(const Data& data, Ref<Error>* error = nullptr) {
        auto unarchiver = make(data, error);
        if (!unarchiver)
            return nullptr;
        Ref<T> root = unarchiver->decodeObjectOfClass<T>("root");
        if (!unarchiver->error())
            return root;
        if (error)
            *error = unarchiver->error();
        return nullptr;
    }
    // The root without secure coding: any registered class is decoded.
    static Value unarchiveObjectWithData(const Data& data, Ref<Error>* error = nullptr);

    bool requiresSecureCoding() const { return m_requiresSecureCoding; }
    void setRequiresSecureCoding(bool required) { m_requiresSecureCoding = required; }

    bool containsValueForKey(std::string_view key) const;
    Value decodeObjectForKey(std::string_view key);
    // The object under the key when it is a T; nil otherwise (recorded as an error when the key
    // held something else).
    template <class T>
    Ref<T> decodeObjectOfClass(std::string_view key) {
        Value value = decodeAllowing(std::set<std::string>{Coding::nameOf<T>()}, key);
        auto object = value.objectAs<T>();
        if (!object && !value.isNil())
            refuse(key, value.description(), "not of the expected class");
        return object;
    }
    Value decodeObjectOfClasses(const std::vector<Ref<Class>>& classes, std::string_view key);
    // Scalars: absent or of another kind gives false or 0. Booleans and numbers convert freely.
    bool decodeBoolForKey(std::string_view key) const;
    int64_t decodeIntegerForKey(std::string_view key) const;
    double decodeDoubleForKey(std::string_view key) const;
    float decodeFloatForKey(std::string_view key) const;

    const Ref<Error>& error() const { return m_error; }

private:
    using Allowed = std::optional<std::set<std::string>>; // nullopt: any class

    Value decodeAllowing(Allowed allowed, std::string_view key);
    Value decodeUid(uint64_t uid, const Allowed& allowed, int depth);
    Value decodeEntry(uint64_t uid, plist_t entry, const Allowed& allowed, int depth);
    Value decodeArray(plist_t entry, const Allowed& allowed, int depth);
    Value decodeDictionary(plist_t entry, const Allowed& allowed, int depth);
    Value decodeObject(uint64_t uid, plist_t entry, const std::string& className, const Allowed& allowed);
    Value rootOfClasses(Allowed allowed, Ref<Error>* error);
    plist_t valueNode(std::string_view key) const;
    void corrupt(const std::string& reason);
    void refuse(std::string_view key, const std::string& what, const std::string& why);
    void record(int64_t code, const std::string& reason);

    PlistNode m_archive;
    plist_t m_objects;
    std::vector<plist_t> m_frames; // the top, then each object being decoded
    bool m_requiresSecureCoding = true;
    std::string m_currentKey;
    std::map<uint64_t, Value> m_decoded;
    // Containers already decoded, with the classes they were decoded under: shared containers
    // are walked once, however often they are referred to.
    std::map<uint64_t, std::pair<Allowed, Value>> m_containers;
    bool m_exhausted = false;
    std::set<uint64_t> m_inProgress;
    size_t m_steps = 0;
    Ref<Error> m_error;
};

} // namespace ns
