// Everything a main window would own apart from its widgets. The GUI, the command line
// and the tests each hold one Session and drive it through the same operations.
#pragma once

#include <QString>
#include <functional>

#include "core/CommandList.h"
#include "core/Interaction.h"
#include "core/MessageLog.h"
#include "core/RenameList.h"
#include "core/SettingsStore.h"

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

    const QString& runStamp() const { return m_runStamp; }
    int applyCounter() const { return m_applyCounter; }
    int nextApplyNumber() { return ++m_applyCounter; }

    // Set after a rename programme or snapshot was imported into the list and cleared by
    // the next load or recorded command.
    bool pendingImport() const { return m_pendingImport; }
    void setPendingImport(bool pending) { m_pendingImport = pending; }

    // The texts of the path box and the two filter boxes.
    QString pathText;
    QString keepText = QStringLiteral("*.*");
    QString excludeText;

    // Runs the whole command list over the whole rename list; installed by the command
    // pipeline. Loading calls it unless "AddNewFilesIgnoreCMD" is set.
    void setCommandRunner(std::function<void()> runner) { m_commandRunner = std::move(runner); }
    void runAllCommands()
    {
        if (m_commandRunner)
            m_commandRunner();
    }

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
    int m_applyCounter = 0;
    bool m_pendingImport = false;
    bool m_settingsReadOnly = false;
    std::function<void()> m_commandRunner;
};

}  // namespace qp
