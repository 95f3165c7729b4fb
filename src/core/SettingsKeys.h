// Section and key names of the settings file shared by several parts of the program.
#pragma once

#include <QString>

namespace qp::keys {

inline const QString kInterface = QStringLiteral("Interface Config");
inline const QString kOperation = QStringLiteral("Operation Config");
inline const QString kGeneral = QStringLiteral("General Config");

inline const QString kShowTrueIcon = QStringLiteral("ShowTrueIcon");
inline const QString kAddFilesFolder = QStringLiteral("AddFilesFormInitLastFolderPathName");
inline const QString kAddFolderFolder = QStringLiteral("SelectFolderDialogInitFolderNameOpen");
inline const QString kListFileFolder = QStringLiteral("OpenDialogInitialDirMMenuFileAddFileListFile");
inline const QString kFileSizeFriendly = QStringLiteral("FileSizeFriendly");
inline const QString kFlagFindDeepin = QStringLiteral("FlagFindDeepin");
inline const QString kFlagAddFolder = QStringLiteral("FlagAddFolder");
inline const QString kAddNewFilesIgnoreCmd = QStringLiteral("AddNewFilesIgnoreCMD");
inline const QString kPathHistory = QStringLiteral("DATAStore_ComboBoxPath");
inline const QString kKeepHistory = QStringLiteral("DATAStore_ComboBoxFilter1");
inline const QString kExcludeHistory = QStringLiteral("DATAStore_ComboBoxFilter2");
inline const QString kHistorySize = QStringLiteral("ComboBoxSavedNum");
inline const QString kPathName = QStringLiteral("PathName");

constexpr int kDefaultHistorySize = 20;

}  // namespace qp::keys
