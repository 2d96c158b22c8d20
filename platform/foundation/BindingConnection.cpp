#include "platform/foundation/BindingConnection.hpp"

namespace ns {

namespace {
int sourceContext;
int boundContext;
} // namespace

BindingConnection::BindingConnection(Object& bound, std::string binding, Ref<Object> source,
                                     std::string keyPath, Dictionary options)
    : m_bound(bound), m_binding(std::move(binding)), m_source(std::move(source)),
      m_keyPath(std::move(keyPath)), m_options(std::move(options)) {}

BindingConnection::~BindingConnection() {
    disconnect();
}

void BindingConnection::didInit() {
    Object::didInit();
    m_connected = true;
    m_updating = true;
    m_bound.setValueForKey(m_source->valueForKeyPath(m_keyPath), m_binding);
    m_updating = false;
    m_source->addObserver(*this, m_keyPath, 0, &sourceContext);
    m_bound.addObserver(*this, m_binding, 0, &boundContext);
}

void BindingConnection::disconnect() {
    if (!m_connected)
        return;
    m_connected = false;
    m_source->removeObserver(*this, m_keyPath, &sourceContext);
    m_bound.removeObserver(*this, m_binding, &boundContext);
}

Value BindingConnection::info() const {
    return Dictionary{
        {ObservedObjectKey, m_source}, {ObservedKeyPathKey, m_keyPath}, {OptionsKey, m_options}};
}

void BindingConnection::observeValueForKeyPath(const std::string&, Object*, const Dictionary&,
                                               void* context) {
    if (!m_connected || m_updating)
        return;
    m_updating = true;
    if (context == &sourceContext)
        m_bound.setValueForKey(m_source->valueForKeyPath(m_keyPath), m_binding);
    else if (context == &boundContext)
        m_source->setValueForKeyPath(m_bound.valueForKey(m_binding), m_keyPath);
    m_updating = false;
}

} // namespace ns
