// The message pane's lines: each with the "[hh:mm:ss] " time prefix, a colour and an
// optional link to a row of the rename list.
#pragma once

#include <QList>
#include <QString>
#include <QTime>
#include <functional>

namespace qp {

enum class MessageColour { Normal, Red, Blue, Green };

struct MessageLine {
    QString text;  // with its time prefix
    MessageColour colour = MessageColour::Normal;
    int row = -1;  // the linked rename-list row, -1 for none
};

class MessageLog {
public:
    using Clock = std::function<QTime()>;
    using Listener = std::function<void(const MessageLine&)>;

    MessageLog() = default;
    explicit MessageLog(Clock clock) : m_clock(std::move(clock)) {}

    static QString prefix(const QTime& time);  // "[hh:mm:ss] "

    const MessageLine& add(const QString& text, MessageColour colour = MessageColour::Normal, int row = -1);
    const QList<MessageLine>& lines() const { return m_lines; }
    void clear() { m_lines.clear(); }
    // Called for every new line (the GUI's message grid, the command line's stderr).
    void setListener(Listener listener) { m_listener = std::move(listener); }

private:
    QString currentPrefix();

    Clock m_clock;
    // Reading the local time asks the C library, which checks the time-zone file each time;
    // a batch that logs thousands of lines reuses the prefix within the same second.
    qint64 m_prefixSecond = -1;
    QString m_prefix;
    Listener m_listener;
    QList<MessageLine> m_lines;
};

}  // namespace qp
