#include "platform/graphics/MutableAttributedString.hpp"

namespace ns {

Ref<MutableAttributedString> MutableAttributedString::make(std::string text, const Dictionary& attributes) {
    std::vector<Run> runs;
    if (!text.empty())
        runs.push_back({0, attributes});
    return create<MutableAttributedString>(std::move(text), std::move(runs));
}

void MutableAttributedString::replace(Range range, const std::string& text, const std::vector<Run>& runs) {
    std::vector<Run> result;
    for (size_t i = 0; i < m_runs.size() && m_runs[i].location < range.location; ++i)
        result.push_back(m_runs[i]);
    for (const auto& run : runs)
        result.push_back({range.location + run.location, run.attributes});
    for (size_t i = 0; i < m_runs.size(); ++i) {
        if (runEnd(i) <= range.max())
            continue;
        uint64_t location = std::max(m_runs[i].location, range.max()) - range.length + text.size();
        result.push_back({location, m_runs[i].attributes});
    }
    m_string.replace(range.location, range.length, text);
    m_runs = std::move(result);
    normalizeRuns();
}

void MutableAttributedString::replaceCharactersInRange(Range range, std::string_view text) {
    if (!checkRange(range, "replaceCharactersInRange"))
        return;
    Dictionary inherited;
    if (length() > 0) {
        uint64_t from = range.length > 0 || range.location == 0 ? range.location : range.location - 1;
        inherited = m_runs[runIndexAt(std::min(from, length() - 1))].attributes;
    }
    std::vector<Run> runs;
    if (!text.empty())
        runs.push_back({0, std::move(inherited)});
    replace(range, std::string(text), runs);
}

void MutableAttributedString::replaceCharactersInRange(Range range, const Ref<AttributedString>& text) {
    if (!text || !checkRange(range, "replaceCharactersInRange"))
        return;
    // Copied first: the text may be this string.
    std::string string = text->string();
    std::vector<Run> runs = text->runs();
    replace(range, string, runs);
}

void MutableAttributedString::insertAttributedString(const Ref<AttributedString>& text, uint64_t index) {
    replaceCharactersInRange(Range{index, 0}, text);
}

void MutableAttributedString::appendAttributedString(const Ref<AttributedString>& text) {
    replaceCharactersInRange(Range{length(), 0}, text);
}

void MutableAttributedString::deleteCharactersInRange(Range range) {
    if (checkRange(range, "deleteCharactersInRange"))
        replace(range, {}, {});
}

void MutableAttributedString::setAttributedString(const Ref<AttributedString>& text) {
    replaceCharactersInRange(Range{0, length()}, text);
}

void MutableAttributedString::splitAt(uint64_t index) {
    if (index == 0 || index >= length())
        return;
    size_t i = runIndexAt(index);
    if (m_runs[i].location != index)
        m_runs.insert(m_runs.begin() + static_cast<ptrdiff_t>(i) + 1, Run{index, m_runs[i].attributes});
}

void MutableAttributedString::modifyAttributes(Range range, const char* what,
                                               const std::function<void(Dictionary&)>& change) {
    if (!checkRange(range, what) || range.length == 0)
        return;
    splitAt(range.location);
    splitAt(range.max());
    for (auto& run : m_runs)
        if (run.location >= range.location && run.location < range.max())
            change(run.attributes);
    normalizeRuns();
}

void MutableAttributedString::setAttributes(const Dictionary& attributes, Range range) {
    modifyAttributes(range, "setAttributes", [&](Dictionary& d) { d = attributes; });
}

void MutableAttributedString::addAttribute(std::string_view name, const Value& value, Range range) {
    modifyAttributes(range, "addAttribute", [&](Dictionary& d) {
        if (value.isNil())
            d.erase(std::string(name));
        else
            d[std::string(name)] = value;
    });
}

void MutableAttributedString::addAttributes(const Dictionary& attributes, Range range) {
    modifyAttributes(range, "addAttributes", [&](Dictionary& d) {
        for (const auto& [name, value] : attributes)
            d[name] = value;
    });
}

void MutableAttributedString::removeAttribute(std::string_view name, Range range) {
    modifyAttributes(range, "removeAttribute", [&](Dictionary& d) { d.erase(std::string(name)); });
}

} // namespace ns
