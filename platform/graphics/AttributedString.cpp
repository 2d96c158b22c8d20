#include "platform/graphics/AttributedString.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/GraphicsContext.hpp"
#include "platform/graphics/MutableAttributedString.hpp"
#include "platform/graphics/TextLayout.hpp"
#include "platform/graphics/TextSystem.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace ns {

AttributedString::AttributedString(std::string text, std::vector<Run> runs)
    : m_string(std::move(text)), m_runs(std::move(runs)) {
    normalizeRuns();
}

Ref<AttributedString> AttributedString::make(std::string text, const Dictionary& attributes) {
    std::vector<Run> runs;
    if (!text.empty())
        runs.push_back({0, attributes});
    return create<AttributedString>(std::move(text), std::move(runs));
}

void AttributedString::normalizeRuns() {
    std::vector<Run> result;
    for (auto& run : m_runs) {
        if (run.location >= m_string.size())
            continue;
        if (!result.empty() && result.back().location == run.location)
            result.back() = std::move(run);
        else
            result.push_back(std::move(run));
    }
    // Equal neighbours merge (a replacement above may have made new neighbours).
    std::vector<Run> merged;
    for (auto& run : result) {
        if (!merged.empty() && merged.back().attributes == run.attributes)
            continue;
        merged.push_back(std::move(run));
    }
    if (!merged.empty())
        merged.front().location = 0;
    else if (!m_string.empty())
        merged.push_back({0, {}});
    m_runs = std::move(merged);
}

bool AttributedString::checkRange(Range range, const char* what) const {
    if (range.fitsIn(length()))
        return true;
    Log("AttributedString %s: range %@ out of bounds; length %llu.", what, describe(range),
        static_cast<unsigned long long>(length()));
    return false;
}

size_t AttributedString::runIndexAt(uint64_t index) const {
    auto it = std::upper_bound(m_runs.begin(), m_runs.end(), index,
                               [](uint64_t i, const Run& run) { return i < run.location; });
    return it == m_runs.begin() ? 0 : static_cast<size_t>(it - m_runs.begin() - 1);
}

uint64_t AttributedString::runEnd(size_t runIndex) const {
    return runIndex + 1 < m_runs.size() ? m_runs[runIndex + 1].location : length();
}

Dictionary AttributedString::attributesAtIndex(uint64_t index, Range* effectiveRange) const {
    if (index >= length()) {
        Log("AttributedString attributesAtIndex: index %llu out of bounds; length %llu.",
            static_cast<unsigned long long>(index), static_cast<unsigned long long>(length()));
        if (effectiveRange)
            *effectiveRange = {};
        return {};
    }
    size_t i = runIndexAt(index);
    if (effectiveRange)
        *effectiveRange = {m_runs[i].location, runEnd(i) - m_runs[i].location};
    return m_runs[i].attributes;
}

Value AttributedString::attributeAtIndex(std::string_view name, uint64_t index, Range* effectiveRange) const {
    if (index >= length()) {
        Log("AttributedString attributeAtIndex: index %llu out of bounds; length %llu.",
            static_cast<unsigned long long>(index), static_cast<unsigned long long>(length()));
        if (effectiveRange)
            *effectiveRange = {};
        return {};
    }
    auto valueIn = [&](size_t run) {
        auto it = m_runs[run].attributes.find(name);
        return it == m_runs[run].attributes.end() ? Value() : it->second;
    };
    size_t i = runIndexAt(index);
    Value value = valueIn(i);
    if (effectiveRange) {
        size_t first = i, last = i;
        while (first > 0 && valueIn(first - 1) == value)
            --first;
        while (last + 1 < m_runs.size() && valueIn(last + 1) == value)
            ++last;
        *effectiveRange = {m_runs[first].location, runEnd(last) - m_runs[first].location};
    }
    return value;
}

void AttributedString::enumerateAttributesInRange(
    Range range, const std::function<void(const Dictionary&, Range, bool& stop)>& body) const {
    if (!body || !checkRange(range, "enumerateAttributesInRange") || range.length == 0)
        return;
    bool stop = false;
    for (size_t i = runIndexAt(range.location);
         i < m_runs.size() && m_runs[i].location < range.max() && !stop; ++i) {
        uint64_t s = std::max(m_runs[i].location, range.location), e = std::min(runEnd(i), range.max());
        body(m_runs[i].attributes, {s, e - s}, stop);
    }
}

Ref<AttributedString> AttributedString::attributedSubstringFromRange(Range range) const {
    if (!checkRange(range, "attributedSubstringFromRange"))
        return nullptr;
    std::vector<Run> runs;
    enumerateAttributesInRange(range, [&](const Dictionary& attributes, Range part, bool&) {
        runs.push_back({part.location - range.location, attributes});
    });
    return create<AttributedString>(m_string.substr(range.location, range.length), std::move(runs));
}

// --- Measuring and drawing ------------------------------------------------------------------------

Size AttributedString::size() const {
    return boundingRectWithSize({0, 0}, StringDrawingUsesLineFragmentOrigin).size;
}

Rect AttributedString::boundingRectWithSize(Size size, uint64_t options) const {
    if (m_string.empty())
        return {};
    TextLayout layout(*this, size.width, options, TextSystem::measuringContext(), false);
    Size used = layout.size();
    if (options & StringDrawingUsesLineFragmentOrigin)
        return {{0, 0}, used};
    return {0, -(used.height - layout.firstBaseline()), used.width, used.height};
}

namespace {

// Draws `text` with its top-left at `top` (a point in user space) within `width`, optionally
// clipped to `clip`.
void drawText(const AttributedString& text, Point top, double width, uint64_t options, const Rect* clip) {
    auto context = GraphicsContext::currentContext();
    if (!context || text.length() == 0 || !isFinite(top) || (clip && !isFinite(*clip)))
        return;
    cairo_t* cr = context->cairo();
    cairo_save(cr);
    if (clip) {
        cairo_new_path(cr);
        cairo_rectangle(cr, clip->x(), clip->y(), clip->width(), clip->height());
        cairo_clip(cr);
    }
    cairo_translate(cr, top.x, top.y);
    if (!context->isFlipped())
        cairo_scale(cr, 1, -1);
    TextLayout layout(text, width, options, TextSystem::drawingContext(cr), true);
    cairo_set_source_rgb(cr, 0, 0, 0);
    context->drawWithShadow([&] { layout.draw(cr); });
    cairo_restore(cr);
}

} // namespace

void AttributedString::drawAtPoint(Point point) const {
    auto context = GraphicsContext::currentContext();
    if (!context || m_string.empty())
        return;
    Size box = size();
    Point top{point.x, context->isFlipped() ? point.y : point.y + box.height};
    drawText(*this, top, 0, StringDrawingUsesLineFragmentOrigin, nullptr);
}

void AttributedString::drawInRect(const Rect& rect) const {
    auto context = GraphicsContext::currentContext();
    if (!context || m_string.empty() || !(rect.width() > 0 && rect.height() > 0))
        return;
    Point top{rect.x(), context->isFlipped() ? rect.y() : rect.maxY()};
    drawText(*this, top, rect.width(), StringDrawingUsesLineFragmentOrigin, &rect);
}

void AttributedString::drawWithRect(const Rect& rect, uint64_t options) const {
    auto context = GraphicsContext::currentContext();
    if (!context || m_string.empty())
        return;
    Point top{rect.x(), context->isFlipped() ? rect.y() : rect.maxY()};
    if (!(options & StringDrawingUsesLineFragmentOrigin)) {
        // The rectangle's origin is the baseline of the single line.
        TextLayout layout(*this, 0, options, TextSystem::measuringContext(), false);
        double ascent = layout.firstBaseline();
        top.y = context->isFlipped() ? rect.y() - ascent : rect.y() + ascent;
    }
    drawText(*this, top, rect.width(), options, nullptr);
}

// --- Identity -----------------------------------------------------------------------------------

Ref<AttributedString> AttributedString::copy() const {
    return create<AttributedString>(m_string, m_runs);
}

Ref<MutableAttributedString> AttributedString::mutableCopy() const {
    return create<MutableAttributedString>(m_string, m_runs);
}

bool AttributedString::isEqual(const Object& other) const {
    auto* text = dynamic_cast<const AttributedString*>(&other);
    if (!text || text->m_string != m_string || text->m_runs.size() != m_runs.size())
        return false;
    for (size_t i = 0; i < m_runs.size(); ++i)
        if (m_runs[i].location != text->m_runs[i].location ||
            !(m_runs[i].attributes == text->m_runs[i].attributes))
            return false;
    return true;
}

size_t AttributedString::hash() const {
    return std::hash<std::string>{}(m_string);
}

std::string AttributedString::description() const {
    std::string text;
    for (size_t i = 0; i < m_runs.size(); ++i) {
        text += m_string.substr(m_runs[i].location, runEnd(i) - m_runs[i].location) + "{";
        for (const auto& [name, value] : m_runs[i].attributes)
            text += format("\n    %@ = %@;", name, value);
        text += "\n}";
    }
    return text;
}

} // namespace ns
