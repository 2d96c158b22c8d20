#pragma once

#include <string>

namespace corvane {

class CVPathQueue;

// Hears of every change of a watched path, on the main thread, one call per notification name, in
// the order the names are produced for a change.
class CVPathQueueDelegate {
public:
    virtual ~CVPathQueueDelegate() = default;

    // `receivedNotification` is one of the CVPathQueue...Notification names; `forPath` is the path
    // as it was added.
    virtual void pathQueue(CVPathQueue& pathQueue, const std::string& receivedNotification,
                           const std::string& forPath) = 0;
};

} // namespace corvane
