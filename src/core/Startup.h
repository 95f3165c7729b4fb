// Where the settings file lives and what start-up does with it.
//  - Portable: a "QuilletPro.ini" beside the executable is used as it is; a folder
//    "QuilletPro" beside the executable holds the file.
//  - Otherwise "QuilletPro/QuilletPro.ini" under the user's configuration folder
//    (%APPDATA% on Windows, $XDG_CONFIG_HOME or ~/.config elsewhere).
//  - A file named with --settings replaces both.
#pragma once

#include <QDateTime>
#include <QString>

#include "core/SettingsStore.h"

namespace qp {

inline const QString kSettingsFileName = QStringLiteral("QuilletPro.ini");
inline const QString kSettingsFolderName = QStringLiteral("QuilletPro");

struct SettingsLocation {
    QString file;
    bool portable = false;
};

// `exeFolder` and `configHome` are '/'-separated folders without trailing '/'.
SettingsLocation locateSettings(const QString& exeFolder, const QString& configHome);
// The user's configuration folder from the environment.
QString userConfigHome();

// "[" + local time as yyyymmddhhmmsszzz + "]": names this run's snapshot folder.
QString makeRunStamp(const QDateTime& localTime);

struct OpenedSettings {
    SettingsStore store;
    SettingsStore::LoadReport report;
    bool created = false;     // the file did not exist and was written now
    QString error;            // the file could not be created
    // When the file held bytes that are not UTF-8, its original bytes are kept here before
    // anything is saved over them.
    QString backupFile;
};

// Opens the settings file at `file`, creating its folder; a file that does not exist yet
// is written with the program's path as "PathName" under "[General Config]".
OpenedSettings openSettings(const QString& file, const QString& programPath);

// The settings file for this start: `overrideFile` when given, else located as above.
QString chooseSettingsFile(const QString& overrideFile);

}  // namespace qp
