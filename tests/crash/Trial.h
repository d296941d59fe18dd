#pragma once

#include "Judge.h"
#include "Operations.h"

// The states that the files of one operation can be left in. Each has a name: the operation, how
// many events of its recording were done, and a seed, 0 for a kill, any other for a power cut.
class Trial
{
public:
    // Records the operation.
    explicit Trial(const QString& operation);

    // Tries every kill and, after each event, so many power cuts; the name of the first bad state
    // and what is wrong with it, empty when all are good.
    QString failure(unsigned powerCuts);

    // Makes the files of a state again, in a folder. Pages have other bytes in each recording, but
    // the events are the same and so are those that arrive.
    void build(unsigned events, unsigned seed, const QString& folder);

    // How many different states were looked at, in all and as a line of text by kind.
    int states() const { return m_judge.looks(); }
    QString counts() const;

private:
    void tryKill();
    void tryPowerCut(unsigned seed);
    Judge::Finding look(unsigned seed);
    bool opensWhole(const Files& files, const Judge::Finding& found);
    void fail(unsigned seed, const QString& fault);

    QString m_operation;
    Recording m_recording;
    Replay m_replay;
    Judge m_judge;
    unsigned m_event = 0; // done so far
    int m_committed = 0; // transactions after a kill here
    int m_kills = 0, m_openings = 0;
    QString m_failure;
};
