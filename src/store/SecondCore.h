#pragma once

#include <QThread>

#include <future>
#include <system_error>
#include <type_traits>

namespace ProductEditor {

// Whether work can go to a thread of its own beside this one.
inline bool HasSecondCore() { return QThread::idealThreadCount() > 1; }

// Runs `work` on a thread of its own when `aside` and the machine has a second core,
// and otherwise on the thread that asks for the result, when it asks. The future
// waits for the work when it is destroyed, so the work may refer to the caller's
// locals declared before it.
template<typename Work>
std::future<std::invoke_result_t<Work>> RunAside(Work work, bool aside)
{
    if (aside && HasSecondCore()) {
        try {
            return std::async(std::launch::async, work);
        } catch (const std::system_error &) {
            // No thread to be had: the work is done in turn.
        }
    }
    return std::async(std::launch::deferred, work);
}

} // namespace ProductEditor
