#pragma once

#include "platform/foundation/Data.hpp"
#include "platform/foundation/Object.hpp"

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace ns {

// Persistent settings: a dictionary of property-list values kept in a binary property-list file.
// Reads answer from memory; changes are written by synchronize() (and when the object goes away)
// to a temporary file that is then renamed over the old one, so a reader never sees half a file.
// synchronize() also takes in what other processes wrote meanwhile; for a key changed on both
// sides since the last synchronisation, this process's value wins. Safe to use from any thread.
class UserDefaults : public Object {
public:
    // The folder under the user's configuration folder that holds the files.
    static constexpr const char* ApplicationFolder = "corvane";

    explicit UserDefaults(std::string path);
    ~UserDefaults() override;

    // The shared defaults of this process, in the file standardPath() names, made on first use.
    static Ref<UserDefaults> standardUserDefaults();
    // $XDG_CONFIG_HOME (or ~/.config) / ApplicationFolder / <domain>.plist, unless a file was set.
    static std::string standardPath();
    // The name the standard file is named for; the process name until set.
    static std::string standardDomain();
    // Each of these synchronises and drops the current shared defaults, so the next
    // standardUserDefaults() reads the new file. A nullopt path goes back to the computed one.
    static void setStandardDomain(std::string domain);
    static void setStandardPath(std::optional<std::string> path);

    // Defaults on a file of their own; the file is read now (a missing or unreadable file gives
    // empty defaults, the latter with a log line).
    static Ref<UserDefaults> make(std::string path);

    const std::string& path() const { return m_path; }

    // --- Reading: a missing key, or a value of the wrong kind, gives nil, 0, false ----------
    Value objectForKey(std::string_view key) const;
    // Strings as they are, numbers as their text; nil otherwise.
    std::optional<std::string> stringForKey(std::string_view key) const;
    // Numbers and strings by the platform's conversions ("YES", "1", "true").
    bool boolForKey(std::string_view key) const;
    int64_t integerForKey(std::string_view key) const;
    double doubleForKey(std::string_view key) const;
    float floatForKey(std::string_view key) const;
    Ref<Data> dataForKey(std::string_view key) const;
    std::optional<Array> arrayForKey(std::string_view key) const;
    std::optional<Dictionary> dictionaryForKey(std::string_view key) const;
    // Every stored value, over the registered fallbacks.
    Dictionary dictionaryRepresentation() const;

    // Fallback values answered for keys that hold nothing; never written to the file.
    void registerDefaults(const Dictionary& defaults);

    // --- Writing ----------------------------------------------------------------------------
    // Stores a property-list value (bool, number, string, Data, arrays and dictionaries of
    // those). nil removes the key. Anything else is logged and refused (false).
    bool setObject(const Value& value, std::string_view key);
    void setBool(bool value, std::string_view key) { setObject(value, key); }
    void setInteger(int64_t value, std::string_view key) { setObject(value, key); }
    void setDouble(double value, std::string_view key) { setObject(value, key); }
    void setFloat(float value, std::string_view key) { setObject(value, key); }
    void removeObjectForKey(std::string_view key);

    // Merges with the file and writes this process's changes. False (with a log line) when the
    // file cannot be written; the changes are kept for the next attempt.
    bool synchronize();

private:
    Value lookup(std::string_view key) const;
    // The file's dictionary; nullopt when it exists but cannot be read as one.
    std::optional<Dictionary> readFile() const;
    bool writeFile(const Dictionary& values) const;

    std::string m_path;
    mutable std::mutex m_mutex;
    Dictionary m_values;
    Dictionary m_registered;
    std::set<std::string, std::less<>> m_changed;
};

} // namespace ns
