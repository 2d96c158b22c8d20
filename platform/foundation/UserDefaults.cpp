#include "platform/foundation/UserDefaults.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/PropertyListSerialization.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ns {

namespace {

struct StandardSlot {
    std::mutex mutex;
    Ref<UserDefaults> defaults;
    std::optional<std::string> domain;
    std::optional<std::string> path;
};

StandardSlot& standardSlot() {
    // Never destroyed; the defaults themselves are written at exit by the handler below.
    static StandardSlot* slot = new StandardSlot;
    return *slot;
}

void synchronizeStandardAtExit() {
    Ref<UserDefaults> defaults;
    {
        std::lock_guard lock(standardSlot().mutex);
        defaults = standardSlot().defaults;
    }
    if (defaults)
        defaults->synchronize();
}

std::string configurationFolder() {
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && xdg[0] == '/')
        return xdg;
    const char* home = std::getenv("HOME");
    if (!home || !*home) {
        if (passwd* entry = getpwuid(getuid()))
            home = entry->pw_dir;
    }
    return std::string(home && *home ? home : "/tmp") + "/.config";
}

std::string processName() {
    std::string name = program_invocation_short_name ? program_invocation_short_name : "";
    return name.empty() ? "process" : name;
}

// Drops the shared defaults after writing them; the next request makes new ones.
void replaceStandard(const std::function<void(StandardSlot&)>& change) {
    Ref<UserDefaults> old;
    {
        std::lock_guard lock(standardSlot().mutex);
        old = std::move(standardSlot().defaults);
        change(standardSlot());
    }
    if (old)
        old->synchronize();
}

} // namespace

UserDefaults::UserDefaults(std::string path) : m_path(std::move(path)) {
    if (auto values = readFile())
        m_values = std::move(*values);
    else
        Log("UserDefaults: the file %@ is not a property list of settings; starting empty.", m_path);
}

UserDefaults::~UserDefaults() {
    if (!m_changed.empty())
        synchronize();
}

Ref<UserDefaults> UserDefaults::make(std::string path) {
    return create<UserDefaults>(std::move(path));
}

Ref<UserDefaults> UserDefaults::standardUserDefaults() {
    StandardSlot& slot = standardSlot();
    std::lock_guard lock(slot.mutex);
    if (!slot.defaults) {
        static const bool registered = std::atexit(synchronizeStandardAtExit) == 0;
        (void)registered;
        std::string path = slot.path ? *slot.path
                                     : configurationFolder() + "/" + ApplicationFolder + "/" +
                                           (slot.domain ? *slot.domain : processName()) + ".plist";
        slot.defaults = make(std::move(path));
    }
    return slot.defaults;
}

std::string UserDefaults::standardPath() {
    StandardSlot& slot = standardSlot();
    std::lock_guard lock(slot.mutex);
    if (slot.path)
        return *slot.path;
    return configurationFolder() + "/" + ApplicationFolder + "/" +
           (slot.domain ? *slot.domain : processName()) + ".plist";
}

std::string UserDefaults::standardDomain() {
    StandardSlot& slot = standardSlot();
    std::lock_guard lock(slot.mutex);
    return slot.domain ? *slot.domain : processName();
}

void UserDefaults::setStandardDomain(std::string domain) {
    replaceStandard([&](StandardSlot& slot) { slot.domain = std::move(domain); });
}

void UserDefaults::setStandardPath(std::optional<std::string> path) {
    replaceStandard([&](StandardSlot& slot) { slot.path = std::move(path); });
}

// --- Reading -----------------------------------------------------------------------------------

Value UserDefaults::lookup(std::string_view key) const {
    std::lock_guard lock(m_mutex);
    if (auto found = m_values.find(key); found != m_values.end())
        return found->second;
    if (auto found = m_registered.find(key); found != m_registered.end())
        return found->second;
    return {};
}

Value UserDefaults::objectForKey(std::string_view key) const {
    return lookup(key);
}

std::optional<std::string> UserDefaults::stringForKey(std::string_view key) const {
    Value value = lookup(key);
    if (value.isString())
        return *value.string();
    if (value.isNumber())
        return value.stringValue();
    return std::nullopt;
}

bool UserDefaults::boolForKey(std::string_view key) const {
    return lookup(key).boolValue();
}

int64_t UserDefaults::integerForKey(std::string_view key) const {
    return lookup(key).integerValue();
}

double UserDefaults::doubleForKey(std::string_view key) const {
    return lookup(key).doubleValue();
}

float UserDefaults::floatForKey(std::string_view key) const {
    return lookup(key).floatValue();
}

Ref<Data> UserDefaults::dataForKey(std::string_view key) const {
    return lookup(key).objectAs<Data>();
}

std::optional<Array> UserDefaults::arrayForKey(std::string_view key) const {
    Value value = lookup(key);
    if (!value.isArray())
        return std::nullopt;
    return value.array();
}

std::optional<Dictionary> UserDefaults::dictionaryForKey(std::string_view key) const {
    Value value = lookup(key);
    if (!value.isDictionary())
        return std::nullopt;
    return value.dictionary();
}

Dictionary UserDefaults::dictionaryRepresentation() const {
    std::lock_guard lock(m_mutex);
    Dictionary all = m_registered;
    for (const auto& [key, value] : m_values)
        all[key] = value;
    return all;
}

void UserDefaults::registerDefaults(const Dictionary& defaults) {
    std::lock_guard lock(m_mutex);
    for (const auto& [key, value] : defaults)
        m_registered[key] = value;
}

// --- Writing -----------------------------------------------------------------------------------

bool UserDefaults::setObject(const Value& value, std::string_view key) {
    if (value.isNil()) {
        removeObjectForKey(key);
        return true;
    }
    if (!PropertyListSerialization::isPropertyList(value)) {
        Log("UserDefaults: attempt to insert non-property list object %@ for key %@", value, key);
        return false;
    }
    std::lock_guard lock(m_mutex);
    m_values[std::string(key)] = value;
    m_changed.emplace(key);
    return true;
}

void UserDefaults::removeObjectForKey(std::string_view key) {
    std::lock_guard lock(m_mutex);
    if (auto found = m_values.find(key); found != m_values.end())
        m_values.erase(found);
    m_changed.emplace(key);
}

bool UserDefaults::synchronize() {
    std::lock_guard lock(m_mutex);
    std::optional<Dictionary> disk = readFile();
    if (!disk) {
        Log("UserDefaults: the file %@ is not a property list of settings; it will be replaced.", m_path);
        disk.emplace();
    }
    Dictionary merged = std::move(*disk);
    for (const std::string& key : m_changed) {
        if (auto found = m_values.find(key); found != m_values.end())
            merged[key] = found->second;
        else if (auto old = merged.find(key); old != merged.end())
            merged.erase(old);
    }
    if (!m_changed.empty()) {
        if (!writeFile(merged))
            return false;
        m_changed.clear();
    }
    m_values = std::move(merged);
    return true;
}

std::optional<Dictionary> UserDefaults::readFile() const {
    int fd = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return errno == ENOENT ? std::optional<Dictionary>(Dictionary{}) : std::nullopt;
    std::vector<uint8_t> bytes;
    uint8_t buffer[8192];
    while (true) {
        ssize_t count = ::read(fd, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        bytes.insert(bytes.end(), buffer, buffer + count);
    }
    ::close(fd);
    if (bytes.empty())
        return Dictionary{};
    Value contents = PropertyListSerialization::propertyListWithData(*Data::make(std::move(bytes)));
    if (!contents.isDictionary())
        return std::nullopt;
    return contents.dictionary();
}

bool UserDefaults::writeFile(const Dictionary& values) const {
    Ref<Error> error;
    Ref<Data> data = PropertyListSerialization::dataWithPropertyList(values, &error);
    if (!data) {
        Log("UserDefaults: cannot encode settings for %@: %@", m_path, error);
        return false;
    }
    std::filesystem::path target(m_path);
    std::error_code ignored;
    if (target.has_parent_path())
        std::filesystem::create_directories(target.parent_path(), ignored);

    std::string temporary = m_path + ".XXXXXX";
    int fd = ::mkstemp(temporary.data());
    if (fd < 0) {
        Log("UserDefaults: cannot write %@: %s", m_path, std::strerror(errno));
        return false;
    }
    const uint8_t* bytes = data->bytes().data();
    size_t left = data->length();
    bool ok = true;
    while (left > 0) {
        ssize_t written = ::write(fd, bytes, left);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            ok = false;
            break;
        }
        bytes += written;
        left -= static_cast<size_t>(written);
    }
    ok = ok && ::fchmod(fd, 0600) == 0 && ::fsync(fd) == 0;
    ok = ::close(fd) == 0 && ok;
    if (ok && ::rename(temporary.c_str(), m_path.c_str()) != 0)
        ok = false;
    if (!ok) {
        Log("UserDefaults: cannot write %@: %s", m_path, std::strerror(errno));
        ::unlink(temporary.c_str());
    }
    return ok;
}

} // namespace ns
