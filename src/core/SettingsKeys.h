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

// The command list and its command sections.
inline const QString kCommandList = QStringLiteral("CommandList");
inline const QString kCommandListCount = QStringLiteral("CommandListCount");
inline const QString kCommandSectionPrefix = QStringLiteral("CMD_");
inline const QString kCommandId = QStringLiteral("CMDid");
inline const QString kCommandComment = QStringLiteral("CMDComment");

// Automatic preview, apply and undo.
inline const QString kAutoPreview = QStringLiteral("AutoPreview");
inline const QString kAutoPreviewBefore = QStringLiteral("AutoPreviewBefore");
inline const QString kAutoPreviewNum = QStringLiteral("AutoPreviewNum");
inline const QString kApplyConfirm = QStringLiteral("ApplyConfirm");
inline const QString kAfterApplyClearCmd = QStringLiteral("AfterApplyClearCmd");
inline const QString kApplyConfirmDlgShow = QStringLiteral("ApplyConfirmDlgShow");
inline const QString kRenameSelectCount = QStringLiteral("RenameSelectCount");
// Linux: names follow the Windows rules too (Windows: always).
inline const QString kWindowsSafeNames = QStringLiteral("WindowsSafeNames");
inline const QString kIgnoreSmartRenameWarning = QStringLiteral("IgnoreUseSmartRenameDlgWarning");
inline const QString kAttribRNotAsk = QStringLiteral("FileNameAttribRNotAsk");
inline const QString kAttribRRename = QStringLiteral("FileNameAttribRRename");
inline const QString kAttribSNotAsk = QStringLiteral("FileNameAttribSNotAsk");
inline const QString kAttribSRename = QStringLiteral("FileNameAttribSRename");
inline const QString kTooLongNotAsk = QStringLiteral("FileNameTooLongNotAsk");
inline const QString kTooLongCut = QStringLiteral("FileNameTooLongCut");

// Names that preview gives: empty names and numbered duplicates.
inline const QString kFileNameNullSet = QStringLiteral("FileNameNullSet");
inline const QString kFileNameSameCharKind = QStringLiteral("FileNameSameCharKind");
inline const QString kFileNameSameStart = QStringLiteral("FileNameSameStart");
inline const QString kFileNameSameIncrease = QStringLiteral("FileNameSameIncrease");
inline const QString kFileNameSameDigitCapacity = QStringLiteral("FileNameSameDigitCapacity");
inline const QString kFileNameSameLeftStr = QStringLiteral("FileNameSameLeftStr");
inline const QString kFileNameSameRightStr = QStringLiteral("FileNameSameRightStr");

// "Interface Config": the warnings before a costly meta-variable is inserted.
inline const QString kIgnoreHashWarning = QStringLiteral("IgnoreUseHashUnitVariableWarning");
inline const QString kIgnoreFolderWarning = QStringLiteral("IgnoreUseFindFolderUnitVariableWarning");

inline const QString kUnitVariable = QStringLiteral("UnitVariable");

// "Operation Config": "非 Unicode 标签编码", how text in old tags is decoded (0 automatic,
// 1 GBK, 2 Big5, 3 Shift_JIS, 4 Latin-1).
inline const QString kLegacyTagEncoding = QStringLiteral("NonUnicodeTagEncoding");

constexpr int kDefaultHistorySize = 20;

// Scripts (A12 Pascal, A13 Python): the Python program and the time limit, and the answers to
// "may this script from a file run?" keyed by the script's SHA-256. A command file never
// brings either section into the settings.
inline const QString kScriptConfig = QStringLiteral("Script Config");
inline const QString kScriptApprovals = QStringLiteral("Script Approvals");
inline const QString kPythonExe = QStringLiteral("PythonExe");
inline const QString kScriptTimeLimit = QStringLiteral("ScriptTimeLimit");  // seconds
constexpr int kDefaultScriptTimeLimit = 30;
// Set by the loader in each command section from a command file that carries a script.
inline const QString kCommandFromFile = QStringLiteral("CMDFromFile");

}  // namespace qp::keys
