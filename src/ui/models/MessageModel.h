// The message grid: the session's MessageLog as a list, each line with its time prefix,
// red lines in red. Preview can log a line per conflicting row, hundreds of thousands of
// them; the model reads the log's own lines and tells the view about new ones in batches,
// when the window next paints, instead of once per line.
#pragma once

#include <QAbstractListModel>

namespace qp {
class MessageLog;
}

namespace qp::ui {

class MessageModel : public QAbstractListModel {
    Q_OBJECT
public:
    explicit MessageModel(const MessageLog& log, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    // The rename-list row a line is about, -1 for none.
    int linkedRow(const QModelIndex& index) const;

    // A line was added to the log: shown at the next flush.
    void lineAdded();
    // Tells the view about the lines added since the last flush.
    void flush();
    // After the log was cleared.
    void reset();

signals:
    // New lines are shown (the view scrolls to them).
    void linesShown();

private:
    const MessageLog& m_log;
    int m_shown = 0;
    bool m_flushPending = false;
};

}  // namespace qp::ui
