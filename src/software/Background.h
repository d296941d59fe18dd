#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

// For work that the kernel may hold up for seconds, as reading a slow or failing stick: it is done
// on a thread of its own, while the caller waits and its events go on.
namespace Background {

// Set when nobody waits for the result any more. The work looks at it at each of its steps.
using Stop = std::atomic<bool>;

// For work that somebody always waits for.
inline const Stop never {false};

// Does the work and returns when it has ended (true), or at once when the application is told to
// quit (false): the work is then told to stop and left behind, so it must own all that it uses.
//
// Meanwhile the user interface's events are served, input too, so what they start runs before this
// returns. On any other thread, or where no thread can be had, the work is done in place. An
// exception ends the work; the log has its reason.
bool run(const std::function<void(const Stop&)>& work);

// Likewise, with the work's result; nothing when the application quits first or the work failed.
template <typename Work> std::optional<std::invoke_result_t<Work, const Stop&>> resultOf(Work work)
{
    using Result = std::invoke_result_t<Work, const Stop&>;
    const auto result = std::make_shared<std::optional<Result>>();
    const bool ended
        = run([result, work = std::move(work)](const Stop& stop) { *result = work(stop); });
    return ended ? std::move(*result) : std::nullopt;
}

} // namespace Background
