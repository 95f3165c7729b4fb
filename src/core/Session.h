// Everything a main window would own apart from its widgets. The GUI, the command line
// and the tests each hold one Session and drive it through the same operations.
#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/CommandList.h"
#include "core/Interaction.h"
#include "core/MessageLog.h"
#include "core/Pipeline.h"
#include "core/RenameList.h"
#include "core/SettingsStore.h"

namespace qp::metadata {
class FieldCache;
}

namespace qp {

class Session {
public:
    Session(SettingsStore settings, Interaction& interaction, QString runStamp);

    SettingsStore& settings() { return m_settings; }
    const SettingsStore& settings() const { return m_settings; }
    CommandList& commandList() { return m_commands; }
    const CommandList& commandList() const { return m_commands; }
    RenameList& renameList() { return m_list; }
    const RenameList& renameList() const { return m_list; }
    MessageLog& messages() { return m_messages; }
    const MessageLog& messages() const { return m_messages; }
    Interaction& interaction() { return m_interaction; }
    // Computes the new names from the command list; installed as the command runner.
    Pipeline& pipeline() { return m_pipeline; }

    const QString& runStamp() const { return m_runStamp; }
    // The snapshots of this run that undo can take back, by their numbers, oldest first:
    // each apply pushes its snapshot, an undo that restored everything pops it.
    const std::vector<int>& undoStack() const { return m_undoStack; }
    int applyCounter() const { return int(m_undoStack.size()); }
    int newestSnapshot() const { return m_undoStack.empty() ? 0 : m_undoStack.back(); }
    void pushSnapshot(int number) { m_undoStack.push_back(number); }
    void popSnapshot()
    {
        if (!m_undoStack.empty())
            m_undoStack.pop_back();
    }

    // Set after a rename programme or snapshot was imported into the list and cleared by
    // the next load or recorded command.
    bool pendingImport() const { return m_pendingImport; }
    void setPendingImport(bool pending) { m_pendingImport = pending; }

    // Whether the page "1.文件名处理" is showing: most command-list operations work only
    // there. A session without pages (command line, tests) is always on it.
    bool onFileRenamePage() const { return m_onFileRenamePage; }
    void setOnFileRenamePage(bool showing) { m_onFileRenamePage = showing; }

    // Sets every function page back to its "保持不变" option; installed by the GUI. No
    // command is recorded while it runs.
    void setPageResetter(std::function<void()> resetter) { m_pageResetter = std::move(resetter); }
    void resetPages();
    bool resettingPages() const { return m_resettingPages; }

    // A refresh of the rename list left for later (after a rename); the next recorded
    // command carries it out first.
    void setPendingListRefresh(std::function<void()> refresh) { m_pendingListRefresh = std::move(refresh); }
    void runPendingListRefresh();

    // The texts of the path box and the two filter boxes.
    QString pathText;
    QString keepText = QStringLiteral("*.*");
    QString excludeText;

    // Whether scripts may run. The desktop program asks before a script that came in a
    // command file runs for the first time; the command line runs all or none.
    enum class ScriptPermission { AskForFileScripts, AllowAll, DenyAll };
    ScriptPermission scriptPermission = ScriptPermission::AskForFileScripts;

    // Runs the whole command list over the whole rename list; installed by the command
    // pipeline. Loading calls it unless "AddNewFilesIgnoreCMD" is set.
    void setCommandRunner(std::function<void()> runner) { m_commandRunner = std::move(runner); }
    void runAllCommands()
    {
        if (m_commandRunner)
            m_commandRunner();
    }

    // Whether every row's new name is what the command list and the last preview make of it,
    // so that preview and apply need not run the commands again (which would change what a
    // random or counting command gave, or drop imported names). Set by a run of the commands
    // over every row, by preview and by an import; any later change of the rows (loading,
    // removing, sorting) ends it, and so does a run over only some rows.
    bool newNamesCurrent() const { return m_newNamesCurrent && m_namesRevision == m_list.revision(); }
    void setNewNamesCurrent(bool current)
    {
        m_newNamesCurrent = current;
        m_namesRevision = m_list.revision();
    }

    // The ten user lists behind "<USER0>" … "<USER9>": line i belongs to row i. They live
    // as long as the session and are never written to the settings file.
    static constexpr int kUserListCount = 10;
    QStringList& userList(int n) { return m_userLists[size_t(n)]; }
    const QStringList& userList(int n) const { return m_userLists[size_t(n)]; }

    // The number text each row took in the latest run of a numbering command, empty for rows
    // that took none; unset until one has run. "赋值到" copies it into a user list.
    std::optional<QStringList> numbersForAssignment;

    // The fields read from the rows' files (music tags, photo data …), kept across runs so
    // that each file is read once. The metadata layer makes it on first use; reading a field
    // does not change what the session is, so a const session hands it out too.
    std::shared_ptr<metadata::FieldCache>& fieldCacheSlot() const { return m_fieldCache; }

    // Settings changes are written whole to the settings file; false (with a message in
    // the log) when the file could not be written. A session without a file keeps them
    // in memory, as the command line does.
    bool saveSettings();
    void setSettingsReadOnly(bool readOnly) { m_settingsReadOnly = readOnly; }

private:
    SettingsStore m_settings;
    CommandList m_commands{m_settings};
    Interaction& m_interaction;
    RenameList m_list;
    MessageLog m_messages;
    QString m_runStamp;
    std::vector<int> m_undoStack;
    quint64 m_namesRevision = 0;
    bool m_pendingImport = false;
    bool m_settingsReadOnly = false;
    std::function<void()> m_commandRunner;
    std::function<void()> m_pageResetter;
    std::function<void()> m_pendingListRefresh;
    bool m_onFileRenamePage = true;
    bool m_resettingPages = false;
    bool m_newNamesCurrent = false;
    std::array<QStringList, kUserListCount> m_userLists;
    mutable std::shared_ptr<metadata::FieldCache> m_fieldCache;
    Pipeline m_pipeline{*this};
};

}  // namespace qp
