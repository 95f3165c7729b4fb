#include "core/CommandRegistry.h"

#include "core/SettingsStore.h"

namespace qp {

ExecutorSide executorFor(QStringView subCode)
{
    if (subCode.size() >= 2) {
        const QChar family = subCode[0];
        const QChar group = subCode[1];
        if (family == u'E' && group >= u'1' && group <= u'7')
            return ExecutorSide::Extension;
        if (family == u'A' && group == u'8')
            return ExecutorSide::Extension;
    }
    if (subCode == u"A101" || subCode == u"A1101" || subCode == u"A1201")
        return ExecutorSide::Extension;
    return ExecutorSide::Main;
}

bool carriesScript(QStringView subCode) { return subCode == u"A1201" || subCode == u"A1301"; }

bool CommandSection::readBool(const QString& key, bool defaultValue) const
{
    return store.readBool(name, key, defaultValue);
}

qint64 CommandSection::readInt(const QString& key, qint64 defaultValue) const
{
    return store.readInt(name, key, defaultValue);
}

QString CommandSection::readString(const QString& key, const QString& defaultValue) const
{
    return store.readString(name, key, defaultValue);
}

void CommandRegistry::registerCommand(const QString& code, CommandFactory factory)
{
    m_factories.insert(code, std::move(factory));
}

void CommandRegistry::registerFamily(const QStringList& codes, const CommandFactory& factory)
{
    for (const QString& code : codes)
        m_factories.insert(code, factory);
}

std::unique_ptr<CompiledCommand> CommandRegistry::compile(const CommandSection& section) const
{
    const auto it = m_factories.constFind(section.code);
    if (it == m_factories.constEnd() || !*it)
        return nullptr;
    return (*it)(section);
}

bool CommandRegistry::prepareRun(Session& session, const QStringList& sections, qsizetype rows) const
{
    for (const RunPreparer& prepare : m_preparers) {
        if (!prepare(session, sections, rows))
            return false;
    }
    return true;
}

}  // namespace qp
