#include "core/UpdateInfo.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVersionNumber>
#include <algorithm>

#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("UpdateInfo", text); }

std::optional<QVersionNumber> versionOf(const QString& text)
{
    static const QRegularExpression dotted(QStringLiteral("^\\d{1,9}(\\.\\d{1,9}){0,3}$"));
    if (!dotted.match(text).hasMatch())
        return std::nullopt;
    return QVersionNumber::fromString(text).normalized();
}

bool isHex64(const QString& text)
{
    static const QRegularExpression hex(QStringLiteral("^[0-9a-fA-F]{64}$"));
    return hex.match(text).hasMatch();
}

const QString kEnabled = QStringLiteral("UpdateCheck");
const QString kAsked = QStringLiteral("UpdateCheckAsked");
const QString kInterval = QStringLiteral("UpdateCheckDays");
const QString kLast = QStringLiteral("UpdateCheckLast");
const QString kSkipped = QStringLiteral("UpdateSkipVersion");
const QString kUrl = QStringLiteral("UpdateUrl");

}  // namespace

std::variant<UpdateInfo, QString> parseUpdateInfo(const QByteArray& json)
{
    if (json.size() > kMostUpdateBytes)
        return tr("更新信息过大（超过 %1 字节）。").arg(kMostUpdateBytes);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return tr("更新信息不是有效的 JSON 对象。");
    const QJsonObject object = document.object();
    UpdateInfo info;
    info.version = object.value(QStringLiteral("version")).toString().trimmed();
    if (!versionOf(info.version))
        return tr("更新信息中的版本号无效：“%1”").arg(info.version);
    info.url = QUrl(object.value(QStringLiteral("url")).toString(), QUrl::StrictMode);
    if (!info.url.isValid() || (info.url.scheme() != QLatin1String("https") && info.url.scheme() != QLatin1String("http"))
        || info.url.host().isEmpty())
        return tr("更新信息中的下载地址无效。");
    info.date = QDate::fromString(object.value(QStringLiteral("date")).toString(), Qt::ISODate);
    info.sha256 = object.value(QStringLiteral("sha256")).toString().toLower();
    if (!info.sha256.isEmpty() && !isHex64(info.sha256))
        return tr("更新信息中的 SHA-256 校验值无效。");
    info.notes = object.value(QStringLiteral("notes")).toString().left(4000);
    return info;
}

std::optional<int> compareVersions(const QString& a, const QString& b)
{
    const auto left = versionOf(a);
    const auto right = versionOf(b);
    if (!left || !right)
        return std::nullopt;
    return QVersionNumber::compare(*left, *right);
}

UpdateSettings UpdateSettings::read(const SettingsStore& s)
{
    UpdateSettings u;
    u.enabled = s.readBool(keys::kGeneral, kEnabled, false);
    u.asked = s.readBool(keys::kGeneral, kAsked, false);
    u.intervalDays = int(std::clamp<qint64>(s.readInt(keys::kGeneral, kInterval, 7), 1, 365));
    u.lastCheck = QDateTime::fromString(s.readString(keys::kGeneral, kLast, QString()), Qt::ISODate);
    u.skippedVersion = s.readString(keys::kGeneral, kSkipped, QString());
    u.url = s.readString(keys::kGeneral, kUrl, QString());
    return u;
}

void UpdateSettings::write(SettingsStore& s) const
{
    s.writeBool(keys::kGeneral, kEnabled, enabled);
    s.writeBool(keys::kGeneral, kAsked, asked);
    s.writeInt(keys::kGeneral, kInterval, intervalDays);
    s.writeString(keys::kGeneral, kLast, lastCheck.isValid() ? lastCheck.toString(Qt::ISODate) : QString());
    s.writeString(keys::kGeneral, kSkipped, skippedVersion);
    s.writeString(keys::kGeneral, kUrl, url);
}

bool updateCheckDue(const UpdateSettings& settings, const QDateTime& now)
{
    if (!settings.enabled || settings.url.isEmpty())
        return false;
    // A last check in the future (a clock set back) counts as long ago.
    return !settings.lastCheck.isValid() || settings.lastCheck > now
        || settings.lastCheck.daysTo(now) >= settings.intervalDays;
}

std::optional<UpdateVerdict> judgeUpdate(const UpdateInfo& announced, const QString& current,
                                         const QString& skippedVersion)
{
    const std::optional<int> order = compareVersions(announced.version, current);
    if (!order)
        return std::nullopt;
    if (*order < 0)
        return UpdateVerdict::Older;
    if (*order == 0)
        return UpdateVerdict::Current;
    if (compareVersions(announced.version, skippedVersion) == 0)
        return UpdateVerdict::Skipped;
    return UpdateVerdict::Newer;
}

}  // namespace qp
