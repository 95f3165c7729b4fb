#include "core/RowFilter.h"

#include <QCoreApplication>
#include <QDateTime>
#include <algorithm>

#include "core/Interaction.h"
#include "core/NameFilter.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsStore.h"
#include "platform/FileSystem.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("RowFilter", text); }

constexpr std::int64_t kNanosPerMilli = 1000000;

std::int64_t startOfDay(const QDate& day)
{
    return QDateTime(day, QTime(0, 0)).toMSecsSinceEpoch() * kNanosPerMilli;
}

void addFlag(RowFilterSpec::Flag flag, std::uint32_t bit, std::uint32_t& required, std::uint32_t& forbidden)
{
    if (flag == RowFilterSpec::Flag::Set)
        required |= bit;
    else if (flag == RowFilterSpec::Flag::NotSet)
        forbidden |= bit;
}

QString rangeProblem(const RowFilterSpec& spec)
{
    if (spec.minSize && spec.maxSize && *spec.minSize > *spec.maxSize)
        return tr("大小范围的下限大于上限。");
    if (spec.from && spec.to && *spec.from > *spec.to)
        return tr("日期范围的起始日期晚于结束日期。");
    return {};
}

}  // namespace

std::variant<RowFilter, QString> RowFilter::compile(const RowFilterSpec& spec)
{
    if (const QString problem = rangeProblem(spec); !problem.isEmpty())
        return problem;
    RowFilter filter;
    filter.m_caseSensitive = spec.caseSensitive;
    filter.m_subject = spec.subject;
    if (spec.syntax == RowFilterSpec::Syntax::Regex && !spec.pattern.isEmpty()) {
        filter.m_useRegex = true;
        filter.m_regex.setPattern(spec.pattern);
        filter.m_regex.setPatternOptions(spec.caseSensitive ? QRegularExpression::NoPatternOption
                                                            : QRegularExpression::CaseInsensitiveOption);
        if (!filter.m_regex.isValid()) {
            return tr("正则表达式有误：%1（第 %2 个字符处）")
                .arg(filter.m_regex.errorString())
                .arg(filter.m_regex.patternErrorOffset() + 1);
        }
        filter.m_regex.optimize();
    } else if (spec.syntax == RowFilterSpec::Syntax::Wildcard) {
        for (const QString& mask : spec.pattern.split(QLatin1Char('|'), Qt::SkipEmptyParts))
            filter.m_masks.push_back(spec.caseSensitive ? mask : mask.toCaseFolded());
    }
    filter.m_files = spec.files;
    filter.m_folders = spec.folders;
    if (!spec.hidden)
        filter.m_forbidden |= platform::AttrHidden;
    if (!spec.system)
        filter.m_forbidden |= platform::AttrSystem;
    addFlag(spec.readOnly, platform::AttrReadOnly, filter.m_required, filter.m_forbidden);
    addFlag(spec.archive, platform::AttrArchive, filter.m_required, filter.m_forbidden);
    filter.m_minSize = spec.minSize.value_or(0);
    filter.m_maxSize = spec.maxSize.value_or(UINT64_MAX);
    if (spec.from)
        filter.m_from = startOfDay(*spec.from);
    if (spec.to)
        filter.m_to = startOfDay(spec.to->addDays(1)) - 1;
    filter.m_keep = spec.action == RowFilterSpec::Action::Keep;
    return filter;
}

bool RowFilter::patternMatches(const FileEntry& row) const
{
    if (!m_useRegex && m_masks.empty())
        return true;
    QString subject;
    switch (m_subject) {
    case RowFilterSpec::Subject::Name:
        subject = row.name;
        break;
    case RowFilterSpec::Subject::NameWithExtension:
        subject = row.fileName();
        break;
    case RowFilterSpec::Subject::FullPath:
        subject = nativeSeparators(row.fullPath());
        break;
    }
    if (m_useRegex)
        return m_regex.match(subject).hasMatch();
    if (!m_caseSensitive)
        subject = std::move(subject).toCaseFolded();
    for (const QString& mask : m_masks) {
        if (wildcardMatch(mask, subject))
            return true;
    }
    return false;
}

bool RowFilter::matches(const FileEntry& row) const
{
    if (!(row.isFolder ? m_folders : m_files))
        return false;
    if ((row.attributes & m_forbidden) != 0 || (row.attributes & m_required) != m_required)
        return false;
    if (!row.isFolder && (row.size < m_minSize || row.size > m_maxSize))
        return false;
    if (row.modified < m_from || row.modified > m_to)
        return false;
    return patternMatches(row);
}

RowFilterResult filterRows(Session& session, const RowFilterSpec& spec)
{
    RowFilterResult result;
    auto compiled = RowFilter::compile(spec);
    if (auto* problem = std::get_if<QString>(&compiled)) {
        result.error = *problem;
        session.messages().add(tr("筛选未进行：") + *problem, MessageColour::Red);
        return result;
    }
    const RowFilter& filter = std::get<RowFilter>(compiled);
    {
        BusyScope busy(session.interaction());
        session.interaction().status(tr("正在筛选更名文件列表"));
        result.removed = session.renameList().removeIf([&](const FileEntry& row) { return filter.drops(row); });
    }
    result.ok = true;
    result.kept = session.renameList().size();
    session.messages().add(tr("筛选完成：保留 %1 个对象，移除 %2 个对象。").arg(result.kept).arg(result.removed));
    if (result.removed > 0)
        session.runAllCommands();
    return result;
}

// ---------------------------------------------------------------------------------------
// Named sets

namespace filtersets {

namespace {

const QString kPrefix = QStringLiteral("FilterSet_");

QString sectionOf(const QString& name) { return kPrefix + name; }

QString dateText(const std::optional<QDate>& date) { return date ? date->toString(Qt::ISODate) : QString(); }

std::optional<QDate> dateFrom(const QString& text)
{
    const QDate date = QDate::fromString(text, Qt::ISODate);
    return date.isValid() ? std::optional<QDate>(date) : std::nullopt;
}

std::optional<std::uint64_t> sizeFrom(qint64 stored)
{
    return stored >= 0 ? std::optional<std::uint64_t>(std::uint64_t(stored)) : std::nullopt;
}

template <typename Enum>
Enum enumFrom(qint64 stored, Enum last)
{
    return stored >= 0 && stored <= qint64(last) ? Enum(stored) : Enum(0);
}

}  // namespace

QStringList names(const SettingsStore& settings)
{
    QStringList found;
    for (const QString& section : settings.sectionNames()) {
        if (section.startsWith(kPrefix, Qt::CaseInsensitive) && section.size() > kPrefix.size())
            found.append(section.mid(kPrefix.size()));
    }
    return found;
}

std::optional<RowFilterSpec> read(const SettingsStore& s, const QString& name)
{
    const QString section = sectionOf(name);
    if (!s.hasSection(section))
        return std::nullopt;
    using Spec = RowFilterSpec;
    Spec spec;
    spec.pattern = s.readString(section, QStringLiteral("Pattern"), QString());
    spec.syntax = enumFrom(s.readInt(section, QStringLiteral("Syntax"), 0), Spec::Syntax::Regex);
    spec.subject = enumFrom(s.readInt(section, QStringLiteral("Subject"), 1), Spec::Subject::FullPath);
    spec.caseSensitive = s.readBool(section, QStringLiteral("CaseSensitive"), false);
    spec.files = s.readBool(section, QStringLiteral("Files"), true);
    spec.folders = s.readBool(section, QStringLiteral("Folders"), true);
    spec.hidden = s.readBool(section, QStringLiteral("Hidden"), true);
    spec.system = s.readBool(section, QStringLiteral("System"), true);
    spec.minSize = sizeFrom(s.readInt(section, QStringLiteral("MinSize"), -1));
    spec.maxSize = sizeFrom(s.readInt(section, QStringLiteral("MaxSize"), -1));
    spec.from = dateFrom(s.readString(section, QStringLiteral("From"), QString()));
    spec.to = dateFrom(s.readString(section, QStringLiteral("To"), QString()));
    spec.readOnly = enumFrom(s.readInt(section, QStringLiteral("ReadOnly"), 0), Spec::Flag::NotSet);
    spec.archive = enumFrom(s.readInt(section, QStringLiteral("Archive"), 0), Spec::Flag::NotSet);
    spec.action = enumFrom(s.readInt(section, QStringLiteral("Action"), 0), Spec::Action::Remove);
    return spec;
}

QString write(SettingsStore& s, const QString& name, const RowFilterSpec& spec)
{
    if (name.trimmed().isEmpty() || name.contains(QLatin1Char('[')) || name.contains(QLatin1Char(']'))
        || std::any_of(name.begin(), name.end(), [](QChar c) { return c.category() == QChar::Other_Control; }))
        return tr("筛选方案的名称不能为空，也不能含有“[”“]”或控制字符。");
    const QString section = sectionOf(name);
    s.eraseSection(section);
    s.writeString(section, QStringLiteral("Pattern"), spec.pattern);
    s.writeInt(section, QStringLiteral("Syntax"), int(spec.syntax));
    s.writeInt(section, QStringLiteral("Subject"), int(spec.subject));
    s.writeBool(section, QStringLiteral("CaseSensitive"), spec.caseSensitive);
    s.writeBool(section, QStringLiteral("Files"), spec.files);
    s.writeBool(section, QStringLiteral("Folders"), spec.folders);
    s.writeBool(section, QStringLiteral("Hidden"), spec.hidden);
    s.writeBool(section, QStringLiteral("System"), spec.system);
    s.writeInt(section, QStringLiteral("MinSize"), spec.minSize ? qint64(*spec.minSize) : -1);
    s.writeInt(section, QStringLiteral("MaxSize"), spec.maxSize ? qint64(*spec.maxSize) : -1);
    s.writeString(section, QStringLiteral("From"), dateText(spec.from));
    s.writeString(section, QStringLiteral("To"), dateText(spec.to));
    s.writeInt(section, QStringLiteral("ReadOnly"), int(spec.readOnly));
    s.writeInt(section, QStringLiteral("Archive"), int(spec.archive));
    s.writeInt(section, QStringLiteral("Action"), int(spec.action));
    return {};
}

void remove(SettingsStore& settings, const QString& name) { settings.eraseSection(sectionOf(name)); }

}  // namespace filtersets

}  // namespace qp
