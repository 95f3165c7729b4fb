// Apply ("应用更名结果"): re-runs preview, orders the renames so that none is blocked by a
// name another row still holds (or moves everything to ",FRP," temporaries first when the
// renames form a cycle), renames files and then folders deepest first, updates the rows,
// and leaves a snapshot from which the apply can be undone.
//
// Nothing is ever overwritten (every rename is a no-replace rename) and the snapshot is on
// disk as a journal before the first rename, so a batch stopped at any instant can be
// undone from it (see Snapshot.h).
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/FileEntry.h"
#include "execution/Preview.h"
#include "platform/FileSystem.h"

namespace qp {

class FileOperations;
class Journal;
class Session;

// ---------------------------------------------------------------------------------------
// Names that are too long for the file system.

struct LengthRule {
    bool countUtf8Bytes = false;  // Linux counts bytes of UTF-8; Windows UTF-16 characters
    qsizetype maxName = 0;        // longest file name (0: no limit of its own)
    qsizetype maxPath = 0;        // longest full path
};
// Windows: a full path of at most 258 characters. Linux: a name of at most 255 bytes and a
// full path of at most 4095 bytes, both in UTF-8.
LengthRule windowsLengthRule();
LengthRule linuxLengthRule();
LengthRule platformLengthRule();

bool isTooLong(const QString& folder, const QString& fileName, const LengthRule& rule);

// The choices of the over-long question, with the values of "FileNameTooLongCut".
enum class Shortening { Skip = 0, FromEnd = 1, FromStart = 2, SystemWay = 3 };
// The corrected name: characters deleted from the end of the name (the extension kept),
// from its start, or from the end of name and extension together (then split again at the
// last dot). Whole characters only, never half a surrogate pair. nullopt for Skip, or when
// even an empty name would not fit (the folder alone is too long).
std::optional<NameParts> shortenName(const QString& folder, const QString& name, const QString& ext, bool isFolder,
                                     Shortening how, const LengthRule& rule);

// ---------------------------------------------------------------------------------------
// Order of the renames.

// The order in which a work list is renamed when it is walked from its end, such that an
// object whose target is the current name of another object of the list comes after
// (is renamed later than) that object. `sourceKeys` and `targetKeys` are path keys;
// `changed[i]` is false for an entry whose target is its own current path. The result is
// the same as walking the list from its end and, while the entry at position i has a
// target held by an entry at a position j < i, moving that entry to position i; it is
// reached in linear time by following each chain of holders once. Returns the new order
// as positions of the input.
std::vector<size_t> orderByHolders(const std::vector<QString>& sourceKeys, const std::vector<QString>& targetKeys,
                                   const std::vector<bool>& changed);

// ---------------------------------------------------------------------------------------
// Objects being moved in one batch (apply or undo): where each one is, the name it had
// before the batch and the name it is to get. Every rename keeps the attribute word, never
// leaves the object's folder, and a renamed folder carries the objects below it along.

struct MoveItem {
    QString folder;      // the containing folder now, ending with '/'
    QString name;        // the object's file name now (a temporary name included)
    QString originalName;
    bool isFolder = false;
    bool inTemporary = false;      // its name before that is originalName
    std::uint32_t attributes = 0;  // as last read (the listing that loaded it)
    QString path() const { return folder + name; }
};

// One rename of a batch: the item gets the name in the folder that holds it by then.
struct MoveStep {
    size_t item = 0;
    QString newName;
};

class MoveSet {
public:
    explicit MoveSet(FileOperations& ops) : m_ops(ops) {}

    std::vector<MoveItem> items;
    // Called for an item whose folder changed because a folder above it was renamed.
    std::function<void(size_t item, const QString& oldFolder)> onFolderMoved;

    enum class Outcome { Renamed, Failed, NotThere };
    // Renames item `i` to `newName` in its folder. Where the file operations' rename is not
    // exact, the target is looked at afterwards and its attributes restored when they
    // changed; NotThere: the rename said it worked but nothing is at the target (the item
    // is left as it was).
    Outcome rename(size_t i, const QString& newName, platform::RenameResult* why = nullptr);

    // The plan lines of `steps` made one after another, worked out without the disk.
    // `spill` (see Journal::Producer) is called after each line.
    void appendPlanLines(QByteArray& out, const std::vector<MoveStep>& steps,
                         const std::function<void()>& spill = {}) const;
    QByteArray planLines(const std::vector<MoveStep>& steps) const;
    // One programme line per item: where it is now, the name it had before the batch.
    void appendProgrammeLines(QByteArray& out, const std::function<void()>& spill = {}) const;
    // The first pass: `files` in order, then `folders` (sorted ascending) from the last, each
    // to kTemporaryPrefix + its name (the prefix repeated while that name is taken on disk or
    // by another temporary). False when a temporary path would be too long by `rule`.
    bool planTemporaries(const std::vector<size_t>& files, const std::vector<size_t>& folders, const LengthRule& rule,
                         std::vector<MoveStep>& steps) const;
    // Gives every item still under a temporary name its name back, in the order given, each
    // rename written to the journal before it is made. False when one could not be renamed
    // back (it stays under its temporary name, which the journal records).
    bool rollBack(const std::vector<size_t>& order, Journal& journal);

private:
    // What a made rename changes: the item's name, and the folders of the items below it.
    void moved(size_t i, const QString& newName);
    void carryBelow(size_t folderItem, const QString& oldPath);

    FileOperations& m_ops;
    // (original folder key, item) sorted, for finding everything below a folder.
    std::vector<std::pair<QString, size_t>> m_byFolder;
    std::vector<QString> m_originalKey;  // each item's original full path key
};

// Makes steps [first, last) in order, each marked in the journal; `after` hears of each
// outcome. Stops early when `after` returns false; returns the index after the last step made.
size_t runSteps(MoveSet& moves, Journal& journal, const std::vector<MoveStep>& steps, size_t first, size_t last,
                const std::function<bool(size_t step, MoveSet::Outcome, const platform::RenameResult&)>& after);

// ---------------------------------------------------------------------------------------
// The questions apply asks. The GUI implements these with its forms; InteractionDialogs
// asks them as plain questions through the session's Interaction (see there).

enum class ApplyMode { Smart, Simple, Stop };

struct ConflictAnswer {
    bool proceed = false;       // "启用智能更名操作继续"
    bool dontShowAgain = false; // "不再提示本对话框并直接启用智能更名继续操作"
};

struct ChoiceAnswer {
    int choice = 1;             // 0 skip; otherwise rename anyway, or the shortening choice
    bool dontAskAgain = false;  // "按以上设置进行更名操作而不再询问"
};

class ApplyDialogs {
public:
    virtual ~ApplyDialogs() = default;
    virtual ApplyMode chooseMode(qsizetype rows) = 0;
    virtual ConflictAnswer conflictWarning(const PreviewResult& preview) = 0;
    // Read-only or system (`system`) object at `path`; `preselected` from the settings.
    virtual ChoiceAnswer attributeQuestion(bool system, const QString& path, int preselected) = 0;
    // The user's new name, and the name corrected by the preselected choice.
    virtual ChoiceAnswer tooLongQuestion(const QString& path, const QString& proposed, const QString& corrected,
                                         int preselected) = 0;
};

// Plain questions with stable ids:
//  "apply.mode"                 Yes = simple rename, No = smart rename, Cancel = stop
//  "apply.conflictWarning"      Yes = continue with smart rename, anything else = cancel;
//  "apply.conflictWarning.dontShowAgain"  asked after Yes: Yes = tick the check box
//  "apply.readOnly" / "apply.system"     Yes = rename anyway, No = skip;
//  "apply.readOnly.dontAskAgain" / "apply.system.dontAskAgain"   Yes = tick the check box
//  "apply.tooLong"              Yes = shorten by the preselected choice (from the end when
//                               that is skip), No = skip; "apply.tooLong.dontAskAgain"
// The check-box questions default to No.
class InteractionDialogs : public ApplyDialogs {
public:
    explicit InteractionDialogs(Session& session) : m_session(session) {}
    ApplyMode chooseMode(qsizetype rows) override;
    ConflictAnswer conflictWarning(const PreviewResult& preview) override;
    ChoiceAnswer attributeQuestion(bool system, const QString& path, int preselected) override;
    ChoiceAnswer tooLongQuestion(const QString& path, const QString& proposed, const QString& corrected,
                                 int preselected) override;

private:
    bool ticked(const QString& id, const QString& text);
    Session& m_session;
};

// ---------------------------------------------------------------------------------------

struct ApplyResult {
    enum class End {
        Done,
        WrongPage,
        EmptyList,
        Declined,           // a question was answered with stop/cancel
        PreviewStopped,
        FirstPassFailed,    // everything was put back; no snapshot
        SnapshotFailed,     // the snapshot folder or file could not be written; nothing renamed
    };
    End end = End::Declined;
    qsizetype rows = 0;
    qsizetype succeeded = 0;
    qsizetype failed = 0;
    qsizetype skipped = 0;
    bool usedTemporaries = false;
    // For the completion dialog "批量更名完成".
    QString summary;      // "更名文件列表对象…个。"
    QString snapshotPath;
    bool showCompletionDialog = false;  // "ApplyConfirmDlgShow"
    bool systemDriveMet = false;        // show the user-account-control note
};

class RenameRunner {
public:
    using PreviewFn = std::function<PreviewResult(bool simpleRename)>;

    // `preview` builds the work lists (null: the program's Preview); `dialogs` null: plain
    // questions through the session's Interaction.
    RenameRunner(Session& session, FileOperations& ops, PreviewFn preview = {}, ApplyDialogs* dialogs = nullptr);
    ~RenameRunner();

    ApplyResult apply();
    void setLengthRule(const LengthRule& rule) { m_rule = rule; }

private:
    struct Run;
    bool askBeforeStarting(ApplyResult& result, bool& simple);
    Session& m_session;
    FileOperations& m_ops;
    PreviewFn m_preview;
    ApplyDialogs* m_dialogs;
    std::unique_ptr<InteractionDialogs> m_ownDialogs;
    LengthRule m_rule;
};

// The folder of the session's settings file, with a trailing '/' (empty without a file).
QString settingsFolderOf(const Session& session);

// What apply and undo do with the command list afterwards ("AfterApplyClearCmd"): clear it
// and show the current names as new names, or re-run it over the list.
// `keepStates`: the rows keep the states the batch gave them.
void afterRenameCommands(Session& session, bool keepStates = false);

}  // namespace qp
