#include "core/Pipeline.h"

#include "core/CommandList.h"

#include <QCoreApplication>
#include <algorithm>

#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp {

namespace {

constexpr qint64 kDefaultPreviewRows = 10;

// Polling the interaction lets the GUI pump its events, which costs far more than a row.
constexpr qsizetype kPollEvery = 1024;

QString tr(const char* text) { return QCoreApplication::translate("Pipeline", text); }

int percentOf(qint64 done, qint64 total) { return total > 0 ? int(done * 100 / total) : 0; }

}  // namespace

qsizetype Pipeline::rowLimit(bool allRows) const
{
    const qsizetype rows = m_session.renameList().size();
    if (allRows)
        return rows;
    const SettingsStore& settings = m_session.settings();
    if (!settings.readBool(keys::kOperation, keys::kAutoPreview, true))
        return 0;
    if (!settings.readBool(keys::kOperation, keys::kAutoPreviewBefore, false))
        return rows;
    const qint64 wanted = settings.readInt(keys::kOperation, keys::kAutoPreviewNum, kDefaultPreviewRows);
    return qsizetype(std::clamp<qint64>(wanted, 0, rows));
}

Pipeline::Step Pipeline::compile(const QString& section)
{
    const SettingsStore& store = m_session.settings();
    const CommandSection source{store, section, store.readString(section, keys::kCommandId, QString())};
    Step step;
    step.extensionSide = executorFor(source.code) == ExecutorSide::Extension;
    step.command = m_registry.compile(source);
    if (!step.command) {
        m_session.messages().add(tr("无法识别的命令，已跳过：%1（CMDid=%2）").arg(section, source.code),
                                 MessageColour::Red);
    }
    return step;
}

void Pipeline::resetRows(bool newNames, bool states)
{
    RenameList& list = m_session.renameList();
    const qsizetype rows = list.size();
    for (qsizetype i = 0; i < rows; ++i) {
        FileEntry& row = list[i];
        if (newNames) {
            row.newName = row.name;
            row.newExt = row.ext;
        }
        if (states)
            row.state = StateLoaded;
    }
}

bool Pipeline::runSteps(std::vector<Step>& steps, qsizetype limit, const QString& caption)
{
    Interaction& ui = m_session.interaction();
    RenameList& list = m_session.renameList();
    const qint64 total = qint64(steps.size()) * limit;
    qint64 done = 0;
    for (Step& step : steps) {
        if (!step.command) {
            done += limit;
            continue;
        }
        CompiledCommand& command = *step.command;
        for (qsizetype j = 0; j < limit; ++j, ++done) {
            if (done % kPollEvery == 0) {
                ui.progress(caption, percentOf(done, total));
                if (ui.stopRequested()) {
                    m_currentRow = -1;
                    return false;
                }
            }
            FileEntry& row = list[j];
            m_currentRow = j;
            const CommandContext context{m_session, j, row};
            if (!row.selected) {
                command.skip(context);
                continue;
            }
            // The working pair is a copy (cheap: the texts are shared) so that the command
            // still sees the row's columns as they were before it.
            QString name = row.newName;
            QString ext = row.newExt;
            command.apply(context, name, ext);
            row.newName = std::move(name);
            if (step.extensionSide)
                row.newExt = std::move(ext);
        }
        command.finish(m_session);
    }
    m_currentRow = -1;
    ui.progress(caption, 100);
    return true;
}

void Pipeline::finished(const QString& text)
{
    m_session.interaction().status(text);
    m_session.messages().add(text);
}

bool Pipeline::runAll(bool allRows, bool keepStates)
{
    Interaction& ui = m_session.interaction();
    const QString caption = tr("正在执行命令序列");
    const QStringList sections = CommandList::listedSections(m_session.settings()).sections;
    BusyScope busy(ui);
    ui.progress(caption, 0);
    m_session.setNewNamesCurrent(false);
    resetRows(true, !keepStates);
    const qsizetype limit = rowLimit(allRows);
    std::vector<Step> steps;
    steps.reserve(size_t(sections.size()));
    for (const QString& section : sections)
        steps.push_back(compile(section));
    if (!m_registry.prepareRun(m_session, sections, limit) || !runSteps(steps, limit, caption))
        return false;
    m_session.setNewNamesCurrent(limit == m_session.renameList().size());
    finished(tr("命令序列执行完毕。"));
    return true;
}

bool Pipeline::runOne(const QString& section)
{
    if (m_session.resettingPages())
        return true;
    Interaction& ui = m_session.interaction();
    if (m_session.settings().readInt(keys::kCommandList, keys::kCommandListCount, 0) <= 0) {
        // The last command was just removed: back to the current names, unless they are
        // an imported programme's names still waiting to be applied.
        if (!m_session.pendingImport()) {
            BusyScope busy(ui);
            ui.progress(tr("正在还原新文件名和新扩展名"), 0);
            resetRows(true);
            m_session.setNewNamesCurrent(true);
        }
        return true;
    }
    const QString caption = tr("正在执行命令");
    BusyScope busy(ui);
    std::vector<Step> steps;
    steps.push_back(compile(section));
    ui.progress(caption, 0);
    resetRows(false);
    const bool wereCurrent = m_session.newNamesCurrent();
    m_session.setNewNamesCurrent(false);
    const qsizetype limit = rowLimit(false);
    if (!m_registry.prepareRun(m_session, {section}, limit) || !runSteps(steps, limit, caption))
        return false;
    m_session.setNewNamesCurrent(wereCurrent && limit == m_session.renameList().size());
    finished(tr("命令执行完毕。"));
    return true;
}

}  // namespace qp
