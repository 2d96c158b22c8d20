#include "ArchiveFixtures.hpp"

#include "platform/foundation/Log.hpp"

#include <gtest/gtest.h>

using namespace ns;
using namespace fixtures;

namespace {

// The parsed archive, for looking at its structure.
struct Archive {
    explicit Archive(const Data& data) : root(PlistNode::fromBytes(data.bytes().data(), data.length())) {}

    plist_t at(const char* key) const { return plist_dict_get_item(root.get(), key); }
    plist_t object(uint64_t uid) const {
        return plist_array_get_item(at("$objects"), static_cast<uint32_t>(uid));
    }
    plist_t object(plist_t uidNode) const { return object(*plist::uid(uidNode)); }
    uint64_t uidOf(plist_t entry, const char* key) const {
        return *plist::uid(plist_dict_get_item(entry, key));
    }
    plist_t member(plist_t entry, const char* key) const { return plist_dict_get_item(entry, key); }
    plist_t rootEntry() const { return object(plist_dict_get_item(at("$top"), "root")); }
    std::vector<std::string> classes(plist_t entry) const {
        std::vector<std::string> names;
        plist_t cls = object(member(entry, "$class"));
        plist_t list = member(cls, "$classes");
        for (uint32_t i = 0; i < plist_array_get_size(list); ++i)
            names.push_back(*plist::string(plist_array_get_item(list, i)));
        return names;
    }
    std::string className(plist_t entry) const {
        return *plist::string(member(object(member(entry, "$class")), "$classname"));
    }

    PlistNode root;
};

} // namespace

TEST(KeyedArchiver, WritesTheKeyedArchiveLayout) {
    auto employee = create<Employee>();
    employee->name = "Ada";
    employee->age = 36;
    employee->company = "Analytical";
    employee->tags = {Value("a"), Value(2)};
    employee->extra = {{"k", 1.5}};
    employee->dollar = 9;
    Ref<Data> data = KeyedArchiver::archivedDataWithRootObject(employee, true);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->string().substr(0, 8), "bplist00");

    Archive archive(*data);
    EXPECT_EQ(plist::string(archive.at("$archiver")), "NSKeyedArchiver");
    uint64_t version = 0;
    plist_get_uint_val(archive.at("$version"), &version);
    EXPECT_EQ(version, 100000u);
    EXPECT_EQ(plist::string(archive.object(uint64_t(0))), "$null");

    plist_t root = archive.rootEntry();
    EXPECT_EQ(archive.className(root), "Employee");
    EXPECT_EQ(archive.classes(root), (std::vector<std::string>{"Employee", "Person", "NSObject"}));
    // Strings sit directly in $objects; scalars sit inline; nil is UID 0.
    EXPECT_EQ(plist::string(archive.object(archive.member(root, "name"))), "Ada");
    EXPECT_EQ(plist::typeOf(archive.member(root, "age")), PLIST_UINT);
    EXPECT_EQ(plist::typeOf(archive.member(root, "active")), PLIST_BOOLEAN);
    EXPECT_EQ(archive.uidOf(root, "buddy"), 0u);
    EXPECT_FALSE(archive.member(root, "nickname"));
    // The object's own "$weird" cannot be confused with the archive's "$class".
    EXPECT_TRUE(archive.member(root, "$$weird"));
    EXPECT_FALSE(archive.member(root, "$weird"));

    plist_t tags = archive.object(archive.member(root, "tags"));
    EXPECT_EQ(archive.className(tags), "NSArray");
    plist_t tagUids = archive.member(tags, "NS.objects");
    ASSERT_EQ(plist_array_get_size(tagUids), 2u);
    EXPECT_EQ(plist::string(archive.object(plist_array_get_item(tagUids, 0))), "a");

    plist_t extra = archive.object(archive.member(root, "extra"));
    EXPECT_EQ(archive.className(extra), "NSDictionary");
    EXPECT_EQ(plist::string(archive.object(plist_array_get_item(archive.member(extra, "NS.keys"), 0))), "k");
    EXPECT_EQ(plist::typeOf(archive.object(plist_array_get_item(archive.member(extra, "NS.objects"), 0))),
              PLIST_REAL);
}

TEST(KeyedArchiver, ASharedObjectIsWrittenOnce) {
    auto shared = person("Shared");
    auto owner = person("Owner");
    owner->buddy = shared;
    owner->tags = {Value(shared), Value(shared)};
    Archive archive(*KeyedArchiver::archivedDataWithRootObject(owner, true));
    plist_t root = archive.rootEntry();
    uint64_t buddy = archive.uidOf(root, "buddy");
    plist_t tagUids = archive.member(archive.object(archive.member(root, "tags")), "NS.objects");
    EXPECT_EQ(*plist::uid(plist_array_get_item(tagUids, 0)), buddy);
    EXPECT_EQ(*plist::uid(plist_array_get_item(tagUids, 1)), buddy);

    int people = 0;
    plist_t objects = archive.at("$objects");
    for (uint32_t i = 0; i < plist_array_get_size(objects); ++i) {
        plist_t entry = plist_array_get_item(objects, i);
        if (plist::typeOf(entry) == PLIST_DICT && plist_dict_get_item(entry, "$class") &&
            archive.className(entry) == "Person")
            ++people;
    }
    EXPECT_EQ(people, 2);
}

TEST(KeyedArchiver, RefusesWhatCannotBeArchived) {
    LogCapture log;
    Ref<Error> error;
    EXPECT_FALSE(KeyedArchiver::archivedDataWithRootObject(create<Object>(), false, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), CoderInvalidValueError);
    EXPECT_TRUE(log.contains("does not implement coding"));

    error.reset();
    EXPECT_FALSE(KeyedArchiver::archivedDataWithRootObject(Array{Value(Block::from([] {}))}, false, &error));
    EXPECT_TRUE(error);

    // A class that is not safe to decode is refused by an archiver that requires secure coding.
    auto pet = create<Pet>();
    error.reset();
    EXPECT_FALSE(KeyedArchiver::archivedDataWithRootObject(pet, true, &error));
    EXPECT_TRUE(error);
    EXPECT_TRUE(KeyedArchiver::archivedDataWithRootObject(pet, false, &error));
}

TEST(KeyedArchiver, EncodingAfterFinishingIsIgnored) {
    auto archiver = KeyedArchiver::make();
    archiver->encodeInteger(1, "one");
    Ref<Data> first = archiver->encodedData();
    LogCapture log;
    archiver->encodeInteger(2, "two");
    archiver->encodeObject("late", "three");
    EXPECT_TRUE(log.contains("after finishEncoding"));
    EXPECT_TRUE(archiver->encodedData()->isEqual(*first));
    auto unarchiver = KeyedUnarchiver::make(*first);
    ASSERT_TRUE(unarchiver);
    EXPECT_EQ(unarchiver->decodeIntegerForKey("one"), 1);
    EXPECT_FALSE(unarchiver->containsValueForKey("two"));
}
