#include "ArchiveFixtures.hpp"

#include "platform/foundation/Log.hpp"

#include <gtest/gtest.h>

using namespace ns;
using namespace fixtures;

namespace {

// The parsed archive, for looking at its layout.
struct Archive {
    explicit Archive(const Data& data) : tree(PlistNode::fromBytes(data.bytes().data(), data.length())) {}

    plist_t at(const char* key) const { return plist_dict_get_item(tree.get(), key); }
    plist_t object(uint64_t uid) const {
        return plist_array_get_item(at("$objects"), static_cast<uint32_t>(uid));
    }
    plist_t deref(plist_t uidNode) const { return object(*plist::uid(uidNode)); }
    plist_t root() const { return deref(plist_dict_get_item(at("$top"), "root")); }
    plist_t member(plist_t entry, const char* key, uint32_t index) const {
        return deref(plist_array_get_item(plist_dict_get_item(entry, key), index));
    }
    std::string className(plist_t entry) const {
        return *plist::string(plist_dict_get_item(deref(plist_dict_get_item(entry, "$class")), "$classname"));
    }

    PlistNode tree;
};

} // namespace

TEST(KeyedArchiver, WritesTheKeyedArchiveLayout) {
    auto employee = create<Employee>();
    employee->name = "Ada";
    employee->tags = {Value("a"), Value(Dictionary{{"k", 1.5}})};
    Archive archive(*KeyedArchiver::archivedDataWithRootObject(employee, true));
    EXPECT_EQ(plist::string(archive.at("$archiver")), "NSKeyedArchiver");
    uint64_t version = 0;
    plist_get_uint_val(archive.at("$version"), &version);
    EXPECT_EQ(version, 100000u);
    EXPECT_EQ(plist::string(archive.object(0)), "$null");

    plist_t root = archive.root();
    plist_t cls = archive.deref(plist_dict_get_item(root, "$class"));
    EXPECT_EQ(plist::string(plist_dict_get_item(cls, "$classname")), "Employee");
    plist_t lineage = plist_dict_get_item(cls, "$classes");
    ASSERT_EQ(plist_array_get_size(lineage), 3u);
    EXPECT_EQ(plist::string(plist_array_get_item(lineage, 1)), "Person");
    EXPECT_EQ(plist::string(plist_array_get_item(lineage, 2)), "NSObject");
    // Strings sit directly in $objects, scalars inline, nil is UID 0, optional keys are absent,
    // and an object's own "$weird" is kept apart from the archive's "$class".
    EXPECT_EQ(plist::string(archive.deref(plist_dict_get_item(root, "name"))), "Ada");
    EXPECT_EQ(plist::typeOf(plist_dict_get_item(root, "age")), PLIST_UINT);
    EXPECT_EQ(plist::uid(plist_dict_get_item(root, "buddy")), 0u);
    EXPECT_FALSE(plist_dict_get_item(root, "nickname"));
    EXPECT_TRUE(plist_dict_get_item(root, "$$weird"));
    EXPECT_FALSE(plist_dict_get_item(root, "$weird"));

    plist_t tags = archive.deref(plist_dict_get_item(root, "tags"));
    EXPECT_EQ(archive.className(tags), "NSArray");
    EXPECT_EQ(plist::string(archive.member(tags, "NS.objects", 0)), "a");
    plist_t dict = archive.member(tags, "NS.objects", 1);
    EXPECT_EQ(archive.className(dict), "NSDictionary");
    EXPECT_EQ(plist::string(archive.member(dict, "NS.keys", 0)), "k");
    EXPECT_EQ(plist::typeOf(archive.member(dict, "NS.objects", 0)), PLIST_REAL);
}

TEST(KeyedArchiver, ASharedObjectIsWrittenOnce) {
    auto shared = person("Shared");
    auto owner = person("Owner");
    owner->buddy = shared;
    owner->tags = {Value(shared), Value(shared)};
    Archive archive(*KeyedArchiver::archivedDataWithRootObject(owner, true));
    auto buddy = plist::uid(plist_dict_get_item(archive.root(), "buddy"));
    plist_t tagUids =
        plist_dict_get_item(archive.deref(plist_dict_get_item(archive.root(), "tags")), "NS.objects");
    EXPECT_EQ(plist::uid(plist_array_get_item(tagUids, 0)), buddy);
    EXPECT_EQ(plist::uid(plist_array_get_item(tagUids, 1)), buddy);
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
    // A class that is not safe to decode is refused when secure coding is required.
    error.reset();
    EXPECT_FALSE(KeyedArchiver::archivedDataWithRootObject(create<Pet>(), true, &error));
    EXPECT_TRUE(error);
    EXPECT_TRUE(KeyedArchiver::archivedDataWithRootObject(create<Pet>(), false));
}
