#include "ArchiveFixtures.hpp"

#include "platform/foundation/Log.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

using namespace ns;
using namespace fixtures;

namespace {

// Builds an archive by hand: `objects` become $objects after the "$null" entry (so the first one
// is UID 1), and the top holds {"root": UID rootUid}.
Ref<Data> craft(std::vector<plist_t> objects, uint64_t rootUid = 1,
                const char* archiver = "NSKeyedArchiver") {
    PlistNode archive(plist_new_dict());
    plist_dict_set_item(archive.get(), "$archiver", plist_new_string(archiver));
    plist_dict_set_item(archive.get(), "$version", plist_new_uint(100000));
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
    plist_t classes = plist_new_array();
    plist_array_append_item(classes, plist_new_string(name));
    plist_array_append_item(classes, plist_new_string("NSObject"));
    plist_dict_set_item(entry, "$classes", classes);
    return entry;
}

plist_t uids(std::initializer_list<uint64_t> values) {
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

// Unarchives without secure coding and expects nil with an error.
void expectRefused(const Ref<Data>& data, const char* why) {
    Ref<Error> error;
    Value root = KeyedUnarchiver::unarchiveObjectWithData(*data, &error);
    EXPECT_TRUE(root.isNil()) << why << ": " << root.description();
    ASSERT_TRUE(error) << why;
    EXPECT_EQ(error->domain(), CocoaErrorDomain);
}

} // namespace

TEST(KeyedUnarchiver, RoundTripsAnObjectGraph) {
    auto ada = create<Employee>();
    ada->name = "Ada";
    ada->age = -36;
    ada->height = 1.65;
    ada->score = 0.1f;
    ada->active = true;
    ada->company = "Analytical";
    ada->tags = {Value("x"), Value(7), Value(true), Value(Null{}), Value(Array{Value("inner")})};
    ada->extra = {{"$dollar", "kept as is"}, {"n", 2.5}};
    ada->photo = Data::fromString("PNG...");
    ada->dollar = 99;
    auto babbage = person("Babbage");
    babbage->nickname = "Charles";
    ada->buddy = babbage;

    Ref<Error> error;
    Ref<Data> data = KeyedArchiver::archivedDataWithRootObject(ada, true, &error);
    ASSERT_TRUE(data);
    Ref<Employee> back = KeyedUnarchiver::unarchivedObjectOfClass<Employee>(*data, &error);
    ASSERT_TRUE(back) << (error ? error->description() : "");
    EXPECT_FALSE(error);
    EXPECT_NE(back, ada);
    EXPECT_EQ(back->name, "Ada");
    EXPECT_EQ(back->age, -36);
    EXPECT_DOUBLE_EQ(back->height, 1.65);
    EXPECT_FLOAT_EQ(back->score, 0.1f);
    EXPECT_TRUE(back->active);
    EXPECT_EQ(back->company, "Analytical");
    ASSERT_EQ(back->tags.size(), ada->tags.size());
    EXPECT_EQ(Value(back->tags), Value(ada->tags));
    EXPECT_EQ(back->tags[3].kind(), Value::Kind::Null);
    EXPECT_EQ(Value(back->extra), Value(ada->extra));
    ASSERT_TRUE(back->photo);
    EXPECT_TRUE(back->photo->isEqual(*ada->photo));
    EXPECT_EQ(back->dollar, 99);

    // The optional key was not written for Ada: it decodes to its default.
    EXPECT_FALSE(back->nickname);
    auto buddy = back->buddy.objectAs<Person>();
    ASSERT_TRUE(buddy);
    EXPECT_EQ(buddy->name, "Babbage");
    EXPECT_EQ(buddy->nickname, "Charles");
    EXPECT_TRUE(buddy->buddy.isNil());
}

TEST(KeyedUnarchiver, ASharedObjectComesBackAsOneObject) {
    auto shared = person("Shared");
    auto owner = person("Owner");
    owner->buddy = shared;
    owner->tags = {Value(shared), Value(shared)};
    auto archiver = KeyedArchiver::make();
    archiver->encodeObject(owner, "root");
    archiver->encodeObject(shared, "again");
    auto unarchiver = KeyedUnarchiver::make(*archiver->encodedData());
    ASSERT_TRUE(unarchiver);
    auto back = unarchiver->decodeObjectOfClass<Person>("root");
    ASSERT_TRUE(back);
    auto buddy = back->buddy.objectAs<Person>();
    ASSERT_TRUE(buddy);
    ASSERT_EQ(back->tags.size(), 2u);
    EXPECT_EQ(back->tags[0].object(), buddy);
    EXPECT_EQ(back->tags[1].object(), buddy);
    EXPECT_EQ(unarchiver->decodeObjectOfClass<Person>("again"), buddy);
}

TEST(KeyedUnarchiver, ScalarKeysDefaultWhenAbsentAndConvertBetweenKinds) {
    auto archiver = KeyedArchiver::make();
    archiver->encodeBool(true, "flag");
    archiver->encodeInteger(-5, "int");
    archiver->encodeDouble(2.75, "double");
    archiver->encodeObject("text", "string");
    auto unarchiver = KeyedUnarchiver::make(*archiver->encodedData());
    ASSERT_TRUE(unarchiver);

    EXPECT_FALSE(unarchiver->containsValueForKey("missing"));
    EXPECT_FALSE(unarchiver->decodeBoolForKey("missing"));
    EXPECT_EQ(unarchiver->decodeIntegerForKey("missing"), 0);
    EXPECT_EQ(unarchiver->decodeDoubleForKey("missing"), 0.0);
    EXPECT_TRUE(unarchiver->decodeObjectForKey("missing").isNil());

    EXPECT_EQ(unarchiver->decodeIntegerForKey("flag"), 1);
    EXPECT_EQ(unarchiver->decodeDoubleForKey("int"), -5.0);
    EXPECT_TRUE(unarchiver->decodeBoolForKey("int"));
    EXPECT_EQ(unarchiver->decodeIntegerForKey("double"), 2);
    EXPECT_FLOAT_EQ(unarchiver->decodeFloatForKey("double"), 2.75f);
    // An object where a scalar is asked for, and the other way round.
    EXPECT_EQ(unarchiver->decodeIntegerForKey("string"), 0);
    EXPECT_FALSE(unarchiver->error());
    LogCapture log;
    EXPECT_TRUE(unarchiver->decodeObjectForKey("int").isNil());
    EXPECT_TRUE(unarchiver->error());
}

TEST(KeyedUnarchiver, SecureCodingRefusesClassesNotAllowed) {
    auto ada = create<Employee>();
    ada->name = "Ada";
    Ref<Data> data = KeyedArchiver::archivedDataWithRootObject(ada, true);
    ASSERT_TRUE(data);

    // A subclass of an allowed class is allowed.
    Ref<Error> error;
    EXPECT_TRUE(KeyedUnarchiver::unarchivedObjectOfClass<Person>(*data, &error));
    EXPECT_TRUE(
        KeyedUnarchiver::unarchivedObjectOfClass(classOf<Person>(), *data, &error).objectAs<Employee>());
    EXPECT_FALSE(error);

    LogCapture log;
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Pet>(*data, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), CoderReadCorruptError);
    EXPECT_TRUE(log.contains("Employee"));

    // decodeObjectForKey names no classes, so no object class is allowed under secure coding.
    auto unarchiver = KeyedUnarchiver::make(*data);
    ASSERT_TRUE(unarchiver);
    EXPECT_TRUE(unarchiver->decodeObjectForKey("root").isNil());
    EXPECT_TRUE(unarchiver->error());
    unarchiver = KeyedUnarchiver::make(*data);
    unarchiver->setRequiresSecureCoding(false);
    EXPECT_TRUE(unarchiver->decodeObjectForKey("root").objectAs<Employee>());
    EXPECT_FALSE(unarchiver->error());
}

TEST(KeyedUnarchiver, SecureCodingRefusesClassesThatDoNotSupportIt) {
    auto pet = create<Pet>();
    pet->species = "cat";
    Ref<Data> data = KeyedArchiver::archivedDataWithRootObject(pet, false);
    ASSERT_TRUE(data);
    LogCapture log;
    Ref<Error> error;
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Pet>(*data, &error));
    EXPECT_TRUE(error);
    EXPECT_TRUE(log.contains("secure coding"));

    error.reset();
    auto back = KeyedUnarchiver::unarchiveObjectWithData(*data, &error).objectAs<Pet>();
    ASSERT_TRUE(back);
    EXPECT_EQ(back->species, "cat");
    EXPECT_FALSE(error);
}

TEST(KeyedUnarchiver, ARefusedNestedObjectIsNilAndFailsTheWholeUnarchiving) {
    auto owner = person("Owner");
    owner->buddy = create<Pet>(); // decoded as a Person: wrong class
    owner->age = 40;
    Ref<Data> data = KeyedArchiver::archivedDataWithRootObject(owner, false);
    ASSERT_TRUE(data);
    LogCapture log;

    auto unarchiver = KeyedUnarchiver::make(*data);
    auto back = unarchiver->decodeObjectOfClass<Person>("root");
    ASSERT_TRUE(back);
    EXPECT_EQ(back->age, 40);
    EXPECT_TRUE(back->buddy.isNil());
    EXPECT_TRUE(unarchiver->error());

    Ref<Error> error;
    EXPECT_FALSE(KeyedUnarchiver::unarchivedObjectOfClass<Person>(*data, &error));
    EXPECT_TRUE(error);
}

TEST(KeyedUnarchiver, DataThatIsNotAnArchiveGivesNilAndAnError) {
    LogCapture log;
    Ref<Data> good = KeyedArchiver::archivedDataWithRootObject(person("Ada"), true);
    PlistNode plainPlist(plist_new_dict());
    plist_dict_set_item(plainPlist.get(), "root", plist_new_string("x"));
    std::vector<Ref<Data>> bad{Data::make(), Data::fromString("garbage garbage garbage"),
                               Data::make(good->bytes().data(), good->length() - 20),
                               Data::make(plainPlist.toBinary()),
                               craft({plist_new_string("x")}, 1, "SomethingElse")};
    for (const auto& data : bad) {
        Ref<Error> error;
        EXPECT_FALSE(KeyedUnarchiver::make(*data, &error));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code(), CoderReadCorruptError);
        error.reset();
        EXPECT_TRUE(KeyedUnarchiver::unarchivedObjectOfClass(classOf<Person>(), *data, &error).isNil());
        EXPECT_TRUE(error);
    }
}

TEST(KeyedUnarchiver, DamagedObjectGraphsGiveNilAndAnError) {
    LogCapture log;
    expectRefused(craft({plist_new_string("x")}, 7), "reference past the end");
    expectRefused(craft({entry(2, {{"NS.objects", uids({1})}}), classEntry("NSArray")}),
                  "array containing itself");
    expectRefused(craft({entry(2, {{"NS.objects", uids({3})}}), classEntry("NSArray"),
                         entry(2, {{"NS.objects", uids({1})}})}),
                  "arrays containing each other");
    expectRefused(craft({[] {
                      plist_t dict = plist_new_dict();
                      plist_dict_set_item(dict, "name", plist_new_string("no class"));
                      return dict;
                  }()}),
                  "object without $class");
    expectRefused(craft({entry(2), plist_new_string("not a class entry")}), "class entry without a name");
    expectRefused(craft({entry(2), classEntry("NoSuchClass")}), "unknown class");
    expectRefused(craft({entry(2, {{"NS.keys", uids({3})}, {"NS.objects", uids({3, 3})}}),
                         classEntry("NSDictionary"), plist_new_string("k")}),
                  "dictionary keys and objects that do not pair");
    expectRefused(craft({entry(2, {{"NS.keys", uids({4})}, {"NS.objects", uids({3})}}),
                         classEntry("NSDictionary"), plist_new_string("v"), plist_new_uint(5)}),
                  "dictionary with a number for a key");
    expectRefused(craft({entry(2, {{"NS.objects", plist_new_string("not uids")}}), classEntry("NSArray")}),
                  "array without references");
    expectRefused(craft({plist_new_date(0, 0)}), "entry of a type nothing is written as");
    Ref<Error> error;
    EXPECT_TRUE(KeyedUnarchiver::unarchiveObjectWithData(*craft({}, 0), &error).isNil());
    EXPECT_FALSE(error) << "a nil root is not a failure";
}

TEST(KeyedUnarchiver, SharedContainersAreWalkedOnceAndDeepNestingIsRefused) {
    LogCapture log;
    // Forty arrays each holding the next one twice: 2^40 paths for a walk that did not share.
    std::vector<plist_t> objects{classEntry("NSArray")};
    constexpr uint64_t Levels = 40;
    for (uint64_t level = 0; level < Levels; ++level) {
        uint64_t next = level + 1 < Levels ? 3 + level : 0;
        objects.push_back(entry(1, {{"NS.objects", next ? uids({next, next}) : uids({})}}));
    }
    auto start = std::chrono::steady_clock::now();
    Value root = KeyedUnarchiver::unarchiveObjectWithData(*craft(objects, 2));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    ASSERT_EQ(root.array().size(), 2u);
    EXPECT_EQ(root.array()[0].array().size(), 2u);

    // A chain of a thousand arrays, each inside the next.
    objects = {classEntry("NSArray")};
    constexpr uint64_t Chain = 1000;
    for (uint64_t level = 0; level < Chain; ++level)
        objects.push_back(entry(1, {{"NS.objects", level + 1 < Chain ? uids({3 + level}) : uids({})}}));
    expectRefused(craft(objects, 2), "nesting deeper than any real archive");
    EXPECT_LT(log.messages().size(), 5u) << "one report, not one per level";
}

TEST(KeyedUnarchiver, RandomDamageNeverCrashes) {
    auto ada = create<Employee>();
    ada->name = "Ada";
    ada->tags = {Value("x"), Value(Dictionary{{"k", Array{Value(1), Value(Null{})}}})};
    ada->buddy = person("Babbage");
    ada->photo = Data::fromString("bytes");
    Ref<Data> good = KeyedArchiver::archivedDataWithRootObject(ada, true);
    ASSERT_TRUE(good);
    LogCapture log;
    std::mt19937 random(1234);
    int decoded = 0;
    for (int round = 0; round < 1500; ++round) {
        std::vector<uint8_t> bytes = good->bytes();
        int flips = 1 + static_cast<int>(random() % 4);
        for (int i = 0; i < flips; ++i)
            bytes[8 + random() % (bytes.size() - 8)] = static_cast<uint8_t>(random());
        auto data = Data::make(std::move(bytes));
        if (KeyedUnarchiver::unarchiveObjectWithData(*data).objectAs<Person>())
            ++decoded;
        KeyedUnarchiver::unarchivedObjectOfClass<Person>(*data);
    }
    // Some damage lands in string bytes and still decodes; most does not.
    EXPECT_LT(decoded, 1500);
}
