#include "platform/system/VnodeSnapshot.hpp"

#include "platform/system/KernelQueue.hpp"

#include <sys/stat.h>

namespace ns {

namespace {

bool sameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

VnodeSnapshot VnodeSnapshot::of(int descriptor) {
    VnodeSnapshot snapshot;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return snapshot;
    }
    snapshot.m_valid = true;
    snapshot.m_mode = status.st_mode;
    snapshot.m_owner = status.st_uid;
    snapshot.m_group = status.st_gid;
    snapshot.m_links = status.st_nlink;
    snapshot.m_size = status.st_size;
    snapshot.m_modified = status.st_mtim;
    snapshot.m_changed = status.st_ctim;
    return snapshot;
}

bool VnodeSnapshot::isDirectory() const {
    return m_valid && S_ISDIR(m_mode);
}

uint32_t VnodeSnapshot::countedChanges(const VnodeSnapshot& before) const {
    if (!m_valid || !before.m_valid) {
        return 0;
    }
    uint32_t notes = 0;
    if (!isDirectory() && m_size > before.m_size) {
        notes |= NOTE_WRITE | NOTE_EXTEND;
    }
    if (m_links != before.m_links) {
        notes |= NOTE_LINK;
        if (m_links == 0) {
            notes |= NOTE_DELETE;
        }
    }
    return notes;
}

uint32_t VnodeSnapshot::inferredChanges(const VnodeSnapshot& before, bool renamed) const {
    if (!m_valid || !before.m_valid) {
        return 0;
    }
    uint32_t notes = countedChanges(before);
    bool modified = !sameTime(m_modified, before.m_modified);
    if (modified || (!isDirectory() && m_size != before.m_size)) {
        notes |= NOTE_WRITE;
    }
    if (m_mode != before.m_mode || m_owner != before.m_owner || m_group != before.m_group) {
        notes |= NOTE_ATTRIB;
    }
    // Writes, links and renames all move the status-change time too; only when none of them
    // happened is a moved status time a change of attributes (times set, extended attributes).
    if (!sameTime(m_changed, before.m_changed) && !modified && m_links == before.m_links && !renamed) {
        notes |= NOTE_ATTRIB;
    }
    return notes;
}

} // namespace ns
