#pragma once

#include <stdexcept>
#include <string>

namespace ns {

// The platform's exception for programming errors: a name that says what kind of misuse it
// was and a reason for the reader. Everything else in the platform reports failures by
// logging or by returning nil, false or NotFound instead of throwing.
class Exception : public std::runtime_error {
public:
    Exception(std::string name, std::string reason);

    const std::string& name() const { return m_name; }
    const std::string& reason() const { return m_reason; }
    std::string description() const;

    // Throws an Exception with this name and reason.
    [[noreturn]] static void raise(std::string name, std::string reason);

private:
    std::string m_name;
    std::string m_reason;
};

} // namespace ns
