// Fetches the release announcement (see core/UpdateInfo.h) from the address in the settings
// with the system's proxy, gives up after a time-out, and never reads more than a small
// document. It only reads: nothing is downloaded or run.
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <optional>

#include "core/UpdateInfo.h"

class QNetworkReply;

namespace qp::ui {

struct UpdateCheckResult {
    std::optional<UpdateInfo> info;
    QString error;  // in the system's words, when there is no info
};

class UpdateChecker : public QObject {
    Q_OBJECT
public:
    static constexpr int kTimeoutMs = 5000;

    explicit UpdateChecker(QObject* parent = nullptr);

    void setTimeout(int milliseconds) { m_timeoutMs = milliseconds; }
    bool running() const { return !m_reply.isNull(); }
    // Starts a check; a check already running is left to finish and this one is ignored.
    void check(const QUrl& url);

signals:
    void finished(const qp::ui::UpdateCheckResult& result);

private:
    void done();

    QNetworkAccessManager m_network;
    QPointer<QNetworkReply> m_reply;
    int m_timeoutMs = kTimeoutMs;
    bool m_tooLarge = false;
};

}  // namespace qp::ui
