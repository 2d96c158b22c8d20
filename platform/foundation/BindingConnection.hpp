#pragma once

#include "platform/foundation/Object.hpp"

#include <string>

namespace ns {

// One bound property: keeps `binding` of the bound object equal to `keyPath` of the source,
// and writes changes of the bound property back to the source.
class BindingConnection final : public Object {
public:
    BindingConnection(Object& bound, std::string binding, Ref<Object> source, std::string keyPath,
                      Dictionary options);
    ~BindingConnection() override;

    void didInit() override;
    // Ends both observations; the connection does nothing afterwards.
    void disconnect();
    Value info() const;

    void observeValueForKeyPath(const std::string& keyPath, Object* object, const Dictionary& change,
                                void* context) override;

private:
    Object& m_bound;
    std::string m_binding;
    Ref<Object> m_source;
    std::string m_keyPath;
    Dictionary m_options;
    bool m_connected = false;
    bool m_updating = false; // guards against echoing a change back to where it came from
};

} // namespace ns
