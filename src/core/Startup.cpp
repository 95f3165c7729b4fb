#include "core/Startup.h"

#include <QDir>

#include "core/PathText.h"
#include "core/SettingsKeys.h"
#include "platform/FileSystem.h"

namespace qp {

SettingsLocation locateSettings(const QString& exeFolder, const QString& configHome)
{
    const QString besideFile = exeFolder + QLatin1Char('/') + kSettingsFileName;
    if (platform::isFile(toPlatformPath(besideFile)))
        return {besideFile, true};
    const QString besideFolder = exeFolder + QLatin1Char('/') + kSettingsFolderName;
    if (platform::isFolder(toPlatformPath(besideFolder)))
        return {besideFolder + QLatin1Char('/') + kSettingsFileName, true};
    return {configHome + QLatin1Char('/') + kSettingsFolderName + QLatin1Char('/') + kSettingsFileName, false};
}

QString userConfigHome()
{
#ifdef _WIN32
    return internalSeparators(qEnvironmentVariable("APPDATA"));
#else
    const QString xdg = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (isAbsolutePath(xdg))
        return xdg;
    return qEnvironmentVariable("HOME") + QStringLiteral("/.config");
#endif
}

QString makeRunStamp(const QDateTime& localTime)
{
    return QLatin1Char('[') + localTime.toString(QStringLiteral("yyyyMMddHHmmsszzz")) + QLatin1Char(']');
}

OpenedSettings openSettings(const QString& file, const QString& programPath)
{
    OpenedSettings opened;
    const PathParts parts = splitPath(file);
    if (!parts.folder.isEmpty())
        platform::createFolders(toPlatformPath(parts.folder));
    opened.report = opened.store.load(file);
    if (opened.report.invalidUtf8) {
        const platform::ReadResult original = platform::readFile(toPlatformPath(file), std::uint64_t(1) << 30);
        const QString backup = file + QStringLiteral(".invalid-utf8.bak");
        if (original.status == platform::ReadStatus::Ok
            && platform::writeFileAtomically(toPlatformPath(backup), original.bytes, nullptr))
            opened.backupFile = backup;
    }
    if (opened.report.fileMissing) {
        opened.store.writeString(keys::kGeneral, keys::kPathName, nativeSeparators(programPath));
        opened.created = opened.store.save(&opened.error);
    }
    return opened;
}

QString chooseSettingsFile(const QString& overrideFile)
{
    if (!overrideFile.isEmpty())
        return internalSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(overrideFile)));
    QString exeFolder = splitPath(internalSeparators(fromPlatformPath(platform::executablePath()))).folder;
    if (exeFolder.size() > 1)
        exeFolder.chop(1);
    return locateSettings(exeFolder, userConfigHome()).file;
}

}  // namespace qp
