#pragma once

#include "platform/foundation/KeyedArchiver.hpp"
#include "platform/foundation/KeyedUnarchiver.hpp"

#include <optional>
#include <string>

namespace fixtures {

using namespace ns;

// Makes a CodingClass whose factory makes a T and lets it decode itself.
template <class T>
CodingClass codingClassFor(std::string name, std::vector<std::string> superclasses, bool secure) {
    return {std::move(name), std::move(superclasses), secure, [](KeyedUnarchiver& coder) -> Ref<Object> {
                auto object = create<T>();
                object->decode(coder);
                return object;
            }};
}

// An archivable object with a field of each kind the coder handles.
class Person : public Object, public Coding {
public:
    std::string name;
    int64_t age = 0;
    std::optional<std::string> nickname; // not written when absent
    Value buddy;                         // any object; decoded as a Person
    Array tags;                          // values and Persons
    Ref<Data> photo;
    int64_t dollar = 0; // under the key "$weird"

    static const CodingClass& codingClass() {
        static const CodingClass cls = codingClassFor<Person>("Person", {}, true);
        return cls;
    }
    const CodingClass& classForCoder() const override { return codingClass(); }

    void encodeWithCoder(KeyedArchiver& coder) const override {
        coder.encodeObject(name, "name");
        coder.encodeInteger(age, "age");
        if (nickname)
            coder.encodeObject(*nickname, "nickname");
        coder.encodeObject(buddy, "buddy");
        coder.encodeObject(tags, "tags");
        coder.encodeObject(photo, "photo");
        coder.encodeInteger(dollar, "$weird");
    }
    void decode(KeyedUnarchiver& coder) {
        name = coder.decodeObjectForKey("name").stringValue();
        age = coder.decodeIntegerForKey("age");
        if (coder.containsValueForKey("nickname"))
            nickname = coder.decodeObjectForKey("nickname").stringValue();
        buddy = coder.decodeObjectOfClass<Person>("buddy");
        tags = coder.decodeObjectOfClasses({classOf<Person>()}, "tags").array();
        photo = coder.decodeObjectForKey("photo").objectAs<Data>();
        dollar = coder.decodeIntegerForKey("$weird");
    }
};

// Archives its base's keys first, as a subclass does.
class Employee : public Person {
public:
    std::string company;

    static const CodingClass& codingClass() {
        static const CodingClass cls = codingClassFor<Employee>("Employee", {"Person"}, true);
        return cls;
    }
    const CodingClass& classForCoder() const override { return codingClass(); }
    void encodeWithCoder(KeyedArchiver& coder) const override {
        Person::encodeWithCoder(coder);
        coder.encodeObject(company, "company");
    }
    void decode(KeyedUnarchiver& coder) {
        Person::decode(coder);
        company = coder.decodeObjectForKey("company").stringValue();
    }
};

// Archivable, but not safe to read from untrusted data.
class Pet : public Object, public Coding {
public:
    std::string species;

    static const CodingClass& codingClass() {
        static const CodingClass cls = codingClassFor<Pet>("Pet", {}, false);
        return cls;
    }
    const CodingClass& classForCoder() const override { return codingClass(); }
    void encodeWithCoder(KeyedArchiver& coder) const override { coder.encodeObject(species, "species"); }
    void decode(KeyedUnarchiver& coder) { species = coder.decodeObjectForKey("species").stringValue(); }
};

inline Ref<Person> person(std::string name) {
    auto p = create<Person>();
    p->name = std::move(name);
    return p;
}

} // namespace fixtures
