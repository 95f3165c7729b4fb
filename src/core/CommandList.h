// The ordered list of rename commands. Each command is a row of the command grid plus one
// section of the settings store holding its parameters; the section "CommandList" mirrors
// the grid's order at every moment, so the list survives a restart.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace qp {

class SettingsStore;

struct CommandRow {
    QString functionCode;  // "代号": "N1", "E3", "A10"
    QString comment;       // "命令描述", the section's "CMDComment"
    QString section;       // "命令编号": "CMD_" + function code + yyyymmddhhmmsszzz
    bool ended = false;    // "状态": "Ok" once ended; only the last command may be open

    QString statusText() const { return ended ? QStringLiteral("Ok") : QString(); }
};

class CommandList {
public:
    explicit CommandList(SettingsStore& store) : m_store(store) {}

    const std::vector<CommandRow>& rows() const { return m_rows; }
    qsizetype size() const { return qsizetype(m_rows.size()); }
    bool isEmpty() const { return m_rows.empty(); }
    // The section names in grid order (what the pipeline runs).
    QStringList sectionNames() const;

    // Clears the grid and erases every "CMD_" section and "CommandList" from the store.
    void clearAll();
    // Rebuilds the grid from the store's "CommandList"; every rebuilt command is ended.
    void rebuildFromStore();

private:
    SettingsStore& m_store;
    std::vector<CommandRow> m_rows;
};

}  // namespace qp
