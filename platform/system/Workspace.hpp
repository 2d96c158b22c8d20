#pragma once

#include "platform/foundation/NotificationCenter.hpp"
#include "platform/foundation/Object.hpp"

#include <functional>
#include <string>
#include <vector>

namespace ns {

// The desktop's services for files: opening a file with its default application, showing it in
// the file browser, hearing that the file system changed, and a notification centre of its own.
// Programs are started directly with an argument list, never through a shell, so a file name
// is passed on exactly as it is.
class Workspace : public Object {
public:
    // Starts a program from its argument list; answers whether it could be started.
    using Launcher = std::function<bool(const std::vector<std::string>& arguments)>;

    static Ref<Workspace> shared();

    // Opens the file with its default application ("xdg-open" with the file's absolute path).
    // False for an empty path or when the program could not be started.
    bool openFile(const std::string& path);
    // Shows the file selected in the file browser (the desktop file manager's ShowItems call
    // over the session bus); when that cannot be started, opens the folder that holds the file.
    bool selectFile(const std::string& path);
    // A hint that something changed at the path; remembered for whoever asks.
    void noteFileSystemChanged(const std::string& path);
    uint64_t fileSystemChangeCount() const;
    std::string lastChangedPath() const;

    const Ref<NotificationCenter>& notificationCenter() const { return m_notificationCenter; }

    // Replaces the launcher (tests and headless runs); an empty one restores the real launcher.
    void setLauncher(Launcher launcher);
    // The real launcher: starts the program detached, searching PATH, without a shell.
    static bool launch(const std::vector<std::string>& arguments);

    // "file:///..." with every byte outside the unreserved set percent-encoded.
    static std::string fileURL(const std::string& absolutePath);

private:
    Ref<NotificationCenter> m_notificationCenter = NotificationCenter::make();
    mutable std::mutex m_mutex;
    Launcher m_launcher = &Workspace::launch;
    uint64_t m_changeCount = 0;
    std::string m_lastChangedPath;
};

} // namespace ns
