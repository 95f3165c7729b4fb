#include "commands/MetadataCommands.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include "commands/NameText.h"
#include "core/CommandRegistry.h"
#include "core/FileEntry.h"
#include "core/Session.h"
#include "expressions/FieldTags.h"
#include "expressions/MetaVariables.h"
#include "metadata/FieldCatalogue.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("MetadataCommands", text); }

enum class WhenMissing { LeaveRow = 0, Empty = 1, Fallback = 2 };

const char* const kPlacements[] = {
    QT_TRANSLATE_NOOP("MetadataCommands", "替换整个文件名"),
    QT_TRANSLATE_NOOP("MetadataCommands", "添加到文件名之前"),
    QT_TRANSLATE_NOOP("MetadataCommands", "添加到文件名之后"),
    QT_TRANSLATE_NOOP("MetadataCommands", "插入到指定位置"),
};
constexpr int kPlacementCount = 4;

// "M1_Template" for family 'M'.
QString keyOf(QChar family, const char* meaning) { return family + QStringLiteral("1_") + QLatin1String(meaning); }

class FieldNameCommand : public CompiledCommand {
public:
    FieldNameCommand(const CommandSection& s, QChar family) : m_family(family)
    {
        m_placement = int(s.code.right(1).toInt()) - 1;
        m_where.kind = nametext::Placement::AtPosition;
        m_where.position = s.readInt(keyOf(family, "InsertPos"), 0);
        m_where.fromRight = s.readBool(keyOf(family, "InsertPosFromRight"), false);
        const qint64 missing = s.readInt(keyOf(family, "Missing"), 0);
        m_whenMissing = missing == 1 ? WhenMissing::Empty : missing == 2 ? WhenMissing::Fallback : WhenMissing::LeaveRow;
        ExpressionOptions options;
        if (m_whenMissing != WhenMissing::LeaveRow)
            options.fields.missingText = m_whenMissing == WhenMissing::Fallback ? s.readString(keyOf(family, "MissingText"), {})
                                                                                  : QString();
        options.fields.dateFromDigitized = s.readBool(keyOf(family, "DateDigitized"), true);
        options.fields.dateFromXmp = s.readBool(keyOf(family, "DateXmp"), true);
        options.fields.dateFromFileTime = s.readBool(keyOf(family, "DateFileTime"), false);
        m_template = MetaExpression(s.readString(keyOf(family, "Template"), {}), std::move(options));
    }

    void apply(const CommandContext& context, QString& name, QString&) override
    {
        if (m_template.text().isEmpty() || context.row.isFolder || m_placement < 0 || m_placement >= kPlacementCount)
            return;
        ExpansionReport report;
        const QString text = m_template.expand(context.session, context.rowIndex, report);
        if (report.unreadable)
            ++m_unreadable;
        if (report.missingFields > 0 && m_whenMissing == WhenMissing::LeaveRow) {
            ++m_leftAlone;
            return;
        }
        switch (m_placement) {
        case 0: name = text; break;
        case 1: name = text + name; break;
        case 2: name += text; break;
        default: name = nametext::place(name, text, m_where); break;
        }
    }

    void finish(Session& session) override
    {
        const metadata::FamilyInfo* family = metadata::familyOf(m_family);
        const QString what = family ? family->title : QString(m_family);
        if (m_unreadable > 0)
            session.messages().add(tr("有 %1 个文件无法读取%2（文件已不存在、为空、已损坏或不是此类文件）。").arg(m_unreadable).arg(what),
                                   MessageColour::Red);
        if (m_leftAlone > 0)
            session.messages().add(tr("有 %1 个对象缺少模板所用的%2字段，保持不变。").arg(m_leftAlone).arg(what));
    }

private:
    QChar m_family;
    int m_placement = 0;
    nametext::Placement m_where;
    WhenMissing m_whenMissing = WhenMissing::LeaveRow;
    MetaExpression m_template{QString()};
    int m_unreadable = 0;
    int m_leftAlone = 0;
};

// How often the prefetch polls the interaction (at its first read, then after this many
// milliseconds): reading a file costs far less than letting a window redraw.
constexpr int kPollEveryMs = 50;

}  // namespace

QStringList metadataCommandCodes(QChar family)
{
    QStringList codes;
    for (int p = 1; p <= kPlacementCount; ++p)
        codes.append(family + QStringLiteral("10") + QString::number(p));
    return codes;
}

QString metadataCommandComment(const QString& code)
{
    if (code.size() != 4 || !code.mid(1, 2).startsWith(u"10"))
        return {};
    const metadata::FamilyInfo* family = metadata::familyOf(code[0]);
    const int placement = code[3].digitValue();
    if (!family || placement < 1 || placement > kPlacementCount)
        return {};
    return tr("%1更名：%2").arg(family->title, tr(kPlacements[placement - 1]));
}

QString fieldFamiliesUsedBy(const Session& session, const QStringList& sections)
{
    QString families;
    for (const QString& section : sections) {
        for (const auto& [key, value] : session.settings().sectionEntries(section)) {
            for (qsizetype at = value.indexOf(u'<'); at >= 0 && at + 2 < value.size(); at = value.indexOf(u'<', at + 1)) {
                const QChar letter = value[at + 1].toUpper();
                if (value[at + 2] == u'.' && metadata::familyOf(letter) && !families.contains(letter))
                    families += letter;
            }
        }
    }
    return families;
}

bool prefetchFields(Session& session, const QString& families, qsizetype rows)
{
    metadata::FieldCache& cache = fieldCacheOf(session);
    cache.beginRun();
    if (families.isEmpty())
        return true;
    std::vector<metadata::ReadRequest> requests;
    for (const QChar family : families)
        requests.push_back(fieldReadRequest(session.settings(), family));
    Interaction& ui = session.interaction();
    const QString caption = tr("正在读取文件信息");
    const RenameList& list = session.renameList();
    QElapsedTimer sincePoll;
    bool shown = false;
    for (qsizetype r = 0; r < rows && r < list.size(); ++r) {
        const FileEntry& row = list.at(r);
        if (!row.selected || row.isFolder)
            continue;
        const QString path = row.fullPath();
        for (qsizetype f = 0; f < families.size(); ++f) {
            const qint64 reads = cache.readCount();
            cache.fields(path, families[f], requests[size_t(f)]);
            if (cache.readCount() == reads)
                continue;  // at hand already
            if (!shown || sincePoll.elapsed() >= kPollEveryMs) {
                shown = true;
                sincePoll.start();
                ui.progress(caption, int(r * 100 / std::max<qsizetype>(rows, 1)));
                if (ui.stopRequested())
                    return false;
            }
        }
    }
    return true;
}

void registerMetadataCommands(CommandRegistry& registry)
{
    for (const metadata::FamilyInfo& family : metadata::fieldFamilies()) {
        const QChar letter = family.letter;
        registry.registerFamily(metadataCommandCodes(letter), [letter](const CommandSection& section) {
            return std::make_unique<FieldNameCommand>(section, letter);
        });
    }
    registry.addRunPreparer([](Session& session, const QStringList& sections, qsizetype rows) {
        return prefetchFields(session, fieldFamiliesUsedBy(session, sections), rows);
    });
}

}  // namespace qp
