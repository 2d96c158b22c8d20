#include "core/CoreLogCapture.hpp"

namespace corvane::core {

CoreLogCapture::CoreLogCapture(bool passThrough) : m_passThrough(passThrough) {
    // Records logged before the capture existed are not its business.
    CoreLog::flush();
    m_previous = CoreLog::installCapture(this);
}

CoreLogCapture::~CoreLogCapture() {
    // The writer thread may still be delivering to this capture; let it finish first.
    CoreLog::flush();
    CoreLog::removeCapture(this, m_previous);
}

bool CoreLogCapture::receive(const CoreLogRecord& record) {
    std::lock_guard lock(m_mutex);
    m_records.push_back(record);
    return m_passThrough;
}

std::vector<CoreLogRecord> CoreLogCapture::records() const {
    std::lock_guard lock(m_mutex);
    return m_records;
}

std::vector<std::string> CoreLogCapture::messages() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> out;
    for (const auto& record : m_records)
        out.push_back(record.message);
    return out;
}

bool CoreLogCapture::contains(std::string_view text) const {
    std::lock_guard lock(m_mutex);
    for (const auto& record : m_records)
        if (record.message.find(text) != std::string::npos)
            return true;
    return false;
}

void CoreLogCapture::clear() {
    std::lock_guard lock(m_mutex);
    m_records.clear();
}

} // namespace corvane::core
