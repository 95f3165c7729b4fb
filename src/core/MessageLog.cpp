#include "core/MessageLog.h"

#include <chrono>

namespace qp {

QString MessageLog::prefix(const QTime& time)
{
    return QLatin1Char('[') + time.toString(QStringLiteral("HH:mm:ss")) + QStringLiteral("] ");
}

QString MessageLog::currentPrefix()
{
    if (m_clock)
        return prefix(m_clock());
    const qint64 second = std::chrono::duration_cast<std::chrono::seconds>(
                              std::chrono::system_clock::now().time_since_epoch())
                              .count();
    if (second != m_prefixSecond) {
        m_prefixSecond = second;
        m_prefix = prefix(QTime::currentTime());
    }
    return m_prefix;
}

const MessageLine& MessageLog::add(const QString& text, MessageColour colour, int row)
{
    m_lines.append(MessageLine{currentPrefix() + text, colour, row});
    if (m_listener)
        m_listener(m_lines.constLast());
    return m_lines.constLast();
}

}  // namespace qp
