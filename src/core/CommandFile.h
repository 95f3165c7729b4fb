// Command files (".frc"): the command list and its command sections written out as text,
// and read back into the settings in place of the present list; and the menu of the
// command files used lately.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace qp {

class Session;
class SettingsStore;

// Asks the user for a file (the GUI's file dialog); an empty text means cancelled.
using FileChooser = std::function<QString()>;

struct CommandFileResult {
    enum class Outcome { Done, Cancelled, Failed };
    Outcome outcome = Outcome::Cancelled;
    int commands = 0;             // commands written or loaded
    int skipped = 0;              // listed commands whose section was missing or unusable
    QStringList otherSections;  // sections of a loaded file besides its commands, merged into the settings
    QString message;              // what the user was told when it failed
};

// The command file of the store's command list: UTF-8 with BOM, CR LF line ends, the
// comment header, "[CommandList]" as stored, then each listed command section after an
// empty line. Empty when the list holds no command.
QByteArray commandFileBytes(const SettingsStore& store);

// "保存批处理命令(&S)". Does nothing, silently, when the list is empty; the chooser is
// asked only when there is something to save.
CommandFileResult saveCommandFile(Session& session, const FileChooser& chooseFile);
CommandFileResult saveCommandFile(Session& session, const QString& fileName);

// "载入批处理命令(&L)": asks before replacing a non-empty list, then asks for the file.
// The file's command list and the sections it names replace the present list in the
// settings, which are then written; sections that are no commands are not taken over.
// A file that cannot be used changes nothing.
CommandFileResult loadCommandFile(Session& session, const FileChooser& chooseFile);
CommandFileResult loadCommandFile(Session& session, const QString& fileName);

// Recently used command files, kept in "[RecentItemMenuCMDFile]" as "Count" and the keys
// "1".."Count" holding full paths, newest first, at most 20.
constexpr int kMaxRecentCommandFiles = 20;
QStringList recentCommandFiles(const SettingsStore& store);
// Puts the file at the top (moving it there when it is listed already).
void rememberCommandFile(SettingsStore& store, const QString& fileName);

struct RecentCommandFile {
    QString path;
    QString caption;  // "01. name.frc | folder"
};
// The menu's entries: the listed files that still exist, numbered from 01.
QList<RecentCommandFile> recentCommandFileMenu(const SettingsStore& store);
// "清除最近的批处理文件列表(&C)": after an OK/Cancel question.
bool clearRecentCommandFiles(Session& session);

}  // namespace qp
