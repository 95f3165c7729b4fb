// The ordered list of rename commands. Each command is a row of the command grid plus one
// section of the settings store holding its parameters; the section "CommandList" mirrors
// the grid's order at every moment, so the list survives a restart.
//
// CommandList itself only keeps the grid and the store in step. The operations a menu or a
// function page calls (with their questions, the guard of the file page and the re-run of
// the pipeline) are the free functions further down, which work on a whole Session.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace qp {

class Session;
class SettingsStore;

struct CommandRow {
    QString functionCode;  // "代号": "N1", "E3", "A10"
    QString comment;       // "命令描述", the section's "CMDComment"
    QString section;       // "命令编号": "CMD_" + function code + yyyymmddhhmmsszzz
    bool ended = false;    // "状态": "Ok" once ended; only the last command may be open

    QString statusText() const { return ended ? QStringLiteral("Ok") : QString(); }
};

// What a function page is told when it asks to record its command.
struct RecordAnswer {
    bool write = false;     // write the parameters into `section`, then run that one command
    QString section;
    bool created = false;   // a new row: the page writes "CMDid" and "CMDComment" too
    bool removed = false;   // "保持不变" took the open command of this function away
};

// What reading the "CommandList" section found besides the usable entries.
struct ListedSections {
    QStringList sections;   // in list order
    qint64 declared = 0;    // "CommandListCount" as stored
    int skipped = 0;        // numbered keys that are empty, not a command section or missing
};

class CommandList {
public:
    using Clock = std::function<QDateTime()>;

    explicit CommandList(SettingsStore& store) : m_store(store) {}

    const std::vector<CommandRow>& rows() const { return m_rows; }
    qsizetype size() const { return qsizetype(m_rows.size()); }
    bool isEmpty() const { return m_rows.empty(); }
    // The section names in grid order (what the pipeline runs).
    QStringList sectionNames() const;
    // The last row's command is still open (its page may change it).
    bool lastIsOpen() const { return !m_rows.empty() && !m_rows.back().ended; }

    // Clears the grid and erases every "CMD_" section and "CommandList" from the store.
    void clearAll();
    // Rebuilds the grid from the store's "CommandList"; every rebuilt command is ended.
    // Entries that name no command section are skipped, and "CommandList" is then
    // rewritten so that the store mirrors the grid again.
    void rebuildFromStore();

    // Steps 3 to 5 of recording (no questions): see recordCommand().
    RecordAnswer record(const QString& functionCode, bool keepUnchanged);
    // Writes the command's sub-code and description and shows the description in the grid.
    void describe(const QString& section, const QString& subCode, const QString& comment);
    // Ends the open last command; false when there was none.
    bool endCurrent();
    // Deletes the last row and its section; false on an empty list.
    bool removeLast();
    // Deletes every row after `row` (0-based) with its section; returns how many went.
    qsizetype removeAfter(qsizetype row);

    // The time new section names are made from; tests pin it.
    void setClock(Clock clock) { m_clock = std::move(clock); }

    // The command sections that "CommandList" names, in order. Only keys that are there are
    // read, so a count of 999999999 costs no more than the keys that exist; a value that
    // does not begin with "CMD_" or names no section is skipped (deleting such a row would
    // otherwise erase a section of the program's own settings).
    static ListedSections listedSections(const SettingsStore& store);
    // Erases every "CMD_" section and "CommandList" from a store.
    static void eraseCommands(SettingsStore& store);
    // "CMD_" + code + yyyyMMddHHmmsszzz of `time`.
    static QString sectionName(const QString& functionCode, const QDateTime& time);

private:
    void writeListSection();
    QString newSectionName(const QString& functionCode) const;
    bool nameInUse(const QString& section) const;

    SettingsStore& m_store;
    std::vector<CommandRow> m_rows;
    Clock m_clock;
};

// ---------------------------------------------------------------------------------------
// Operations on a session's command list, as the menus and function pages call them.

// Recording a command for a function page, given its function code and whether the
// function's "保持不变" option is selected:
//  1. nothing is recorded while the pages are being reset or the rename list is empty;
//  2. with a pending import, the user is asked first (Cancel: nothing), then the flag is
//     cleared and a pending refresh of the rename list is carried out;
//  3. "保持不变" removes this function's open command (the list is re-run) or ends the
//     open command of another function; nothing is written;
//  4. this function's open command is updated in place;
//  5. otherwise a new command is appended and the previous one is ended.
RecordAnswer recordCommand(Session& session, const QString& functionCode, bool keepUnchanged);

// False (after telling the user) when the page "1.文件名处理" is not the one showing.
bool requireFileRenamePage(Session& session);

// "结束当前命令（插入空命令）": ends the open command and resets the function pages.
bool endCurrentCommand(Session& session);
// "删除最后一条命令(&D)".
bool deleteLastCommand(Session& session);
// "删除选择项之后的命令(&C)": keeps rows 0..row; works on any page.
bool deleteCommandsAfter(Session& session, qsizetype row);
// "清空命令列表": asks, clears, restores the new names and resets the pages.
bool clearCommandList(Session& session);
// "刷新命令列表(&R)".
bool refreshCommandList(Session& session);

// The function page group that shows a function code's command ("N1", "A1_1", …); empty
// for a code of no known family.
QString pageGroupOf(const QString& functionCode);

}  // namespace qp
