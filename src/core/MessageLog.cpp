#include "core/MessageLog.h"

namespace qp {

QString MessageLog::prefix(const QTime& time)
{
    return QLatin1Char('[') + time.toString(QStringLiteral("HH:mm:ss")) + QStringLiteral("] ");
}

const MessageLine& MessageLog::add(const QString& text, MessageColour colour, int row)
{
    m_lines.append(MessageLine{prefix(now()) + text, colour, row});
    if (m_listener)
        m_listener(m_lines.constLast());
    return m_lines.constLast();
}

}  // namespace qp
