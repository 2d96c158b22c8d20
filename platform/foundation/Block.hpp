#pragma once

#include <functional>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

namespace ns {

// A callback stored as a value: type-erased, copyable, and checked against the signature it is
// asked for. Copies share the one immutable function, so storing a Block copies the callback.
class Block {
public:
    Block() = default;

    template <class Sig>
    static Block make(std::function<Sig> function) {
        Block block;
        if (function) {
            block.m_function = std::make_shared<std::function<Sig>>(std::move(function));
            block.m_signature = &typeid(Sig);
        }
        return block;
    }

    // Deduces the signature from a lambda or function pointer.
    template <class F>
    static Block from(F&& callable) {
        return make(std::function{std::forward<F>(callable)});
    }

    explicit operator bool() const { return m_function != nullptr; }

    template <class Sig>
    bool is() const {
        return m_signature && *m_signature == typeid(Sig);
    }

    // The callback as that signature; an empty function when the signature does not match.
    template <class Sig>
    std::function<Sig> as() const {
        if (!is<Sig>())
            return {};
        return *static_cast<const std::function<Sig>*>(m_function.get());
    }

    // Calls the callback when it has exactly this signature; returns whether it was called.
    template <class... Args>
    bool invoke(Args... args) const {
        auto function = as<void(Args...)>();
        if (!function)
            return false;
        function(std::forward<Args>(args)...);
        return true;
    }

    // Identity of the shared callback: copies of one Block are the same callback.
    const void* identity() const { return m_function.get(); }
    std::string signature() const;
    std::string description() const;

    bool operator==(const Block& other) const { return m_function == other.m_function; }

private:
    std::shared_ptr<void> m_function;
    const std::type_info* m_signature = nullptr;
};

} // namespace ns
