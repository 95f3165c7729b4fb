// The commands the pipeline can run, keyed by sub-code ("N101", "E301", …). Each command
// family registers a factory per code; once per run the pipeline asks the registry to
// compile every listed command from its settings section into an object that is then
// applied to many rows without reading the settings store again.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

namespace qp {

class Session;
class SettingsStore;
struct FileEntry;

// Which executor a sub-code belongs to. The extension executor may change the name and the
// extension; the main executor changes the name only.
enum class ExecutorSide { Main, Extension };
// "E1".."E7" and "A8" as the first two characters, and "A101", "A1101", "A1201" go to the
// extension executor; every other code to the main executor.
ExecutorSide executorFor(QStringView subCode);
// The codes whose command sections carry a script: "A1201" (Pascal) and "A1301" (Python).
bool carriesScript(QStringView subCode);

// A command's stored section as a factory reads it. Every read names its default.
struct CommandSection {
    const SettingsStore& store;
    QString name;  // "CMD_" + function code + time stamp
    QString code;  // its "CMDid"

    bool readBool(const QString& key, bool defaultValue) const;
    qint64 readInt(const QString& key, qint64 defaultValue) const;
    // With the "|…|" wrapping of stored texts removed.
    QString readString(const QString& key, const QString& defaultValue) const;
};

// What an applied command can reach besides the working pair: the session (numbering
// state, meta-variables, user lists), the index of the row in the rename list and the row
// itself, whose new-name columns still hold the values from before this command.
struct CommandContext {
    Session& session;
    qsizetype rowIndex;
    const FileEntry& row;
};

class CompiledCommand {
public:
    virtual ~CompiledCommand() = default;
    // Applies the command to one ticked row's working pair. For a main-executor code the
    // pipeline discards any change to `ext`.
    virtual void apply(const CommandContext& context, QString& name, QString& ext) = 0;
    // Called instead of apply() for an unticked row inside the row limit, so that a command
    // that counts rows (numbering) can decide whether a skipped row takes a number.
    virtual void skip(const CommandContext& context) { (void)context; }
    // Called once after the command has been applied to every processed row of a run (not
    // when the run was stopped), so that a command can report what it counted.
    virtual void finish(Session& session) { (void)session; }
};

using CommandFactory = std::function<std::unique_ptr<CompiledCommand>(const CommandSection&)>;

// Runs before a run processes its rows, with the command sections it runs and how many
// leading rows it processes: a family whose commands read the rows' files reads them all
// here, once, with progress that can be stopped. False when the user asked to stop.
using RunPreparer = std::function<bool(Session& session, const QStringList& sections, qsizetype rows)>;

class CommandRegistry {
public:
    // Registers (or replaces) the factory of one sub-code.
    void registerCommand(const QString& code, CommandFactory factory);
    // Registers one factory for several codes; the factory tells them apart by
    // CommandSection::code.
    void registerFamily(const QStringList& codes, const CommandFactory& factory);

    bool knows(const QString& code) const { return m_factories.contains(code); }
    qsizetype size() const { return m_factories.size(); }

    // The compiled command, or null when no family knows the section's code (or its factory
    // declined to build one).
    std::unique_ptr<CompiledCommand> compile(const CommandSection& section) const;

    void addRunPreparer(RunPreparer preparer) { m_preparers.push_back(std::move(preparer)); }
    // Every preparer in turn; false as soon as one was stopped.
    bool prepareRun(Session& session, const QStringList& sections, qsizetype rows) const;

private:
    QHash<QString, CommandFactory> m_factories;
    std::vector<RunPreparer> m_preparers;
};

}  // namespace qp
