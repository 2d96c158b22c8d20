#pragma once

#include <cstdint>
#include <ctime>
#include <sys/types.h>

namespace ns {

// The facts about a watched file that tell one state of it from the next. A queue keeps one per
// registration, to grade a notification (did the size grow? did the link count move?) and to work
// out which changes happened when their notifications were lost.
class VnodeSnapshot {
public:
    VnodeSnapshot() = default;

    // The status of an open descriptor; an invalid snapshot when fstat fails.
    static VnodeSnapshot of(int descriptor);

    bool isValid() const { return m_valid; }
    bool isDirectory() const;
    uint64_t linkCount() const { return m_links; }
    int64_t size() const { return m_size; }

    // NOTE_ bits that the size and link count alone imply, whatever notification prompted the look:
    // a file that grew was written and extended, a moved link count is NOTE_LINK, and a link count
    // that reached 0 means the file is gone. A folder's size says nothing and is not compared.
    // 0 when either snapshot is invalid.
    uint32_t countedChanges(const VnodeSnapshot& before) const;

    // Everything that comparing with `before` can tell, timestamps and ownership included, for when
    // the notifications themselves were lost: size or modification time -> NOTE_WRITE (and
    // NOTE_EXTEND for growth), link count -> NOTE_LINK (and NOTE_DELETE at 0), mode or owner, or a
    // status change that nothing else explains -> NOTE_ATTRIB. Renames cannot be seen here; pass
    // `renamed` when the caller saw one, as it explains a status change too.
    // 0 when either snapshot is invalid.
    uint32_t inferredChanges(const VnodeSnapshot& before, bool renamed) const;

private:
    bool m_valid = false;
    mode_t m_mode = 0;
    uid_t m_owner = 0;
    gid_t m_group = 0;
    uint64_t m_links = 0;
    int64_t m_size = 0;
    timespec m_modified{};
    timespec m_changed{};
};

} // namespace ns
