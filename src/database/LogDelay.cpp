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
    if (kept(reason) == nullptr)
        kept(reason) = new Kept;
    ++kept(reason)->delays;
}

LogDelay::~LogDelay()
{
    if (--kept(m_reason)->delays > 0)
        return;
    const std::unique_ptr<Kept> done(std::exchange(kept(m_reason), nullptr));
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
