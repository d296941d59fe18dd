#pragma once

#include <QtGlobal>

// Both ends of a pipe, which programs that are started do not inherit.
class Pipe
{
public:
    // Without descriptors for it, both ends are -1 and errno says why.
    Pipe();
    ~Pipe();
    Q_DISABLE_COPY_MOVE(Pipe)

    // -1 once closed.
    int readEnd() const { return m_ends[0]; }
    int writeEnd() const { return m_ends[1]; }

    void closeReadEnd();
    void closeWriteEnd();

private:
    int m_ends[2] = {-1, -1};
};
