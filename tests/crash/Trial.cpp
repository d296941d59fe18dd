#include "Trial.h"

#include "LogCapture.h"

#include "database/DatabaseBase.h"

namespace {

Files stateOf(const Replay& replay, unsigned seed)
{
    return seed == 0 ? replay.afterKill() : replay.afterPowerCut(seed);
}

} // namespace

Trial::Trial(const QString& operation)
    : m_operation(operation), m_recording(record(operationNamed(operation))),
      m_replay(databaseFolder, m_recording.before),
      m_judge(m_recording.before, m_recording.transactions)
{
}

QString Trial::failure(unsigned powerCuts)
{
    for (;;) {
        tryKill();
        for (unsigned cut = 1; cut <= powerCuts; ++cut)
            tryPowerCut(m_event * 100 + cut);
        if (!m_failure.isEmpty() || m_event == m_recording.steps.size())
            break;
        m_replay.apply(m_recording.steps[m_event++]);
    }
    if (m_failure.isEmpty() && m_replay.afterKill() != m_recording.after)
        return "the recorder missed something";
    if (m_failure.isEmpty() && m_committed != m_judge.transactions())
        return QString("ends with %1 transactions").arg(m_committed);
    return m_failure;
}

void Trial::tryKill()
{
    const int before = m_judge.looks();
    const int found = look(0).transactions;
    m_kills += m_judge.looks() - before;
    if (found != m_committed && found != m_committed + 1)
        fail(0, QString("%1 transactions after %2").arg(found).arg(m_committed));
    m_committed = found;
}

// A power cut may take the last transaction back: its commit is the removal of the journal, and the
// folder is synced with the next one only.
void Trial::tryPowerCut(unsigned seed)
{
    const int found = look(seed).transactions;
    if (found != m_committed && found != m_committed - 1)
        fail(seed, QString("%1 transactions of %2").arg(found).arg(m_committed));
}

Judge::Finding Trial::look(unsigned seed)
{
    const Files files = stateOf(m_replay, seed);
    const int before = m_judge.looks();
    const Judge::Finding found = m_judge.look(files);
    if (!found.fault.isEmpty())
        fail(seed, found.fault);
    else if (m_judge.looks() > before && m_judge.looks() % 10 == 0 && !opensWhole(files, found))
        fail(seed, "the next start does not make it whole");
    return found;
}

// The updater's next start.
bool Trial::opensWhole(const Files& files, const Judge::Finding& found)
{
    ++m_openings;
    writeFolder(databaseFolder, files);
    const LogCapture quiet;
    const bool updated = DatabaseBase().genericUpdateTable("t");
    const int expected
        = m_operation.startsWith("update") ? m_judge.transactions() : found.transactions;
    return updated && m_judge.judge(readFolder(databaseFolder)).transactions == expected;
}

// The first fault stays.
void Trial::fail(unsigned seed, const QString& fault)
{
    if (m_failure.isEmpty())
        m_failure = QString("%1 %2 %3: %4").arg(m_operation).arg(m_event).arg(seed).arg(fault);
}

void Trial::build(unsigned events, unsigned seed, const QString& folder)
{
    while (m_event < events)
        m_replay.apply(m_recording.steps.at(m_event++));
    writeFolder(folder, stateOf(m_replay, seed));
}

QString Trial::counts() const
{
    return QString("%1: %2 events, %3 transactions; states: %4 after a kill, %5 after a power cut; "
                   "opened by the updater: %6\n")
        .arg(m_operation)
        .arg(m_recording.steps.size())
        .arg(m_committed)
        .arg(m_kills)
        .arg(states() - m_kills)
        .arg(m_openings);
}
