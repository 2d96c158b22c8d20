#include "kit/Objects/CVPathQueueEntry.hpp"

#include "platform/foundation/Format.hpp"
#include "platform/system/KernelQueue.hpp"

namespace corvane {

ns::Ref<CVPathQueueEntry> CVPathQueueEntry::make(std::string path, uint32_t subscriptionFlags) {
    int descriptor = ns::openForEvents(path.c_str(), ns::O_EVTONLY, 0);
    if (descriptor < 0) {
        return nullptr;
    }
    return ns::create<CVPathQueueEntry>(std::move(path), descriptor, subscriptionFlags);
}

CVPathQueueEntry::CVPathQueueEntry(std::string path, int32_t watchedFD, uint32_t subscriptionFlags)
    : m_path(std::move(path)), m_watchedFD(watchedFD), m_subscriptionFlags(subscriptionFlags) {}

CVPathQueueEntry::~CVPathQueueEntry() {
    if (m_watchedFD >= 0) {
        ns::closeDescriptor(m_watchedFD);
    }
    m_watchedFD = -1;
}

std::string CVPathQueueEntry::path() const {
    std::lock_guard lock(m_mutex);
    return m_path;
}

void CVPathQueueEntry::setPath(std::string path) {
    std::lock_guard lock(m_mutex);
    m_path = std::move(path);
}

int32_t CVPathQueueEntry::watchedFD() const {
    std::lock_guard lock(m_mutex);
    return m_watchedFD;
}

void CVPathQueueEntry::setWatchedFD(int32_t watchedFD) {
    std::lock_guard lock(m_mutex);
    m_watchedFD = watchedFD;
}

uint32_t CVPathQueueEntry::subscriptionFlags() const {
    std::lock_guard lock(m_mutex);
    return m_subscriptionFlags;
}

void CVPathQueueEntry::setSubscriptionFlags(uint32_t subscriptionFlags) {
    std::lock_guard lock(m_mutex);
    m_subscriptionFlags = subscriptionFlags;
}

std::string CVPathQueueEntry::description() const {
    std::lock_guard lock(m_mutex);
    return ns::format("%@ path = %@, watchedFD = %d, subscriptionFlags = 0x%02x", ns::Object::description(),
                      m_path, m_watchedFD, m_subscriptionFlags);
}

} // namespace corvane
