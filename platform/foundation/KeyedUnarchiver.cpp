#include "platform/foundation/KeyedUnarchiver.hpp"

#include "platform/foundation/Log.hpp"

namespace ns {

namespace {

// Bounds that keep a hostile archive from exhausting the stack or the processor.
constexpr int MaxDepth = 256;
constexpr size_t MaxSteps = 1'000'000;

std::string escapedKey(std::string_view key) {
    if (!key.empty() && key.front() == '$')
        return "$" + std::string(key);
    return std::string(key);
}

plist_t item(plist_t array, uint64_t index) {
    if (plist::typeOf(array) != PLIST_ARRAY || index >= plist_array_get_size(array))
        return nullptr;
    return plist_array_get_item(array, static_cast<uint32_t>(index));
}

plist_t member(plist_t dict, const char* key) {
    return plist::typeOf(dict) == PLIST_DICT ? plist_dict_get_item(dict, key) : nullptr;
}

// Booleans, integers and reals read as one another; anything else reads as 0.
int64_t scalarInteger(plist_t node) {
    switch (plist::typeOf(node)) {
    case PLIST_UINT: {
        uint64_t bits = 0;
        plist_get_uint_val(node, &bits);
        return static_cast<int64_t>(bits);
    }
    case PLIST_REAL: {
        double number = 0;
        plist_get_real_val(node, &number);
        return Value(number).integerValue();
    }
    case PLIST_BOOLEAN: {
        uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return flag ? 1 : 0;
    }
    default:
        return 0;
    }
}

double scalarDouble(plist_t node) {
    if (plist::typeOf(node) != PLIST_REAL)
        return static_cast<double>(scalarInteger(node));
    double number = 0;
    plist_get_real_val(node, &number);
    return number;
}

Ref<Error> corruptError(const std::string& reason) {
    return Error::make(CocoaErrorDomain, CoderReadCorruptError,
                       {{LocalizedDescriptionKey,
                         "The data couldn\u2019t be read because it isn\u2019t in the correct format."},
                        {"NSDebugDescription", reason}});
}

} // namespace

KeyedUnarchiver::KeyedUnarchiver(PlistNode archive, plist_t top, plist_t objects)
    : m_archive(std::move(archive)), m_objects(objects), m_frames{top} {}

KeyedUnarchiver::~KeyedUnarchiver() = default;

Ref<KeyedUnarchiver> KeyedUnarchiver::make(const Data& data, Ref<Error>* error) {
    auto fail = [&](const std::string& reason) -> Ref<KeyedUnarchiver> {
        Log("KeyedUnarchiver: %@", reason);
        if (error)
            *error = corruptError(reason);
        return nullptr;
    };
    PlistNode archive = PlistNode::fromBytes(data.bytes().data(), data.length());
    if (plist::typeOf(archive.get()) != PLIST_DICT)
        return fail("the data is not a property list.");
    if (plist::string(member(archive.get(), "$archiver")) != "NSKeyedArchiver")
        return fail("the property list is not a keyed archive.");
    plist_t top = member(archive.get(), "$top");
    plist_t objects = member(archive.get(), "$objects");
    if (plist::typeOf(top) != PLIST_DICT || plist::typeOf(objects) != PLIST_ARRAY ||
        plist_array_get_size(objects) == 0)
        return fail("the keyed archive lacks its top or its objects.");
    return create<KeyedUnarchiver>(std::move(archive), top, objects);
}

// --- Top-level conveniences ----------------------------------------------------------------------

Value KeyedUnarchiver::rootOfClasses(Allowed allowed, Ref<Error>* error) {
    if (!containsValueForKey("root")) {
        record(CoderValueNotFoundError, "the archive has no root object.");
    } else {
        Value root = decodeAllowing(std::move(allowed), "root");
        if (!m_error)
            return root;
    }
    if (error)
        *error = m_error;
    return {};
}

Value KeyedUnarchiver::unarchivedObjectOfClass(const Ref<Class>& cls, const Data& data, Ref<Error>* error) {
    return unarchivedObjectOfClasses({cls}, data, error);
}

Value KeyedUnarchiver::unarchivedObjectOfClasses(const std::vector<Ref<Class>>& classes, const Data& data,
                                                 Ref<Error>* error) {
    auto unarchiver = make(data, error);
    if (!unarchiver)
        return {};
    std::set<std::string> names;
    for (const auto& cls : classes)
        if (cls)
            names.insert(cls->name());
    return unarchiver->rootOfClasses(std::move(names), error);
}

Value KeyedUnarchiver::unarchiveObjectWithData(const Data& data, Ref<Error>* error) {
    auto unarchiver = make(data, error);
    if (!unarchiver)
        return {};
    unarchiver->setRequiresSecureCoding(false);
    return unarchiver->rootOfClasses(std::nullopt, error);
}

// --- Keys of the current object ------------------------------------------------------------------

plist_t KeyedUnarchiver::valueNode(std::string_view key) const {
    return member(m_frames.back(), escapedKey(key).c_str());
}

bool KeyedUnarchiver::containsValueForKey(std::string_view key) const {
    return valueNode(key) != nullptr;
}

Value KeyedUnarchiver::decodeObjectForKey(std::string_view key) {
    return decodeAllowing(m_requiresSecureCoding ? Allowed(std::set<std::string>{}) : std::nullopt, key);
}

Value KeyedUnarchiver::decodeObjectOfClasses(const std::vector<Ref<Class>>& classes, std::string_view key) {
    std::set<std::string> names;
    for (const auto& cls : classes)
        if (cls)
            names.insert(cls->name());
    return decodeAllowing(std::move(names), key);
}

bool KeyedUnarchiver::decodeBoolForKey(std::string_view key) const {
    return scalarDouble(valueNode(key)) != 0;
}

int64_t KeyedUnarchiver::decodeIntegerForKey(std::string_view key) const {
    return scalarInteger(valueNode(key));
}

double KeyedUnarchiver::decodeDoubleForKey(std::string_view key) const {
    return scalarDouble(valueNode(key));
}

float KeyedUnarchiver::decodeFloatForKey(std::string_view key) const {
    return static_cast<float>(scalarDouble(valueNode(key)));
}

// --- The object graph ----------------------------------------------------------------------------

Value KeyedUnarchiver::decodeAllowing(Allowed allowed, std::string_view key) {
    plist_t node = valueNode(key);
    if (!node)
        return {};
    std::optional<uint64_t> uid = plist::uid(node);
    if (!uid) {
        refuse(key, "a scalar", "it was not encoded as an object");
        return {};
    }
    std::string outerKey = std::exchange(m_currentKey, std::string(key));
    Value value = decodeUid(*uid, allowed, static_cast<int>(m_frames.size()));
    m_currentKey = std::move(outerKey);
    return value;
}

Value KeyedUnarchiver::decodeUid(uint64_t uid, const Allowed& allowed, int depth) {
    if (uid == 0 || m_exhausted)
        return {};
    if (depth > MaxDepth || ++m_steps > MaxSteps) {
        // Give up on the whole archive: one report, and no more work.
        corrupt("the object graph is nested too deeply or is too large.");
        m_exhausted = true;
        return {};
    }
    plist_t entry = item(m_objects, uid);
    if (!entry) {
        corrupt("a reference points outside the archive's objects.");
        return {};
    }
    return decodeEntry(uid, entry, allowed, depth);
}

Value KeyedUnarchiver::decodeEntry(uint64_t uid, plist_t entry, const Allowed& allowed, int depth) {
    switch (plist::typeOf(entry)) {
    case PLIST_STRING:
        return *plist::string(entry);
    case PLIST_BOOLEAN:
        return scalarInteger(entry) != 0;
    case PLIST_UINT:
        return scalarInteger(entry);
    case PLIST_REAL:
        return scalarDouble(entry);
    case PLIST_DATA: {
        if (auto found = m_decoded.find(uid); found != m_decoded.end())
            return found->second;
        uint64_t length = 0;
        const char* bytes = plist_get_data_ptr(entry, &length);
        Value data = Data::make(bytes, static_cast<size_t>(length));
        m_decoded.emplace(uid, data);
        return data;
    }
    case PLIST_DICT:
        break;
    default:
        corrupt("an object entry has a type that no object is written as.");
        return {};
    }

    std::optional<uint64_t> classRef = plist::uid(member(entry, "$class"));
    std::optional<std::string> className =
        classRef ? plist::string(member(item(m_objects, *classRef), "$classname")) : std::nullopt;
    if (!className) {
        corrupt("an object entry has no class.");
        return {};
    }
    if (m_inProgress.count(uid)) {
        corrupt("an object refers to itself while it is being decoded.");
        return {};
    }
    if (*className == "NSNull")
        return Null{};
    if (*className == "NSString" || *className == "NSMutableString") {
        if (auto text = plist::string(member(entry, "NS.string")))
            return *text;
        corrupt("a string entry has no text.");
        return {};
    }
    if (*className == "NSData" || *className == "NSMutableData") {
        plist_t bytes = member(entry, "NS.data");
        if (plist::typeOf(bytes) == PLIST_DATA)
            return decodeEntry(uid, bytes, allowed, depth);
        corrupt("a data entry has no bytes.");
        return {};
    }
    bool isArray = *className == "NSArray" || *className == "NSMutableArray";
    bool isDictionary = *className == "NSDictionary" || *className == "NSMutableDictionary";
    if (isArray || isDictionary) {
        if (auto found = m_containers.find(uid);
            found != m_containers.end() && found->second.first == allowed)
            return found->second.second;
    }
    m_inProgress.insert(uid);
    Value value;
    if (isArray)
        value = decodeArray(entry, allowed, depth);
    else if (isDictionary)
        value = decodeDictionary(entry, allowed, depth);
    else
        value = decodeObject(uid, entry, *className, allowed);
    m_inProgress.erase(uid);
    if (isArray || isDictionary)
        m_containers[uid] = {allowed, value};
    return value;
}

Value KeyedUnarchiver::decodeArray(plist_t entry, const Allowed& allowed, int depth) {
    plist_t uids = member(entry, "NS.objects");
    if (plist::typeOf(uids) != PLIST_ARRAY) {
        corrupt("an array entry has no objects.");
        return {};
    }
    Array array;
    uint32_t count = plist_array_get_size(uids);
    for (uint32_t i = 0; i < count; ++i) {
        std::optional<uint64_t> uid = plist::uid(plist_array_get_item(uids, i));
        if (!uid) {
            corrupt("an array element is not a reference.");
            return {};
        }
        Value element = decodeUid(*uid, allowed, depth + 1);
        if (!element.isNil())
            array.push_back(std::move(element));
    }
    return array;
}

Value KeyedUnarchiver::decodeDictionary(plist_t entry, const Allowed& allowed, int depth) {
    plist_t keys = member(entry, "NS.keys");
    plist_t objects = member(entry, "NS.objects");
    if (plist::typeOf(keys) != PLIST_ARRAY || plist::typeOf(objects) != PLIST_ARRAY ||
        plist_array_get_size(keys) != plist_array_get_size(objects)) {
        corrupt("a dictionary entry's keys and objects do not pair up.");
        return {};
    }
    Dictionary dictionary;
    uint32_t count = plist_array_get_size(keys);
    for (uint32_t i = 0; i < count; ++i) {
        std::optional<uint64_t> keyUid = plist::uid(plist_array_get_item(keys, i));
        std::optional<uint64_t> valueUid = plist::uid(plist_array_get_item(objects, i));
        if (!keyUid || !valueUid) {
            corrupt("a dictionary element is not a reference.");
            return {};
        }
        Value key = decodeUid(*keyUid, allowed, depth + 1);
        if (!key.isString()) {
            refuse(m_currentKey, key.description(), "dictionary keys must be strings");
            continue;
        }
        Value value = decodeUid(*valueUid, allowed, depth + 1);
        if (!value.isNil())
            dictionary[*key.string()] = std::move(value);
    }
    return dictionary;
}

Value KeyedUnarchiver::decodeObject(uint64_t uid, plist_t entry, const std::string& className,
                                    const Allowed& allowed) {
    std::optional<CodingClass> cls = Coding::registeredClass(className);
    if (!cls) {
        refuse(m_currentKey, className, "no class of that name can be decoded in this process");
        return {};
    }
    if (m_requiresSecureCoding) {
        if (!cls->supportsSecureCoding) {
            refuse(m_currentKey, className, "the class does not support secure coding");
            return {};
        }
        bool permitted = !allowed;
        if (allowed)
            for (const std::string& name : *allowed)
                permitted = permitted || cls->isKindOf(name);
        if (!permitted) {
            std::string names;
            for (const std::string& name : *allowed)
                names += (names.empty() ? "" : ", ") + name;
            refuse(m_currentKey, className, "allowed classes are {" + names + "}");
            return {};
        }
    }
    if (auto found = m_decoded.find(uid); found != m_decoded.end())
        return found->second;

    m_frames.push_back(entry);
    Ref<Object> object = cls->decode(*this);
    m_frames.pop_back();
    if (!object) {
        record(CoderReadCorruptError,
               format("decoding an object of class %@ for the key %@ failed.", className, m_currentKey));
        return {};
    }
    m_decoded.emplace(uid, object);
    return object;
}

// --- Failures ------------------------------------------------------------------------------------

void KeyedUnarchiver::record(int64_t code, const std::string& reason) {
    Log("KeyedUnarchiver: %@", reason);
    if (m_error)
        return;
    if (code == CoderReadCorruptError)
        m_error = corruptError(reason);
    else
        m_error = Error::make(CocoaErrorDomain, code, {{LocalizedDescriptionKey, reason}});
}

void KeyedUnarchiver::corrupt(const std::string& reason) {
    record(CoderReadCorruptError, "the archive is damaged: " + reason);
}

void KeyedUnarchiver::refuse(std::string_view key, const std::string& what, const std::string& why) {
    record(CoderReadCorruptError, format("the value for the key '%@' (%@) was refused: %@.", key, what, why));
}

} // namespace ns
