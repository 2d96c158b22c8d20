#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace ns {

// The name of an action, colons included ("menuAction:"), used where an operation is named as data:
// a menu item's action, a respondsToSelector test, a target/action pair.
class Selector {
public:
    Selector() = default;
    explicit Selector(std::string name) : m_name(std::move(name)) {}
    explicit Selector(const char* name) : m_name(name ? name : "") {}

    const std::string& name() const { return m_name; }
    bool isEmpty() const { return m_name.empty(); }
    // How many arguments the action takes: one per colon.
    size_t argumentCount() const;

    bool operator==(const Selector& other) const = default;
    auto operator<=>(const Selector& other) const = default;

private:
    std::string m_name;
};

} // namespace ns

template <>
struct std::hash<ns::Selector> {
    size_t operator()(const ns::Selector& selector) const noexcept {
        return std::hash<std::string>{}(selector.name());
    }
};
