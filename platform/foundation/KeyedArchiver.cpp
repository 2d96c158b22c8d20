#include "platform/foundation/KeyedArchiver.hpp"

#include "platform/foundation/Log.hpp"

namespace ns {

namespace {

std::string escapedKey(std::string_view key) {
    // Keys of the archive's own ("$class") begin with "$"; an object's keys are kept apart.
    if (!key.empty() && key.front() == '$')
        return "$" + std::string(key);
    return std::string(key);
}

} // namespace

KeyedArchiver::KeyedArchiver(bool requiresSecureCoding)
    : m_requiresSecureCoding(requiresSecureCoding), m_top(plist_new_dict()) {
    m_objects.emplace_back(plist_new_string("$null"));
}

KeyedArchiver::~KeyedArchiver() = default;

Ref<Data> KeyedArchiver::archivedDataWithRootObject(const Value& root, bool requiringSecureCoding,
                                                    Ref<Error>* error) {
    auto archiver = make(requiringSecureCoding);
    archiver->encodeObject(root, "root");
    Ref<Data> data = archiver->encodedData();
    if (archiver->error()) {
        if (error)
            *error = archiver->error();
        return nullptr;
    }
    return data;
}

void KeyedArchiver::fail(std::string reason) {
    Log("KeyedArchiver: %@", reason);
    if (!m_error)
        m_error = Error::make(CocoaErrorDomain, CoderInvalidValueError, {{LocalizedDescriptionKey, reason}});
}

void KeyedArchiver::failWithError(const Ref<Error>& error) {
    if (!error)
        return;
    Log("KeyedArchiver: %@", error->localizedDescription());
    if (!m_error)
        m_error = error;
}

uint64_t KeyedArchiver::append(plist_t node) {
    m_objects.emplace_back(node);
    return m_objects.size() - 1;
}

void KeyedArchiver::setInFrame(std::string_view key, plist_t node) {
    if (m_finished) {
        plist_free(node);
        Log("KeyedArchiver: encoding %@ after finishEncoding is ignored.", key);
        return;
    }
    plist_t frame = m_frames.empty() ? m_top.get() : m_frames.back().get();
    plist_dict_set_item(frame, escapedKey(key).c_str(), node);
}

void KeyedArchiver::encodeObject(const Value& value, std::string_view key) {
    if (m_finished) {
        Log("KeyedArchiver: encoding %@ after finishEncoding is ignored.", key);
        return;
    }
    setInFrame(key, plist_new_uid(encodeValue(value)));
}

void KeyedArchiver::encodeBool(bool value, std::string_view key) {
    setInFrame(key, plist_new_bool(value ? 1 : 0));
}

void KeyedArchiver::encodeInteger(int64_t value, std::string_view key) {
    setInFrame(key, plist_new_uint(static_cast<uint64_t>(value)));
}

void KeyedArchiver::encodeDouble(double value, std::string_view key) {
    setInFrame(key, plist_new_real(value));
}

void KeyedArchiver::encodeFloat(float value, std::string_view key) {
    setInFrame(key, plist_new_real(static_cast<double>(value)));
}

uint64_t KeyedArchiver::encodeValue(const Value& value) {
    switch (value.kind()) {
    case Value::Kind::Nil:
        return 0;
    case Value::Kind::Null: {
        if (!m_nullUid) {
            plist_t entry = plist_new_dict();
            plist_dict_set_item(entry, "$class", plist_new_uid(classUid("NSNull", {})));
            m_nullUid = append(entry);
        }
        return m_nullUid;
    }
    case Value::Kind::Bool:
        return append(plist_new_bool(value.boolValue() ? 1 : 0));
    case Value::Kind::Integer:
        return append(plist_new_uint(static_cast<uint64_t>(value.integerValue())));
    case Value::Kind::Double:
        return append(plist_new_real(value.doubleValue()));
    case Value::Kind::String: {
        const std::string& text = *value.string();
        if (auto found = m_stringUids.find(text); found != m_stringUids.end())
            return found->second;
        uint64_t uid = append(plist_new_string(text.c_str()));
        m_stringUids.emplace(text, uid);
        return uid;
    }
    case Value::Kind::Array:
        return encodeArray(value.array());
    case Value::Kind::Dictionary:
        return encodeDictionary(value.dictionary());
    case Value::Kind::Object:
        return encodeCodingObject(value.object());
    default:
        fail(format("the value %@ cannot be archived.", value));
        return 0;
    }
}

uint64_t KeyedArchiver::encodeCodingObject(const Ref<Object>& object) {
    if (auto found = m_objectUids.find(object.get()); found != m_objectUids.end())
        return found->second;
    if (auto data = std::dynamic_pointer_cast<Data>(object)) {
        uint64_t uid =
            append(plist_new_data(reinterpret_cast<const char*>(data->bytes().data()), data->length()));
        m_objectUids.emplace(object.get(), uid);
        m_retained.push_back(object);
        return uid;
    }
    auto coding = dynamic_cast<const Coding*>(object.get());
    if (!coding) {
        fail(format("the object %@ of class %@ cannot be archived: it does not implement coding.", object,
                    object->className()));
        return 0;
    }
    const CodingClass& cls = coding->classForCoder();
    if (m_requiresSecureCoding && !cls.supportsSecureCoding) {
        fail(format("the class %@ does not support secure coding, which this archiver requires.", cls.name));
        return 0;
    }
    Coding::registerClass(cls);

    // Reserve the slot first, so that the object's own graph can refer back to it.
    uint64_t uid = append(nullptr);
    m_objectUids.emplace(object.get(), uid);
    m_retained.push_back(object);
    m_frames.emplace_back(plist_new_dict());
    coding->encodeWithCoder(*this);
    PlistNode entry = std::move(m_frames.back());
    m_frames.pop_back();
    plist_dict_set_item(entry.get(), "$class", plist_new_uid(classUid(cls.name, cls.superclasses)));
    m_objects[uid] = std::move(entry);
    return uid;
}

uint64_t KeyedArchiver::encodeArray(const Array& array) {
    uint64_t uid = append(nullptr);
    PlistNode uids(plist_new_array());
    for (const Value& element : array)
        plist_array_append_item(uids.get(), plist_new_uid(encodeValue(element)));
    PlistNode entry(plist_new_dict());
    plist_dict_set_item(entry.get(), "NS.objects", uids.release());
    plist_dict_set_item(entry.get(), "$class", plist_new_uid(classUid("NSArray", {})));
    m_objects[uid] = std::move(entry);
    return uid;
}

uint64_t KeyedArchiver::encodeDictionary(const Dictionary& dictionary) {
    uint64_t uid = append(nullptr);
    PlistNode keys(plist_new_array());
    PlistNode objects(plist_new_array());
    for (const auto& [key, element] : dictionary) {
        plist_array_append_item(keys.get(), plist_new_uid(encodeValue(key)));
        plist_array_append_item(objects.get(), plist_new_uid(encodeValue(element)));
    }
    PlistNode entry(plist_new_dict());
    plist_dict_set_item(entry.get(), "NS.keys", keys.release());
    plist_dict_set_item(entry.get(), "NS.objects", objects.release());
    plist_dict_set_item(entry.get(), "$class", plist_new_uid(classUid("NSDictionary", {})));
    m_objects[uid] = std::move(entry);
    return uid;
}

uint64_t KeyedArchiver::classUid(const std::string& name, const std::vector<std::string>& superclasses) {
    if (auto found = m_classUids.find(name); found != m_classUids.end())
        return found->second;
    PlistNode entry(plist_new_dict());
    plist_dict_set_item(entry.get(), "$classname", plist_new_string(name.c_str()));
    PlistNode classes(plist_new_array());
    plist_array_append_item(classes.get(), plist_new_string(name.c_str()));
    for (const std::string& superclass : superclasses)
        plist_array_append_item(classes.get(), plist_new_string(superclass.c_str()));
    plist_array_append_item(classes.get(), plist_new_string("NSObject"));
    plist_dict_set_item(entry.get(), "$classes", classes.release());
    uint64_t uid = append(entry.release());
    m_classUids.emplace(name, uid);
    return uid;
}

void KeyedArchiver::finishEncoding() {
    if (m_finished)
        return;
    m_finished = true;
    PlistNode archive(plist_new_dict());
    plist_dict_set_item(archive.get(), "$archiver", plist_new_string("NSKeyedArchiver"));
    plist_dict_set_item(archive.get(), "$version", plist_new_uint(100000));
    plist_dict_set_item(archive.get(), "$top", m_top.release());
    PlistNode objects(plist_new_array());
    for (PlistNode& object : m_objects)
        plist_array_append_item(objects.get(), object ? object.release() : plist_new_string("$null"));
    m_objects.clear();
    plist_dict_set_item(archive.get(), "$objects", objects.release());
    m_data = Data::make(archive.toBinary());
    m_retained.clear();
}

Ref<Data> KeyedArchiver::encodedData() {
    finishEncoding();
    return m_data;
}

} // namespace ns
