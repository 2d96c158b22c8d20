#pragma once

#include "platform/foundation/Class.hpp"
#include "platform/foundation/Object.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

class KeyedArchiver;
class KeyedUnarchiver;

// Codes of the errors that archiving and unarchiving record (domain CocoaErrorDomain).
constexpr int64_t CoderReadCorruptError = 4864;
constexpr int64_t CoderValueNotFoundError = 4865;
constexpr int64_t CoderInvalidValueError = 4866;

// How one class is archived and brought back.
struct CodingClass {
    // Written as the archive's class name; by convention the class's className().
    std::string name;
    // The names of its base classes that are archived too, nearest first; the root is implied.
    std::vector<std::string> superclasses;
    // Whether instances may be read by an unarchiver that requires secure coding.
    bool supportsSecureCoding = false;
    // Makes an instance from the entry being decoded, reading its keys from the unarchiver;
    // returns nil when the entry cannot make one.
    std::function<Ref<Object>(KeyedUnarchiver&)> decode;

    // True when the class is `other` or derives from it.
    bool isKindOf(std::string_view other) const;
};

// Implemented by objects that can be archived. A class implements encodeWithCoder (calling its
// base's first when the base is archivable too), answers classForCoder from a static
// `codingClass()`, and is known to unarchivers once registered: explicitly with registerClass,
// when one of its instances is archived in this process, or when decodeObjectOfClass<T> names it.
class Coding {
public:
    virtual ~Coding() = default;

    virtual void encodeWithCoder(KeyedArchiver& coder) const = 0;
    virtual const CodingClass& classForCoder() const = 0;

    // Makes the class known to unarchivers. The first registration of a name is kept; a class
    // without a name or a decoding function is ignored.
    static void registerClass(const CodingClass& cls);
    // The class registered under the name, if any.
    static std::optional<CodingClass> registeredClass(std::string_view name);

    // The archive name of T: its codingClass() name (registering it) when it has one, else its
    // class name.
    template <class T>
    static std::string nameOf() {
        if constexpr (requires { T::codingClass(); }) {
            const CodingClass& cls = T::codingClass();
            registerClass(cls);
            return cls.name;
        } else {
            return classOf<T>()->name();
        }
    }
};

} // namespace ns
