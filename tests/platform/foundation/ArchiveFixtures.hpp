#pragma once

#include "platform/foundation/KeyedArchiver.hpp"
#include "platform/foundation/KeyedUnarchiver.hpp"

#include <optional>
#include <string>

namespace fixtures {

using namespace ns;

// An archivable object with a field of every kind the coder handles.
class Person : public Object, public Coding {
public:
    std::string name;
    int64_t age = 0;
    double height = 0;
    float score = 0;
    bool active = false;
    std::optional<std::string> nickname; // optional: not written when absent
    Value buddy;                         // any object; decoded as a Person
    Array tags;
    Dictionary extra;
    Ref<Data> photo;
    int64_t dollar = 0; // stored under "$weird"

    static const CodingClass& codingClass() {
        static const CodingClass cls{"Person", {}, true, [](KeyedUnarchiver& coder) -> Ref<Object> {
                                         auto person = create<Person>();
                                         person->decode(coder);
                                         return person;
                                     }};
        return cls;
    }
    const CodingClass& classForCoder() const override { return codingClass(); }

    void encodeWithCoder(KeyedArchiver& coder) const override {
        coder.encodeObject(name, "name");
        coder.encodeInteger(age, "age");
        coder.encodeDouble(height, "height");
        coder.encodeFloat(score, "score");
        coder.encodeBool(active, "active");
        if (nickname)
            coder.encodeObject(*nickname, "nickname");
        coder.encodeObject(buddy, "buddy");
        coder.encodeObject(tags, "tags");
        coder.encodeObject(extra, "extra");
        coder.encodeObject(photo, "photo");
        coder.encodeInteger(dollar, "$weird");
    }

    void decode(KeyedUnarchiver& coder) {
        name = coder.decodeObjectForKey("name").stringValue();
        age = coder.decodeIntegerForKey("age");
        height = coder.decodeDoubleForKey("height");
        score = coder.decodeFloatForKey("score");
        active = coder.decodeBoolForKey("active");
        if (coder.containsValueForKey("nickname"))
            nickname = coder.decodeObjectForKey("nickname").stringValue();
        buddy = coder.decodeObjectOfClass<Person>("buddy");
        tags = coder.decodeObjectOfClasses({classOf<Person>()}, "tags").array();
        extra = coder.decodeObjectForKey("extra").dictionary();
        photo = coder.decodeObjectForKey("photo").objectAs<Data>();
        dollar = coder.decodeIntegerForKey("$weird");
    }
};

// Archived after its base's keys, as a subclass does.
class Employee : public Person {
public:
    std::string company;

    static const CodingClass& codingClass() {
        static const CodingClass cls{"Employee", {"Person"}, true, [](KeyedUnarchiver& coder) -> Ref<Object> {
                                         auto employee = create<Employee>();
                                         employee->decode(coder);
                                         employee->company =
                                             coder.decodeObjectForKey("company").stringValue();
                                         return employee;
                                     }};
        return cls;
    }
    const CodingClass& classForCoder() const override { return codingClass(); }

    void encodeWithCoder(KeyedArchiver& coder) const override {
        Person::encodeWithCoder(coder);
        coder.encodeObject(company, "company");
    }
};

// Archivable, but not safe to read from untrusted data.
class Pet : public Object, public Coding {
public:
    std::string species;

    static const CodingClass& codingClass() {
        static const CodingClass cls{"Pet", {}, false, [](KeyedUnarchiver& coder) -> Ref<Object> {
                                         auto pet = create<Pet>();
                                         pet->species = coder.decodeObjectForKey("species").stringValue();
                                         return pet;
                                     }};
        return cls;
    }
    const CodingClass& classForCoder() const override { return codingClass(); }
    void encodeWithCoder(KeyedArchiver& coder) const override { coder.encodeObject(species, "species"); }
};

inline Ref<Person> person(std::string name) {
    auto p = create<Person>();
    p->name = std::move(name);
    return p;
}

} // namespace fixtures
