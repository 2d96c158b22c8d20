#pragma once

#include "platform/foundation/Object.hpp"

#include <string>

namespace ns {

inline constexpr const char* LocalizedDescriptionKey = "NSLocalizedDescription";
inline constexpr const char* CocoaErrorDomain = "NSCocoaErrorDomain";
constexpr int64_t KeyValueValidationError = 1024;

// A failure reported through an error out-parameter: a domain, a code and user info.
class Error : public Object {
public:
    Error(std::string domain, int64_t code, Dictionary userInfo = {})
        : m_domain(std::move(domain)), m_code(code), m_userInfo(std::move(userInfo)) {}

    static Ref<Error> make(std::string domain, int64_t code, Dictionary userInfo = {}) {
        return create<Error>(std::move(domain), code, std::move(userInfo));
    }

    const std::string& domain() const { return m_domain; }
    int64_t code() const { return m_code; }
    const Dictionary& userInfo() const { return m_userInfo; }
    // The user-info description when there is one, else a generic sentence naming domain and code.
    std::string localizedDescription() const;
    std::string description() const override;

private:
    std::string m_domain;
    int64_t m_code;
    Dictionary m_userInfo;
};

} // namespace ns
