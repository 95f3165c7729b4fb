// Computes the new-name columns of the rename list from the command list. It never touches
// the disk: it only rewrites each row's new name, new extension and state.
//
// Commands run one after another, each over all processed rows in grid order, so a command
// sees what every earlier command made of every row, and numbering counts in grid order.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "core/CommandRegistry.h"

namespace qp {

class Session;
class SettingsStore;

class Pipeline {
public:
    explicit Pipeline(Session& session) : m_session(session) {}
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;

    // Command families register their codes here once, at start-up.
    CommandRegistry& registry() { return m_registry; }
    const CommandRegistry& registry() const { return m_registry; }

    // Runs the whole command list from the current names. Every row is reset first; then
    // `allRows` processes every row (preview, rename), otherwise the automatic-preview
    // settings choose how many leading rows are processed. False when stopped on request;
    // rows not reached then keep their reset names. `keepStates`: the rows keep the states an
    // apply gave them (renamed, skipped, failed) instead of going back to "loaded".
    bool runAll(bool allRows, bool keepStates = false);
    // Applies the one command stored in `section` on top of the present new names (a page
    // has just recorded it). With an empty command list it restores the new names instead,
    // unless an imported programme's names are waiting to be applied. Does nothing while
    // the session puts the function pages back to "leave unchanged". False when stopped.
    bool runOne(const QString& section);

    // How many leading rows a run processes.
    qsizetype rowLimit(bool allRows) const;
    // The row being processed, -1 between runs.
    qsizetype currentRow() const { return m_currentRow; }


private:
    struct Step {
        std::unique_ptr<CompiledCommand> command;  // null: no family knows the code
        bool extensionSide = false;
    };

    Step compile(const QString& section);
    void resetRows(bool newNames, bool states = true);
    bool runSteps(std::vector<Step>& steps, qsizetype limit, const QString& caption);
    void finished(const QString& text);

    Session& m_session;
    CommandRegistry m_registry;
    qsizetype m_currentRow = -1;
};

}  // namespace qp
