#pragma once

#include "platform/layout/LayoutConstraint.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// Reads one visual-format string into constraints:
//   (H:|V:)? (|connection)? [view(predicates)] (connection [view(predicates)])* (connection|)?
// A connection is empty (flush), "-" (standard spacing: 8 between views, 20 to the superview)
// or "-predicates-". Predicates are "constant", "metric" or "(relation? constant-or-view (@priority)?, ...)".
class VisualFormatParser {
public:
    VisualFormatParser(std::string_view format, uint64_t options, const Dictionary& metrics,
                       const Dictionary& views);

    // The constraints, or none when the format is malformed; the reason is logged and kept.
    std::vector<Ref<LayoutConstraint>> parse();
    const std::string& error() const { return m_error; }

    static constexpr double StandardSpacing = 8;
    static constexpr double StandardSuperviewSpacing = 20;

private:
    struct Predicate {
        LayoutRelation relation = LayoutRelation::Equal;
        double constant = 0;
        Ref<View> view; // set when the predicate names a view
        LayoutPriority priority = LayoutPriorityRequired;
    };
    struct Connection {
        bool standard = false; // "-" alone
        std::vector<Predicate> predicates;
    };

    void fail(const std::string& reason);
    bool atEnd() const { return m_position >= m_format.size(); }
    char peek() const { return atEnd() ? '\0' : m_format[m_position]; }
    bool accept(char c);
    bool expect(char c, const char* what);

    void parseOrientation();
    Ref<View> parseView();
    std::optional<Connection> parseConnection();
    std::vector<Predicate> parsePredicateListWithParens(bool allowViews);
    std::optional<Predicate> parsePredicate(bool allowViews);
    std::string parseIdentifier();
    std::optional<double> parseNumber();
    std::optional<double> parseConstant(const char* what);

    void connect(const Ref<View>& before, const Ref<View>& after, const Connection& connection,
                 bool toSuperview);
    void addSizePredicates(const Ref<View>& view, const std::vector<Predicate>& predicates);
    void addAlignment(const std::vector<Ref<View>>& views);
    LayoutAttribute leadingAttribute() const;
    LayoutAttribute trailingAttribute() const;
    Ref<View> superviewOf(const Ref<View>& view);

    std::string_view m_format;
    uint64_t m_options;
    const Dictionary& m_metrics;
    const Dictionary& m_views;
    size_t m_position = 0;
    bool m_vertical = false;
    std::string m_error;
    std::vector<Ref<LayoutConstraint>> m_constraints;
};

} // namespace ns
