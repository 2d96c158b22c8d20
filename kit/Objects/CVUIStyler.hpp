#pragma once

#include "platform/foundation/Object.hpp"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

class CVUIStyler;

// A definition that takes arguments: (styler, target, the raw argument text).
using CVStylingArgumentBlock =
    std::function<void(CVUIStyler&, const ns::Ref<ns::Object>&, const std::string&)>;
// A definition that takes none: (styler, target).
using CVStylingBlock = std::function<void(CVUIStyler&, const ns::Ref<ns::Object>&)>;

// Applies statement strings such as "width:320;fitWidth;border:1,0,1,0" to a target through a
// table of named definitions. A definition is an alias (a statement string applied by a nested
// run) or a callback; names that take arguments carry a trailing colon ("width:").
//
// Statements are separated by ";", a name from its argument text by one ":", arguments by ",".
// Nothing is trimmed or unquoted. A bad statement is logged as a warning and skipped.
class CVUIStyler : public ns::Object {
public:
    explicit CVUIStyler(ns::Dictionary definitions) : m_definitions(std::move(definitions)) {}
    static ns::Ref<CVUIStyler> make(ns::Dictionary definitions);

    // A definition value for a callback, ready to go in the table.
    static ns::Value definition(CVStylingArgumentBlock block);
    static ns::Value definition(CVStylingBlock block);

    // Applies the statements to the target, one after the other.
    void style(const ns::Ref<ns::Object>& target, const std::string& statements);

    // Each property is read and written under its own guard; a run keeps its state in them.
    ns::Dictionary stylingDefinitions() const;
    void setStylingDefinitions(ns::Dictionary definitions);
    ns::Ref<ns::Object> currentTarget() const;
    std::optional<std::string> currentStatements() const;
    std::optional<std::string> currentStatement() const;
    // The arguments of the most recent callback call; nil when it had none. Kept after a run.
    std::optional<std::vector<std::string>> currentArgs() const;

private:
    void setCurrentTarget(ns::Ref<ns::Object> target);
    void setCurrentStatements(std::optional<std::string> statements);
    void setCurrentStatement(std::optional<std::string> statement);
    void setCurrentArgs(std::optional<std::vector<std::string>> arguments);
    void apply(const ns::Ref<ns::Object>& target, const std::string& statement);
    // Looked up at every statement, so a table replaced during a run is seen by the next one.
    ns::Value definitionForKey(const std::string& key) const;

    mutable std::mutex m_mutex;
    ns::Dictionary m_definitions;
    ns::Ref<ns::Object> m_currentTarget;
    std::optional<std::string> m_currentStatements;
    std::optional<std::string> m_currentStatement;
    std::optional<std::vector<std::string>> m_currentArgs;
};

// Splits at every separator, keeping empty pieces; an empty text gives one empty piece.
std::vector<std::string> componentsSeparatedBy(const std::string& text, char separator);

} // namespace corvane
