#include "database/LogDelay.h"

#include <memory>
#include <utility>
#include <vector>

struct LogDelay::Kept
{
    int delays = 0;
    std::vector<Work> work;
};

LogDelay::Kept*& LogDelay::kept(Reason reason)
{
    static thread_local Kept* ofThisThread[ReasonCount] {};
    return ofThisThread[reason];
}

LogDelay::LogDelay(Reason reason) : m_reason(reason)
{
    begin(Attachment);
    if (m_reason == Lock)
        begin(Lock);
}

// The rows first: they are of messages before the first that was kept whole.
LogDelay::~LogDelay()
{
    end(Attachment);
    if (m_reason == Lock)
        end(Lock);
}

void LogDelay::begin(Reason reason)
{
    if (kept(reason) == nullptr)
        kept(reason) = new Kept;
    ++kept(reason)->delays;
}

void LogDelay::end(Reason reason)
{
    if (--kept(reason)->delays > 0)
        return;
    const std::unique_ptr<Kept> done(std::exchange(kept(reason), nullptr));
    for (const Work& work : done->work)
        work();
}

bool LogDelay::isNeeded(Reason reason)
{
    return kept(reason) != nullptr;
}

void LogDelay::keep(Reason reason, Work work)
{
    kept(reason)->work.push_back(std::move(work));
}

bool LogDelay::keepsAny(Reason reason)
{
    return !kept(reason)->work.empty();
}
