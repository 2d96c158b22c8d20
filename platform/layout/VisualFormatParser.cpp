#include "platform/layout/VisualFormatParser.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/views/View.hpp"

#include <cctype>
#include <cstdlib>

namespace ns {

VisualFormatParser::VisualFormatParser(std::string_view format, uint64_t options, const Dictionary& metrics,
                                       const Dictionary& views)
    : m_format(format), m_options(options), m_metrics(metrics), m_views(views) {}

std::vector<Ref<LayoutConstraint>> VisualFormatParser::parse() {
    parseOrientation();
    std::vector<Ref<View>> named;
    Ref<View> previous;
    if (m_error.empty() && accept('|')) {
        auto connection = parseConnection();
        Ref<View> first = m_error.empty() ? parseView() : nullptr;
        if (first && connection) {
            connect(superviewOf(first), first, *connection, true);
            previous = first;
        }
    } else if (m_error.empty()) {
        previous = parseView();
    }
    if (previous)
        named.push_back(previous);
    while (m_error.empty() && !atEnd()) {
        auto connection = parseConnection();
        if (!connection)
            break;
        if (accept('|')) {
            connect(previous, superviewOf(previous), *connection, true);
            if (!atEnd())
                fail("Expected the end of the format after '|'");
            break;
        }
        Ref<View> next = parseView();
        if (!next)
            break;
        connect(previous, next, *connection, false);
        named.push_back(next);
        previous = next;
    }
    if (m_error.empty())
        addAlignment(named);
    if (!m_error.empty()) {
        std::string caret(std::min(m_position, m_format.size()), ' ');
        Log("Unable to parse constraint format: \n%@\n%@\n%@^", m_error, m_format, caret);
        return {};
    }
    return std::move(m_constraints);
}

void VisualFormatParser::fail(const std::string& reason) {
    if (m_error.empty())
        m_error = reason;
}

bool VisualFormatParser::accept(char c) {
    if (peek() != c || atEnd())
        return false;
    ++m_position;
    return true;
}

bool VisualFormatParser::expect(char c, const char* what) {
    if (accept(c))
        return true;
    fail(std::string("Expected ") + what);
    return false;
}

void VisualFormatParser::parseOrientation() {
    char c = peek();
    if ((c == 'H' || c == 'V') && m_position + 1 <= m_format.size()) {
        bool followedByColon = m_position + 1 < m_format.size() && m_format[m_position + 1] == ':';
        if (followedByColon) {
            m_vertical = c == 'V';
            m_position += 2;
            return;
        }
        if (c == 'V' || m_format.size() == 1 || m_format[m_position + 1] != '[') {
            ++m_position;
            fail(std::string("Expected ':' after '") + c + "' to specify " +
                 (c == 'V' ? "vertical" : "horizontal") + " arrangement");
        }
    }
}

std::string VisualFormatParser::parseIdentifier() {
    size_t start = m_position;
    if (!atEnd() && (std::isalpha(static_cast<unsigned char>(peek())) || peek() == '_')) {
        while (!atEnd() && (std::isalnum(static_cast<unsigned char>(peek())) || peek() == '_'))
            ++m_position;
    }
    return std::string(m_format.substr(start, m_position - start));
}

std::optional<double> VisualFormatParser::parseNumber() {
    std::string text;
    size_t i = m_position;
    if (i < m_format.size() && (m_format[i] == '-' || m_format[i] == '+'))
        text += m_format[i++];
    size_t digitsStart = i;
    while (i < m_format.size() &&
           (std::isdigit(static_cast<unsigned char>(m_format[i])) || m_format[i] == '.'))
        text += m_format[i++];
    if (i == digitsStart)
        return std::nullopt;
    if (i < m_format.size() && (m_format[i] == 'e' || m_format[i] == 'E')) {
        size_t j = i + 1;
        std::string exponent = "e";
        if (j < m_format.size() && (m_format[j] == '-' || m_format[j] == '+'))
            exponent += m_format[j++];
        size_t exponentDigits = j;
        while (j < m_format.size() && std::isdigit(static_cast<unsigned char>(m_format[j])))
            exponent += m_format[j++];
        if (j > exponentDigits) {
            text += exponent;
            i = j;
        }
    }
    char* end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (end == text.c_str())
        return std::nullopt;
    m_position = i;
    return value;
}

std::optional<double> VisualFormatParser::parseConstant(const char* what) {
    if (auto number = parseNumber())
        return number;
    std::string name = parseIdentifier();
    if (name.empty()) {
        fail(std::string("Expected a number or a metric name for ") + what);
        return std::nullopt;
    }
    auto metric = m_metrics.find(name);
    if (metric == m_metrics.end() || !metric->second.isNumber()) {
        fail("Unable to find metric with name " + name);
        return std::nullopt;
    }
    return metric->second.doubleValue();
}

Ref<View> VisualFormatParser::parseView() {
    if (!expect('[', "'[' to begin a view"))
        return nullptr;
    std::string name = parseIdentifier();
    if (name.empty()) {
        fail("Expected a view name");
        return nullptr;
    }
    auto found = m_views.find(name);
    Ref<View> view = found == m_views.end() ? nullptr : found->second.objectAs<View>();
    if (!view) {
        fail("Unable to find view with name " + name);
        return nullptr;
    }
    if (peek() == '(') {
        auto predicates = parsePredicateListWithParens(true);
        if (!m_error.empty())
            return nullptr;
        addSizePredicates(view, predicates);
    }
    if (!expect(']', "']' to end the view"))
        return nullptr;
    return view;
}

std::optional<VisualFormatParser::Connection> VisualFormatParser::parseConnection() {
    Connection connection;
    if (!accept('-')) {
        connection.predicates.push_back(Predicate{}); // flush: 0 apart
        if (peek() != '[' && peek() != '|') {
            fail("Expected a connection, '[' or '|'");
            return std::nullopt;
        }
        return connection;
    }
    if (peek() == '[' || peek() == '|') {
        connection.standard = true;
        return connection;
    }
    if (peek() == '(') {
        connection.predicates = parsePredicateListWithParens(false);
    } else {
        auto constant = parseConstant("the spacing");
        if (constant)
            connection.predicates.push_back(
                Predicate{LayoutRelation::Equal, *constant, nullptr, LayoutPriorityRequired});
    }
    if (!m_error.empty())
        return std::nullopt;
    if (!expect('-', "'-' to end the connection"))
        return std::nullopt;
    return connection;
}

std::vector<VisualFormatParser::Predicate> VisualFormatParser::parsePredicateListWithParens(bool allowViews) {
    std::vector<Predicate> predicates;
    accept('(');
    do {
        auto predicate = parsePredicate(allowViews);
        if (!predicate)
            return {};
        predicates.push_back(*predicate);
    } while (accept(','));
    expect(')', "')' to end the predicate list");
    return predicates;
}

std::optional<VisualFormatParser::Predicate> VisualFormatParser::parsePredicate(bool allowViews) {
    Predicate predicate;
    char c = peek();
    if (c == '=' || c == '<' || c == '>') {
        bool twoCharacters = m_position + 1 < m_format.size() && m_format[m_position + 1] == '=';
        if (!twoCharacters) {
            fail("Unknown relation. Must be ==, >=, or <=");
            return std::nullopt;
        }
        predicate.relation = c == '='   ? LayoutRelation::Equal
                             : c == '<' ? LayoutRelation::LessThanOrEqual
                                        : LayoutRelation::GreaterThanOrEqual;
        m_position += 2;
    }
    if (auto number = parseNumber()) {
        predicate.constant = *number;
    } else {
        std::string name = parseIdentifier();
        if (name.empty()) {
            fail("Expected a number, a metric name or a view name");
            return std::nullopt;
        }
        auto metric = m_metrics.find(name);
        auto view = m_views.find(name);
        if (metric != m_metrics.end() && metric->second.isNumber()) {
            predicate.constant = metric->second.doubleValue();
        } else if (allowViews && view != m_views.end() && view->second.objectAs<View>()) {
            predicate.view = view->second.objectAs<View>();
        } else {
            fail("Unable to find metric or view with name " + name);
            return std::nullopt;
        }
    }
    if (accept('@')) {
        auto priority = parseConstant("the priority");
        if (!priority)
            return std::nullopt;
        if (*priority < 1 || *priority > 1000) {
            fail("Priorities must be between 1 and 1000");
            return std::nullopt;
        }
        predicate.priority = static_cast<LayoutPriority>(*priority);
    }
    return predicate;
}

Ref<View> VisualFormatParser::superviewOf(const Ref<View>& view) {
    Ref<View> superview = view ? view->superview() : nullptr;
    if (!superview)
        fail("Unable to interpret '|' character, because the related view doesn't have a superview");
    return superview;
}

LayoutAttribute VisualFormatParser::leadingAttribute() const {
    if (m_vertical)
        return LayoutAttribute::Top;
    switch (m_options & LayoutFormatDirectionMask) {
    case LayoutFormatDirectionLeftToRight:
        return LayoutAttribute::Left;
    case LayoutFormatDirectionRightToLeft:
        return LayoutAttribute::Right;
    default:
        return LayoutAttribute::Leading;
    }
}

LayoutAttribute VisualFormatParser::trailingAttribute() const {
    if (m_vertical)
        return LayoutAttribute::Bottom;
    switch (m_options & LayoutFormatDirectionMask) {
    case LayoutFormatDirectionLeftToRight:
        return LayoutAttribute::Right;
    case LayoutFormatDirectionRightToLeft:
        return LayoutAttribute::Left;
    default:
        return LayoutAttribute::Trailing;
    }
}

// `earlier` comes first in the format, `later` after it. The later item's leading edge stands
// the connection's spacing after the earlier item's trailing edge (a superview contributes the
// edge on the same side instead). Right-to-left layout runs the other way, so it states the
// distance from the earlier item's far edge.
void VisualFormatParser::connect(const Ref<View>& earlier, const Ref<View>& later,
                                 const Connection& connection, bool toSuperview) {
    if (!earlier || !later)
        return;
    bool earlierIsSuperview = toSuperview && earlier == later->superview();
    bool laterIsSuperview = toSuperview && !earlierIsSuperview;
    LayoutAttribute earlierEdge = earlierIsSuperview ? leadingAttribute() : trailingAttribute();
    LayoutAttribute laterEdge = laterIsSuperview ? trailingAttribute() : leadingAttribute();
    bool rightToLeft =
        !m_vertical && (m_options & LayoutFormatDirectionMask) == LayoutFormatDirectionRightToLeft;

    std::vector<Predicate> predicates = connection.predicates;
    if (connection.standard)
        predicates = {Predicate{LayoutRelation::Equal,
                                toSuperview ? StandardSuperviewSpacing : StandardSpacing, nullptr,
                                LayoutPriorityRequired}};
    for (const Predicate& predicate : predicates) {
        auto constraint =
            rightToLeft ? LayoutConstraint::constraintWithItem(earlier, earlierEdge, predicate.relation,
                                                               later, laterEdge, 1.0, predicate.constant)
                        : LayoutConstraint::constraintWithItem(later, laterEdge, predicate.relation, earlier,
                                                               earlierEdge, 1.0, predicate.constant);
        constraint->setPriority(predicate.priority);
        m_constraints.push_back(constraint);
    }
}

void VisualFormatParser::addSizePredicates(const Ref<View>& view, const std::vector<Predicate>& predicates) {
    LayoutAttribute size = m_vertical ? LayoutAttribute::Height : LayoutAttribute::Width;
    for (const Predicate& predicate : predicates) {
        auto constraint = predicate.view
                              ? LayoutConstraint::constraintWithItem(view, size, predicate.relation,
                                                                     predicate.view, size, 1.0, 0)
                              : LayoutConstraint::constraintWithItem(view, size, predicate.relation, nullptr,
                                                                     LayoutAttribute::NotAnAttribute, 1.0,
                                                                     predicate.constant);
        constraint->setPriority(predicate.priority);
        m_constraints.push_back(constraint);
    }
}

void VisualFormatParser::addAlignment(const std::vector<Ref<View>>& views) {
    uint64_t alignment = m_options & LayoutFormatAlignmentMask;
    if (!alignment)
        return;
    for (int bit = 1; bit <= 12; ++bit) {
        if (!(alignment & (1ull << bit)))
            continue;
        auto attribute = static_cast<LayoutAttribute>(bit);
        bool horizontalEdge = isHorizontal(attribute);
        if (horizontalEdge != m_vertical) {
            fail(std::string("Options mask required views to be aligned on ") +
                 (horizontalEdge
                      ? "a vertical edge, which is not allowed for layout that is also horizontal"
                      : "a horizontal edge, which is not allowed for layout that is also vertical"));
            return;
        }
        for (size_t i = 1; i < views.size(); ++i)
            m_constraints.push_back(LayoutConstraint::constraintWithItem(
                views[i - 1], attribute, LayoutRelation::Equal, views[i], attribute, 1.0, 0));
    }
}

} // namespace ns
