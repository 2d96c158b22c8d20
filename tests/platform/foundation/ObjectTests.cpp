#include "platform/foundation/Class.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/foundation/Object.hpp"

#include <gtest/gtest.h>

namespace {

class Person : public ns::Object {
public:
    static ns::Ref<Person> make(std::string name = "") {
        auto person = ns::create<Person>();
        person->m_name = std::move(name);
        return person;
    }

    std::string name() const { return m_name; }
    void setName(std::string name) {
        ns::ChangeScope change(*this, "name");
        m_name = std::move(name);
    }
    int64_t age() const { return m_age; }
    void setAge(int64_t age) { m_age = age; } // announced by key-value coding only
    ns::Ref<Person> buddy() const { return m_buddy; }
    void setBuddy(ns::Ref<Person> buddy) {
        ns::ChangeScope change(*this, "buddy");
        m_buddy = std::move(buddy);
    }
    double height() const { return m_height; }
    void setHeight(double height) {
        ns::ChangeScope change(*this, "height");
        m_height = height;
    }
    // Negative heights become 0; heights over 300 are refused.
    bool validateHeight(ns::Value& value, ns::Ref<ns::Error>* error) {
        if (value.doubleValue() < 0)
            value = 0.0;
        if (value.doubleValue() > 300) {
            *error = ns::Error::make("Test", 7, {{ns::LocalizedDescriptionKey, "too tall"}});
            return false;
        }
        return true;
    }

    void greet(const ns::Value& sender) { greetedBy.push_back(sender.description()); }

    const ns::KeyTable& keyTable() const override {
        static const ns::KeyTable table(
            Object::keyTable(), {{"name", ns::observable(&Person::name, &Person::setName)},
                                 {"age", ns::property(&Person::age, &Person::setAge)},
                                 {"buddy", ns::observable(&Person::buddy, &Person::setBuddy)},
                                 {"height", ns::validated(ns::observable(&Person::height, &Person::setHeight),
                                                          &Person::validateHeight)},
                                 {"label", ns::property(&Person::name)}});
        return table;
    }
    const ns::ActionTable& actionTable() const override {
        static const ns::ActionTable table(Object::actionTable(), {{"greet:", ns::action(&Person::greet)}});
        return table;
    }

    std::vector<std::string> greetedBy;

private:
    std::string m_name;
    int64_t m_age = 0;
    double m_height = 0;
    ns::Ref<Person> m_buddy;
};

struct Change {
    std::string keyPath;
    ns::Dictionary change;
    void* context;
};

class Recorder : public ns::Object {
public:
    void observeValueForKeyPath(const std::string& keyPath, ns::Object*, const ns::Dictionary& change,
                                void* context) override {
        changes.push_back({keyPath, change, context});
    }
    std::vector<Change> changes;
};

int contextA, contextB;

} // namespace

TEST(KeyValueCoding, PropertiesKeyPathsAndUndefinedKeys) {
    auto ann = Person::make("Ann");
    auto bob = Person::make("Bob");
    ann->setBuddy(bob);
    EXPECT_EQ(ann->valueForKey("name"), ns::Value("Ann"));
    EXPECT_EQ(ann->valueForKeyPath("buddy.name"), ns::Value("Bob"));
    EXPECT_TRUE(ann->valueForKeyPath("buddy.buddy.name").isNil());

    ann->setValueForKeyPath(ns::Value("Robert"), "buddy.name");
    EXPECT_EQ(bob->name(), "Robert");
    ann->setValueForKey(ns::Value("42"), "age"); // strings convert the way the platform reads them
    EXPECT_EQ(ann->age(), 42);

    ns::LogCapture capture;
    EXPECT_TRUE(ann->valueForKey("salary").isNil());
    ann->setValueForKey(ns::Value(1), "salary");
    ann->setValueForKey(ns::Value(), "age");      // nil for a scalar is refused
    ann->setValueForKey(ns::Value(3), "buddy");   // a number is not a Person
    ann->setValueForKey(ns::Value("x"), "label"); // read-only
    EXPECT_EQ(ann->age(), 42);
    EXPECT_EQ(ann->buddy(), bob);
    EXPECT_EQ(capture.messages().size(), 5u);
    EXPECT_TRUE(capture.contains("not key value coding-compliant for the key salary"));
}

TEST(KeyValueCoding, ValidationMayReplaceOrRefuse) {
    auto ann = Person::make("Ann");
    ann->setBuddy(Person::make("Bob"));
    ns::Value value(-5.0);
    ns::Ref<ns::Error> error;
    EXPECT_TRUE(ann->validateValue(value, "height", &error));
    EXPECT_EQ(value, ns::Value(0.0));
    value = 400.0;
    EXPECT_FALSE(ann->validateValue(value, "buddy.height", &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->localizedDescription(), "too tall");
    value = "anything";
    EXPECT_TRUE(ann->validateValue(value, "name", nullptr)); // no validator: valid
}

TEST(KeyValueObserving, OldAndNewValuesWithContextsAndRemoval) {
    auto ann = Person::make("Ann");
    auto recorder = ns::create<Recorder>();
    ann->addObserver(*recorder, "name", ns::KeyValueObservingOptionNew | ns::KeyValueObservingOptionOld,
                     &contextA);
    ann->addObserver(*recorder, "name", 0, &contextB);
    ann->setName("Anna");
    ASSERT_EQ(recorder->changes.size(), 2u);
    EXPECT_EQ(recorder->changes[0].context, &contextA);
    EXPECT_EQ(recorder->changes[0].change.at("old"), ns::Value("Ann"));
    EXPECT_EQ(recorder->changes[0].change.at("new"), ns::Value("Anna"));
    EXPECT_EQ(recorder->changes[0].change.at("kind"), ns::Value(1));
    EXPECT_EQ(recorder->changes[1].context, &contextB);
    EXPECT_EQ(recorder->changes[1].change.count("old"), 0u);

    EXPECT_TRUE(ann->removeObserver(*recorder, "name", &contextB));
    recorder->changes.clear();
    ann->setName("Anna"); // the same value still notifies
    ASSERT_EQ(recorder->changes.size(), 1u);
    EXPECT_EQ(recorder->changes[0].context, &contextA);

    ns::LogCapture capture;
    EXPECT_FALSE(ann->removeObserver(*recorder, "name", &contextB));
    EXPECT_TRUE(capture.contains("because it is not registered as an observer"));
    EXPECT_TRUE(ann->removeObserver(*recorder, "name", &contextA));
    EXPECT_EQ(ann->observationCount(), 0u);
}

TEST(KeyValueObserving, KeyValueCodingAnnouncesPlainSettersAndNilBecomesNull) {
    auto ann = Person::make("Ann");
    auto recorder = ns::create<Recorder>();
    ann->addObserver(*recorder, "age", ns::KeyValueObservingOptionOld | ns::KeyValueObservingOptionNew,
                     nullptr);
    ann->addObserver(*recorder, "buddy", ns::KeyValueObservingOptionOld, nullptr);
    ann->setValueForKey(ns::Value(30), "age");
    ann->setBuddy(Person::make("Bob"));
    ASSERT_EQ(recorder->changes.size(), 2u);
    EXPECT_EQ(recorder->changes[0].change.at("old"), ns::Value(0));
    EXPECT_EQ(recorder->changes[0].change.at("new"), ns::Value(30));
    EXPECT_TRUE(recorder->changes[1].change.at("old").isNull());
    ann->removeObserver(*recorder, "age");
    ann->removeObserver(*recorder, "buddy");
}

TEST(KeyValueObserving, InitialPriorAndAddingTwice) {
    auto ann = Person::make("Ann");
    auto recorder = ns::create<Recorder>();
    ann->addObserver(*recorder, "name", ns::KeyValueObservingOptionInitial | ns::KeyValueObservingOptionNew,
                     nullptr);
    ASSERT_EQ(recorder->changes.size(), 1u);
    EXPECT_EQ(recorder->changes[0].change.at("new"), ns::Value("Ann"));
    ann->addObserver(*recorder, "name", ns::KeyValueObservingOptionPrior | ns::KeyValueObservingOptionOld,
                     nullptr);
    recorder->changes.clear();
    ann->setName("B");
    // prior notification first, then the two after the change, in registration order
    ASSERT_EQ(recorder->changes.size(), 3u);
    EXPECT_TRUE(recorder->changes[0].change.at("notificationIsPrior").boolValue());
    EXPECT_EQ(recorder->changes[1].change.at("new"), ns::Value("B"));
    EXPECT_EQ(recorder->changes[2].change.at("old"), ns::Value("Ann"));
    // one removal takes one of the two registrations
    EXPECT_TRUE(ann->removeObserver(*recorder, "name", nullptr));
    EXPECT_EQ(ann->observationCount(), 1u);
    EXPECT_TRUE(ann->removeObserver(*recorder, "name", nullptr));
}

TEST(KeyValueObserving, KeyPathsFollowTheObjectsAlongThePath) {
    auto ann = Person::make("Ann");
    auto bob = Person::make("Bob");
    auto cid = Person::make("Cid");
    ann->setBuddy(bob);
    auto recorder = ns::create<Recorder>();
    ann->addObserver(*recorder, "buddy.name", ns::KeyValueObservingOptionOld | ns::KeyValueObservingOptionNew,
                     &contextA);
    bob->setName("Bobby");
    ann->setBuddy(cid);
    bob->setName("ignored"); // no longer on the path
    cid->setName("Cyd");
    ASSERT_EQ(recorder->changes.size(), 3u);
    EXPECT_EQ(recorder->changes[0].keyPath, "buddy.name");
    EXPECT_EQ(recorder->changes[0].change.at("new"), ns::Value("Bobby"));
    EXPECT_EQ(recorder->changes[1].change.at("old"), ns::Value("Bobby"));
    EXPECT_EQ(recorder->changes[1].change.at("new"), ns::Value("Cid"));
    EXPECT_EQ(recorder->changes[2].change.at("new"), ns::Value("Cyd"));
    EXPECT_TRUE(ann->removeObserver(*recorder, "buddy.name", &contextA));
    EXPECT_EQ(cid->observationCount(), 0u);
}

TEST(KeyValueObserving, ObserverDestroyedWhileRegisteredIsSkipped) {
    auto ann = Person::make("Ann");
    {
        auto recorder = ns::create<Recorder>();
        ann->addObserver(*recorder, "name", ns::KeyValueObservingOptionNew, nullptr);
    }
    ann->setName("still fine");
    EXPECT_EQ(ann->name(), "still fine");
}

TEST(Bindings, FollowTheSourceWriteBackAndReportTheirInfo) {
    auto model = Person::make("Model");
    auto view = Person::make("View");
    view->bind("name", model, "name");
    EXPECT_EQ(view->name(), "Model"); // set at once
    model->setName("Changed");
    EXPECT_EQ(view->name(), "Changed");
    view->setName("Edited");
    EXPECT_EQ(model->name(), "Edited");

    auto info = view->infoForBinding("name");
    EXPECT_EQ(info["NSObservedObject"].object(), model);
    EXPECT_EQ(info["NSObservedKeyPath"], ns::Value("name"));
    EXPECT_TRUE(view->infoForBinding("age").isNil());

    view->unbind("name");
    model->setName("After");
    EXPECT_EQ(view->name(), "Edited");
    EXPECT_TRUE(view->infoForBinding("name").isNil());
    EXPECT_EQ(model->observationCount(), 0u);
}

TEST(Bindings, BoundObjectDestroyedFirstLeavesNoObservation) {
    auto model = Person::make("Model");
    {
        auto view = Person::make();
        view->bind("name", model, "name");
        EXPECT_EQ(model->observationCount(), 1u);
    }
    EXPECT_EQ(model->observationCount(), 0u);
    model->setName("safe");
}

TEST(Actions, RespondPerformAndClassTargets) {
    auto ann = Person::make("Ann");
    EXPECT_TRUE(ann->respondsToSelector(ns::Selector("greet:")));
    EXPECT_FALSE(ann->respondsToSelector(ns::Selector("greet")));
    ann->perform(ns::Selector("greet:"), ns::Value("Bob"));
    EXPECT_TRUE(ann->tryToPerform(ns::Selector("greet:"), ns::Value("Cid")));
    EXPECT_FALSE(ann->tryToPerform(ns::Selector("wave:"), ns::Value()));
    EXPECT_EQ(ann->greetedBy, (std::vector<std::string>{"Bob", "Cid"}));
    ns::LogCapture capture;
    EXPECT_TRUE(ann->perform(ns::Selector("wave:")).isNil());
    EXPECT_TRUE(capture.contains("unrecognized selector"));

    auto cls = ns::classOf<Person>();
    int performed = 0;
    cls->setAction(ns::Selector("classAction:"), [&](ns::Object&, const ns::Value&) {
        ++performed;
        return ns::Value();
    });
    EXPECT_TRUE(cls->respondsToSelector(ns::Selector("classAction:")));
    EXPECT_TRUE(cls->tryToPerform(ns::Selector("classAction:")));
    EXPECT_EQ(performed, 1);
}

TEST(Classes, TokensAreUniqueTestInstancesAndMakeObjects) {
    auto cls = ns::classOf<Person>();
    EXPECT_EQ(cls, ns::classOf<Person>());
    EXPECT_EQ(cls, ns::Class::named("Person"));
    EXPECT_EQ(cls->name(), "Person");
    auto made = cls->instantiate();
    ASSERT_TRUE(made);
    EXPECT_TRUE(cls->isInstance(made.get()));
    EXPECT_FALSE(cls->isInstance(ns::create<Recorder>().get()));
    EXPECT_FALSE(cls->isInstance(nullptr));
    EXPECT_TRUE(ns::Class::named("NoSuchClass") == nullptr);
    EXPECT_TRUE(ns::classOf<ns::Object>()->isInstance(made.get()));
    EXPECT_EQ(made->className(), "Person");
}

TEST(AttachedValues, StoredPerObjectAndRemovedByNil) {
    auto ann = Person::make();
    ann->setAssociatedValue("cv_updated", true);
    EXPECT_TRUE(ann->associatedValue("cv_updated").boolValue());
    ann->setAssociatedValue("cv_updated", ns::Value());
    EXPECT_TRUE(ann->associatedValue("cv_updated").isNil());
}
