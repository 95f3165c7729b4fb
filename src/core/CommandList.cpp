#include "core/CommandList.h"

#include "core/SettingsStore.h"

namespace qp {

namespace {
const QString kListSection = QStringLiteral("CommandList");
const QString kCountKey = QStringLiteral("CommandListCount");
const QString kSectionPrefix = QStringLiteral("CMD_");
}  // namespace

QStringList CommandList::sectionNames() const
{
    QStringList names;
    names.reserve(size());
    for (const CommandRow& row : m_rows)
        names.append(row.section);
    return names;
}

void CommandList::clearAll()
{
    m_rows.clear();
    for (const QString& section : m_store.sectionNames()) {
        if (section.startsWith(kSectionPrefix, Qt::CaseInsensitive))
            m_store.eraseSection(section);
    }
    m_store.eraseSection(kListSection);
}

void CommandList::rebuildFromStore()
{
    m_rows.clear();
    const qint64 count = m_store.readInt(kListSection, kCountKey, 0);
    for (qint64 i = 1; i <= count; ++i) {
        const QString section = m_store.readString(kListSection, QString::number(i), QString());
        if (section.isEmpty())
            continue;
        const QString code = m_store.readString(section, QStringLiteral("CMDid"), QString());
        m_rows.push_back(CommandRow{code.chopped(qMin<qsizetype>(2, code.size())),
                                    m_store.readString(section, QStringLiteral("CMDComment"), QString()), section,
                                    true});
    }
}

}  // namespace qp
