#include "database/LogLine.h"

#include <QPair>
#include <QVector>

#include <utility>

namespace {

thread_local bool deferring = false;
thread_local QVector<QPair<QtMsgType, QString>> deferred;

} // namespace

LogLine::~LogLine()
{
    if (m_text.endsWith(' ')) // the blank that a debug stream writes after each piece
        m_text.chop(1);
    if (deferring)
        deferred.append({m_type, m_text});
    else
        qt_message_output(m_type, QMessageLogContext(), m_text);
}

LogLine::Deferral::Deferral()
{
    deferring = true;
}

LogLine::Deferral::~Deferral()
{
    deferring = false;
    const auto lines = std::exchange(deferred, {});
    for (const auto& line : lines)
        qt_message_output(line.first, QMessageLogContext(), line.second);
}
