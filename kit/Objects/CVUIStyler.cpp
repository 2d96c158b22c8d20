#include "kit/Objects/CVUIStyler.hpp"

#include "core/CoreLog.hpp"
#include "core/IsBlock.hpp"

namespace corvane {

namespace {
constexpr const char* SourceFile = "Objects/CVUIStyler";
constexpr const char* Function = "style:as:";
} // namespace

std::vector<std::string> componentsSeparatedBy(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t found; (found = text.find(separator, start)) != std::string::npos; start = found + 1)
        pieces.push_back(text.substr(start, found - start));
    pieces.push_back(text.substr(start));
    return pieces;
}

ns::Ref<CVUIStyler> CVUIStyler::make(ns::Dictionary definitions) {
    return ns::create<CVUIStyler>(std::move(definitions));
}

ns::Value CVUIStyler::definition(CVStylingArgumentBlock block) {
    return ns::Block::make(std::move(block));
}

ns::Value CVUIStyler::definition(CVStylingBlock block) {
    return ns::Block::make(std::move(block));
}

void CVUIStyler::style(const ns::Ref<ns::Object>& target, const std::string& statements) {
    setCurrentTarget(target);
    setCurrentStatements(statements);
    for (const std::string& statement : componentsSeparatedBy(statements, ';')) {
        setCurrentStatement(statement);
        if (!statement.empty())
            apply(target, statement);
    }
    setCurrentTarget(nullptr);
    setCurrentStatements(std::nullopt);
    setCurrentStatement(std::nullopt);
}

// One statement: look its name up and expand the alias or call the callback. A statement is
// applied completely, nested runs included, before the next one is looked at.
void CVUIStyler::apply(const ns::Ref<ns::Object>& target, const std::string& statement) {
    std::vector<std::string> parts = componentsSeparatedBy(statement, ':');
    if (parts.size() > 2) {
        CORE_LOG_WARN(SourceFile, Function, "Invalid attribute %@", statement);
        return;
    }
    const bool hasArguments = parts.size() == 2;
    const std::string key = hasArguments ? parts[0] + ":" : statement;
    const ns::Value value = definitionForKey(key);

    if (const std::string* alias = value.string()) {
        style(target, *alias);
        return;
    }
    if (core::isBlock(value)) {
        const ns::Block& block = *value.block();
        // A plain callback called with arguments ignores them; an argument callback called
        // without any gets an empty text.
        auto withArguments = block.as<void(CVUIStyler&, const ns::Ref<ns::Object>&, const std::string&)>();
        auto plain = block.as<void(CVUIStyler&, const ns::Ref<ns::Object>&)>();
        if (withArguments || plain) {
            if (hasArguments) {
                setCurrentArgs(componentsSeparatedBy(parts[1], ','));
                withArguments ? withArguments(*this, target, parts[1]) : plain(*this, target);
            } else {
                setCurrentArgs(std::nullopt);
                plain ? plain(*this, target) : withArguments(*this, target, std::string());
            }
            return;
        }
    }
    CORE_LOG_WARN(SourceFile, Function, "Cannot style with %@ (%@)", key, value);
}

ns::Value CVUIStyler::definitionForKey(const std::string& key) const {
    std::lock_guard lock(m_mutex);
    auto found = m_definitions.find(key);
    return found == m_definitions.end() ? ns::Value() : found->second;
}

ns::Dictionary CVUIStyler::stylingDefinitions() const {
    std::lock_guard lock(m_mutex);
    return m_definitions;
}

void CVUIStyler::setStylingDefinitions(ns::Dictionary definitions) {
    std::lock_guard lock(m_mutex);
    m_definitions = std::move(definitions);
}

ns::Ref<ns::Object> CVUIStyler::currentTarget() const {
    std::lock_guard lock(m_mutex);
    return m_currentTarget;
}

std::optional<std::string> CVUIStyler::currentStatements() const {
    std::lock_guard lock(m_mutex);
    return m_currentStatements;
}

std::optional<std::string> CVUIStyler::currentStatement() const {
    std::lock_guard lock(m_mutex);
    return m_currentStatement;
}

std::optional<std::vector<std::string>> CVUIStyler::currentArgs() const {
    std::lock_guard lock(m_mutex);
    return m_currentArgs;
}

void CVUIStyler::setCurrentTarget(ns::Ref<ns::Object> target) {
    std::lock_guard lock(m_mutex);
    m_currentTarget = std::move(target);
}

void CVUIStyler::setCurrentStatements(std::optional<std::string> statements) {
    std::lock_guard lock(m_mutex);
    m_currentStatements = std::move(statements);
}

void CVUIStyler::setCurrentStatement(std::optional<std::string> statement) {
    std::lock_guard lock(m_mutex);
    m_currentStatement = std::move(statement);
}

void CVUIStyler::setCurrentArgs(std::optional<std::vector<std::string>> arguments) {
    std::lock_guard lock(m_mutex);
    m_currentArgs = std::move(arguments);
}

} // namespace corvane
