#pragma once

#include "platform/graphics/AttributedString.hpp"

namespace ns {

// An attributed string that can be edited. Ranges that do not fit the text log and change
// nothing; nil strings are ignored.
class MutableAttributedString : public AttributedString {
public:
    using AttributedString::AttributedString;

    static Ref<MutableAttributedString> make(std::string text = {}, const Dictionary& attributes = {});

    // New characters take the attributes of the first character they replace, or, when nothing
    // is replaced, of the character before them (after them at the start).
    void replaceCharactersInRange(Range range, std::string_view text);
    void replaceCharactersInRange(Range range, const Ref<AttributedString>& text);
    void insertAttributedString(const Ref<AttributedString>& text, uint64_t index);
    void appendAttributedString(const Ref<AttributedString>& text);
    void deleteCharactersInRange(Range range);
    void setAttributedString(const Ref<AttributedString>& text);

    void setAttributes(const Dictionary& attributes, Range range);
    void addAttribute(std::string_view name, const Value& value, Range range);
    void addAttributes(const Dictionary& attributes, Range range);
    void removeAttribute(std::string_view name, Range range);

private:
    void replace(Range range, const std::string& text, const std::vector<Run>& runs);
    void modifyAttributes(Range range, const char* what, const std::function<void(Dictionary&)>& change);
    void splitAt(uint64_t index);
};

} // namespace ns
