#include "ArchiveFixtures.hpp"

#include "platform/foundation/Log.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

using namespace ns;
using namespace fixtures;

namespace {

// An archive made by hand: `objects` follow "$null" (the first is UID 1); the top is {"root": rootUid}.
Ref<Data> craft(std::vector<plist_t> objects, uint64_t rootUid = 1,
                const char* archiver = "NSKeyedArchiver") {
    PlistNode archive(plist_new_dict());
    plist_dict_set_item(archive.get(), "$archiver", plist_new_string(archiver));
    plist_t top = plist_new_dict();
    plist_dict_set_item(top, "root", plist_new_uid(rootUid));
    plist_dict_set_item(archive.get(), "$top", top);
    plist_t list = plist_new_array();
    plist_array_append_item(list, plist_new_string("$null"));
    for (plist_t object : objects)
        plist_array_append_item(list, object);
    plist_dict_set_item(archive.get(), "$objects", list);
    return Data::make(archive.toBinary());
}

plist_t classEntry(const char* name) {
    plist_t entry = plist_new_dict();
    plist_dict_set_item(entry, "$classname", plist_new_string(name));
    return entry;
}

plist_t uids(std::vector<uint64_t> values) {
    plist_t array = plist_new_array();
    for (uint64_t value : values)
        plist_array_append_item(array, plist_new_uid(value));
    return array;
}

plist_t entry(uint64_t classUid, std::initializer_list<std::pair<const char*, plist_t>> members = {}) {
    plist_t dict = plist_new_dict();
    plist_dict_set_item(dict, "$class", plist_new_uid(classUid));
    for (auto& [key, value] : members)
        plist_dict_set_item(dict, key, value);
    return dict;
}

void expectRefused(const Ref<Data>& data, const char* why) {
    Ref<Error> error;
    Value root = KeyedUnarchiver::unarchiveObjectWithData(*data, &error);
    EXPECT_TRUE(root.isNil()) << why << ": " << root.description();
    EXPECT_TRUE(error) << why;
}

} // namespace

TEST(KeyedUnarchiver, RoundTripsAnObjectGraph) {
    auto ada = create<Employee>();
    ada->name = "Ada";
    ada->age = -36;
    ada->company = "Analytical";
    ada->tags = {Value("x"), Value(2.5), Value(true), Value(Null{}),
                 Value(Dictionary{{"$dollar", "kept"}, {"list", Array{Value("inner")}}})};
    ada->photo = Data::fromString("PNG...");
    ada->dollar = 99;
    auto babbage = person("Babbage");
    babbage->nickname = "Charles";
    ada->buddy = babbage;

    Ref<Error> error;
    auto back = KeyedUnarchiver::unarchivedObjectOfClass<Employee>(
        *KeyedArchiver::archivedDataWithRootObject(ada, true), &error);
    ASSERT_TRUE(back);
    EXPECT_FALSE(error);
    EXPECT_EQ(back->name, "Ada");
    EXPECT_EQ(back->age, -36);
    EXPECT_EQ(back->company, "Analytical");
    ASSERT_EQ(back->tags.size(), ada->tags.size());
    EXPECT_EQ(Value(back->tags), Value(ada->tags));
    EXPECT_EQ(back->tags[3].kind(), Value::Kind::Null);
    ASSERT_TRUE(back->photo);
    EXPECT_TRUE(back->photo->isEqual(*ada->photo));
    EXPECT_EQ(back->dollar, 99);
    EXPECT_FALSE(back->nickname) << "a key never written decodes to its default";
    auto buddy = back->buddy.objectAs<Person>();
    ASSERT_TRUE(buddy);
    EXPECT_EQ(buddy->nickname, "Charles");
}

TEST(KeyedUnarchiver, ASharedObjectComesBackAsOneObject) {
    auto shared = person("Shared");
    auto owner = person("Owner");
    owner->buddy = shared;
    owner->tags = {Value(shared), Value(shared)};
    auto back = KeyedUnarchiver::unarchivedObjectOfClass<Person>(
        *KeyedArchiver::archivedDataWithRootObject(owner, true));
    ASSERT_TRUE(back);
    auto buddy = back->buddy.objectAs<Person>();
    ASSERT_TRUE(buddy);
    ASSERT_EQ(back->tags.size(), 2u);
    EXPECT_EQ(back->tags[0].object(), buddy);
    EXPECT_EQ(back->tags[1].object(), buddy);
}

TEST(KeyedUnarchiver, ScalarsDefaultWhenAbsentAndConvertBetweenKinds) {
    auto archiver = KeyedArchiver::make();
    archiver->encodeBool(true, "flag");
    archiver->encodeInteger(-5, "int");
    archiver->encodeFloat(2.75f, "float");
    archiver->encodeObject("text", "string");
    auto unarchiver = KeyedUnarchiver::make(*archiver->encodedData());
    ASSERT_TRUE(unarchiver);
    EXPECT_FALSE(unarchiver->containsValueForKey("missing"));
    EXPECT_FALSE(unarchiver->decodeBoolForKey("missing"));
    EXPECT_TRUE(unarchiver->decodeObjectForKey("missing").isNil());
    EXPECT_EQ(unarchiver->decodeIntegerForKey("flag"), 1);
    EXPECT_EQ(unarchiver->decodeDoubleForKey("int"), -5.0);
    EXPECT_FLOAT_EQ(unarchiver->decodeFloatForKey("float"), 2.75f);
    EXPECT_EQ(unarchiver->decodeIntegerForKey("float"), 2);
    EXPECT_EQ(unarchiver->decodeIntegerForKey("string"), 0);
    EXPECT_FALSE(unarchiver->error());
    LogCapture log;
    EXPECT_TRUE(unarchiver->decodeObjectForKey("int").isNil());
    EXPECT_TRUE(unarchiver->error());
}

TEST(KeyedUnarchiver, SecureCodingAllowsOnlyNamedClassesThatSupportIt) {
    Ref<Data> data = KeyedArchiver::archivedDataWithRootObject(create<Employee>(), true);
    Ref<Error> error;
    EXPECT_TRUE(KeyedUnarchiver::unarchivedObjectOfClass<Person>(*data, &error))
        << "a subclass of an allowed class";
    EXPECT_TRUE(
        KeyedUnarchiver::unarchivedObjectOfClass(classOf<Person>(), *data, &error).objectAs<Employee>());
    EXPECT_FALSE(error);

    LogCapture log;
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Pet>(*data, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), CoderReadCorruptError);
    EXPECT_TRUE(log.contains("Employee"));

    // decodeObjectForKey names no classes, so under secure coding no object class is allowed.
    auto unarchiver = KeyedUnarchiver::make(*data);
    EXPECT_TRUE(unarchiver->decodeObjectForKey("root").isNil());
    EXPECT_TRUE(unarchiver->error());

    auto pet = create<Pet>();
    pet->species = "cat";
    data = KeyedArchiver::archivedDataWithRootObject(pet, false);
    error.reset();
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Pet>(*data, &error));
    EXPECT_TRUE(error);
    EXPECT_TRUE(log.contains("does not support secure coding"));
    error.reset();
    auto back = KeyedUnarchiver::unarchiveObjectWithData(*data, &error).objectAs<Pet>();
    ASSERT_TRUE(back);
    EXPECT_EQ(back->species, "cat");
    EXPECT_FALSE(error);

    // A refused nested object is nil, and fails the unarchiving as a whole.
    auto owner = person("Owner");
    owner->buddy = pet; // decoded as a Person
    data = KeyedArchiver::archivedDataWithRootObject(owner, false);
    unarchiver = KeyedUnarchiver::make(*data);
    auto partial = unarchiver->decodeObjectOfClass<Person>("root");
    ASSERT_TRUE(partial);
    EXPECT_TRUE(partial->buddy.isNil());
    EXPECT_TRUE(unarchiver->error());
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Person>(*data, &error));
}

TEST(KeyedUnarchiver, DamagedDataGivesNilAndAnError) {
    LogCapture log;
    Ref<Data> good = KeyedArchiver::archivedDataWithRootObject(person("Ada"), true);
    PlistNode plain(plist_new_dict());
    for (const auto& data :
         {Data::make(), Data::fromString("garbage garbage"),
          Data::make(good->bytes().data(), good->length() - 20), Data::make(plain.toBinary()),
          craft({plist_new_string("x")}, 1, "SomethingElse")}) {
        Ref<Error> error;
        EXPECT_TRUE(KeyedUnarchiver::unarchivedObjectOfClass(classOf<Person>(), *data, &error).isNil());
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code(), CoderReadCorruptError);
    }
    std::mt19937 random(1234); // random damage: anything but a crash will do
    for (int round = 0; round < 1000; ++round) {
        std::vector<uint8_t> bytes = good->bytes();
        bytes[8 + random() % (bytes.size() - 8)] = static_cast<uint8_t>(random());
        KeyedUnarchiver::unarchivedObjectOfClass<Person>(*Data::make(std::move(bytes)));
    }
    expectRefused(craft({plist_new_string("x")}, 7), "reference past the end");
    expectRefused(craft({entry(2, {{"NS.objects", uids({1})}}), classEntry("NSArray")}),
                  "array inside itself");
    expectRefused(craft({plist_new_dict()}), "object without $class");
    expectRefused(craft({entry(2), plist_new_string("not a class entry")}), "class entry without a name");
    expectRefused(craft({entry(2), classEntry("NoSuchClass")}), "unknown class");
    expectRefused(craft({entry(2, {{"NS.keys", uids({3})}, {"NS.objects", uids({3, 3})}}),
                         classEntry("NSDictionary"), plist_new_string("k")}),
                  "keys and objects that do not pair");
    expectRefused(craft({entry(2, {{"NS.keys", uids({4})}, {"NS.objects", uids({3})}}),
                         classEntry("NSDictionary"), plist_new_string("v"), plist_new_uint(5)}),
                  "a number for a dictionary key");
    expectRefused(craft({plist_new_date(0, 0)}), "an entry of a type nothing is written as");
    Ref<Error> error;
    EXPECT_TRUE(KeyedUnarchiver::unarchiveObjectWithData(*craft({}, 0), &error).isNil());
    EXPECT_FALSE(error) << "a nil root is not a failure";
}

TEST(KeyedUnarchiver, SharedContainersAreWalkedOnceAndDeepNestingIsRefused) {
    LogCapture log;
    // Forty arrays, each holding the next one twice: 2^40 paths for a walk that did not share.
    constexpr uint64_t Levels = 40;
    std::vector<plist_t> objects{classEntry("NSArray")};
    for (uint64_t level = 0; level < Levels; ++level)
        objects.push_back(
            entry(1, {{"NS.objects", level + 1 < Levels ? uids({3 + level, 3 + level}) : uids({})}}));
    auto start = std::chrono::steady_clock::now();
    Value root = KeyedUnarchiver::unarchiveObjectWithData(*craft(objects, 2));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    ASSERT_EQ(root.array().size(), 2u);

    constexpr uint64_t Chain = 1000; // each array inside the next
    objects = {classEntry("NSArray")};
    for (uint64_t level = 0; level < Chain; ++level)
        objects.push_back(entry(1, {{"NS.objects", level + 1 < Chain ? uids({3 + level}) : uids({})}}));
    log.clear();
    expectRefused(craft(objects, 2), "nesting deeper than any real archive");
    EXPECT_LT(log.messages().size(), 5u) << "one report, not one per level";
}
