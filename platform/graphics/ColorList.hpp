#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Color.hpp"

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ns {

// A named, ordered list of colours by key. The process starts with one list, "Crayons": the 48
// crayon colours in calibrated RGB, which cannot be edited. Lists made with make() can. (The
// system colours are reached through Color, catalogue "System".) Safe from any thread.
class ColorList : public Object {
public:
    using Entries = std::vector<std::pair<std::string, Ref<Color>>>;
    ColorList(std::string name, bool editable, Entries entries = {});

    // A new, empty, editable list, made available under its name unless a list of that name
    // exists already (then it is not listed, though still usable).
    static Ref<ColorList> make(std::string name);
    // Nil when no list has that name.
    static Ref<ColorList> colorListNamed(std::string_view name);
    static std::vector<Ref<ColorList>> availableColorLists();
    // Takes the list out of the lists available by name (colorListNamed, availableColorLists),
    // the fixed ones included; the object itself stays usable. Lists here are not backed by
    // files, so there is nothing else to remove.
    void removeFile();

    const std::string& name() const { return m_name; }
    bool isEditable() const { return m_editable; }
    // Keys in list order.
    std::vector<std::string> allKeys() const;
    // The colour stored under the key (the very object); nil for an unknown key.
    Ref<Color> colorWithKey(std::string_view key) const;

    // Editing; each logs and does nothing on a list that cannot be edited, or for a nil colour.
    // setColor replaces the colour of an existing key in place or appends a new key.
    void setColor(const Ref<Color>& color, std::string_view key);
    // Inserts at the index (clamped to the end); an existing entry of that key is removed first.
    void insertColor(const Ref<Color>& color, std::string_view key, uint64_t index);
    void removeColorWithKey(std::string_view key);

    std::string description() const override;

private:
    bool checkEditable(const char* what) const;

    std::string m_name;
    bool m_editable;
    mutable std::mutex m_mutex;
    Entries m_entries;
};

} // namespace ns
