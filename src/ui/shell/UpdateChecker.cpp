#include "ui/shell/UpdateChecker.h"

#include <QCoreApplication>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace qp::ui {

UpdateChecker::UpdateChecker(QObject* parent)
    : QObject(parent)
{
    QNetworkProxyFactory::setUseSystemConfiguration(true);
}

void UpdateChecker::check(const QUrl& url)
{
    if (running())
        return;
    QNetworkRequest request(url);
    request.setTransferTimeout(m_timeoutMs);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("QuilletPro/%1").arg(QCoreApplication::applicationVersion()));
    m_tooLarge = false;
    m_reply = m_network.get(request);
    connect(m_reply, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64 total) {
        if (received > kMostUpdateBytes || total > kMostUpdateBytes) {
            m_tooLarge = true;
            m_reply->abort();
        }
    });
    connect(m_reply, &QNetworkReply::finished, this, &UpdateChecker::done);
}

void UpdateChecker::done()
{
    QNetworkReply* reply = m_reply;
    reply->deleteLater();
    UpdateCheckResult result;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (m_tooLarge) {
        result.error = tr("更新信息过大（超过 %1 字节）。").arg(kMostUpdateBytes);
    } else if (reply->error() == QNetworkReply::OperationCanceledError || reply->error() == QNetworkReply::TimeoutError) {
        result.error = tr("服务器 %1 秒内没有应答。").arg(m_timeoutMs / 1000.0);
    } else if (reply->error() != QNetworkReply::NoError) {
        result.error = reply->errorString();
    } else if (status != 200) {
        result.error = tr("服务器应答 HTTP %1。").arg(status);
    } else {
        auto parsed = parseUpdateInfo(reply->read(kMostUpdateBytes + 1));
        if (auto* info = std::get_if<UpdateInfo>(&parsed))
            result.info = std::move(*info);
        else
            result.error = std::get<QString>(parsed);
    }
    m_reply.clear();
    emit finished(result);
}

}  // namespace qp::ui
