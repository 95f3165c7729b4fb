// What the update check reads and decides, apart from the network: the small JSON document
// that announces a release, the comparison of version numbers, and when a check is due.
//
// The document is one object: {"version": "1.2.0", "date": "2024-05-01",
// "url": "https://…/download", "sha256": "<64 hex digits>", "notes": "…"}. Only "version" and
// "url" are required; the program never downloads anything, it only opens "url".
#pragma once

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <optional>
#include <variant>

namespace qp {

class SettingsStore;

struct UpdateInfo {
    QString version;
    QDate date;      // invalid when not given
    QUrl url;        // http or https
    QString sha256;  // lower-case hex, empty when not given
    QString notes;
};

// The announcement, or what is wrong with it in the system's words. Answers larger than
// kMostUpdateBytes are refused before they are read.
constexpr qint64 kMostUpdateBytes = 64 * 1024;
std::variant<UpdateInfo, QString> parseUpdateInfo(const QByteArray& json);

// Dotted numbers compared number by number, a missing part counting as 0 ("1.2" == "1.2.0");
// nothing when either is not such a version.
std::optional<int> compareVersions(const QString& a, const QString& b);

// The settings of the check ("General Config").
struct UpdateSettings {
    bool enabled = false;  // off until the user turns it on
    bool asked = false;    // the first start asked already
    int intervalDays = 7;
    QDateTime lastCheck;   // invalid: never
    QString skippedVersion;
    QString url;

    static UpdateSettings read(const SettingsStore& settings);
    void write(SettingsStore& settings) const;
};

// Whether an automatic check is due at `now`.
bool updateCheckDue(const UpdateSettings& settings, const QDateTime& now);

enum class UpdateVerdict { Newer, Current, Older, Skipped };
// How an announced release stands to the running `current` version, given the version the
// user chose to skip; nothing when `announced` is no version number.
std::optional<UpdateVerdict> judgeUpdate(const UpdateInfo& announced, const QString& current,
                                         const QString& skippedVersion);

}  // namespace qp
