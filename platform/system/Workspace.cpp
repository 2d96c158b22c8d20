#include "platform/system/Workspace.hpp"

#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

extern char** environ;

namespace ns {

namespace {

std::string absolutePath(const std::string& path) {
    std::error_code error;
    auto absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

} // namespace

Ref<Workspace> Workspace::shared() {
    static const Ref<Workspace> workspace = create<Workspace>();
    return workspace;
}

bool Workspace::launch(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        return false;
    std::vector<char*> argv;
    for (const auto& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0)
        return false;
    // Reap the child when it ends so that it never lingers as a zombie.
    std::thread([pid] {
        int status = 0;
        waitpid(pid, &status, 0);
    }).detach();
    return true;
}

std::string Workspace::fileURL(const std::string& absolutePath) {
    static const char* hex = "0123456789ABCDEF";
    std::string url = "file://";
    for (unsigned char c : absolutePath) {
        if (std::isalnum(c) || c == '/' || c == '-' || c == '_' || c == '.' || c == '~')
            url += static_cast<char>(c);
        else
            url += {'%', hex[c >> 4], hex[c & 15]};
    }
    return url;
}

bool Workspace::openFile(const std::string& path) {
    if (path.empty())
        return false;
    Launcher launcher;
    {
        std::lock_guard lock(m_mutex);
        launcher = m_launcher;
    }
    // An absolute path never starts with '-', so the opener cannot take it for an option.
    return launcher({"xdg-open", absolutePath(path)});
}

bool Workspace::selectFile(const std::string& path) {
    if (path.empty())
        return false;
    Launcher launcher;
    {
        std::lock_guard lock(m_mutex);
        launcher = m_launcher;
    }
    std::string absolute = absolutePath(path);
    if (launcher({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.FileManager1",
                  "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1.ShowItems",
                  "array:string:" + fileURL(absolute), "string:"}))
        return true;
    return launcher({"xdg-open", std::filesystem::path(absolute).parent_path().string()});
}

void Workspace::noteFileSystemChanged(const std::string& path) {
    std::lock_guard lock(m_mutex);
    ++m_changeCount;
    m_lastChangedPath = path;
}

uint64_t Workspace::fileSystemChangeCount() const {
    std::lock_guard lock(m_mutex);
    return m_changeCount;
}

std::string Workspace::lastChangedPath() const {
    std::lock_guard lock(m_mutex);
    return m_lastChangedPath;
}

void Workspace::setLauncher(Launcher launcher) {
    std::lock_guard lock(m_mutex);
    m_launcher = launcher ? std::move(launcher) : Launcher(&Workspace::launch);
}

} // namespace ns
