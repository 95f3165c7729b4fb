// The filter tool ("筛选"): keeps or removes rows of the rename list by a pattern on the
// name, object kinds, a size and a date range and attributes. A filter is compiled once
// (masks folded, the regular expression compiled, dates turned into time bounds) and then
// tested against every row.
//
// A row matches when every criterion holds:
//  - the pattern: wildcard masks separated by "|" ("*" any run, "?" one character) that
//    must match the whole subject, or a regular expression found anywhere in it; an empty
//    pattern matches every row. The subject is the name, the name with its extension, or
//    the full path as shown (with the platform's separators).
//  - the kind: files and/or folders; hidden (H) and system (S) objects only when allowed.
//  - the size range (bytes, both ends included) applies to files; folders have no size.
//  - the date range (local days, both ends included) applies to the modified time.
//  - read-only (R) and archive (A): any, must be set, or must not be set.
// "保留" keeps the matching rows and removes the rest; "移除" removes the matching rows.
#pragma once

#include <QDate>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <optional>
#include <variant>
#include <vector>

#include "core/FileEntry.h"

namespace qp {

class Session;
class SettingsStore;

struct RowFilterSpec {
    enum class Syntax { Wildcard, Regex };
    enum class Subject { Name, NameWithExtension, FullPath };
    enum class Action { Keep, Remove };
    enum class Flag { Any, Set, NotSet };

    QString pattern;
    Syntax syntax = Syntax::Wildcard;
    Subject subject = Subject::NameWithExtension;
    bool caseSensitive = false;
    bool files = true;
    bool folders = true;
    bool hidden = true;
    bool system = true;
    std::optional<std::uint64_t> minSize;
    std::optional<std::uint64_t> maxSize;
    std::optional<QDate> from;
    std::optional<QDate> to;
    Flag readOnly = Flag::Any;
    Flag archive = Flag::Any;
    Action action = Action::Keep;

    bool operator==(const RowFilterSpec&) const = default;
};

class RowFilter {
public:
    // The compiled filter, or the reason the spec cannot be used (an invalid regular
    // expression, a range whose ends are swapped), in the system's words.
    static std::variant<RowFilter, QString> compile(const RowFilterSpec& spec);

    bool matches(const FileEntry& row) const;
    // Whether the row leaves the list under the spec's action.
    bool drops(const FileEntry& row) const { return matches(row) != m_keep; }

private:
    RowFilter() = default;
    bool patternMatches(const FileEntry& row) const;

    std::vector<QString> m_masks;  // wildcard masks, case-folded unless case matters
    QRegularExpression m_regex;
    bool m_useRegex = false;
    bool m_caseSensitive = false;
    RowFilterSpec::Subject m_subject = RowFilterSpec::Subject::NameWithExtension;
    bool m_files = true;
    bool m_folders = true;
    std::uint32_t m_forbidden = 0;  // attribute bits a row must not have
    std::uint32_t m_required = 0;   // attribute bits a row must have
    std::uint64_t m_minSize = 0;
    std::uint64_t m_maxSize = UINT64_MAX;
    std::int64_t m_from = INT64_MIN;  // nanoseconds since 1970 UTC
    std::int64_t m_to = INT64_MAX;
    bool m_keep = true;
};

struct RowFilterResult {
    bool ok = false;
    QString error;          // why nothing was filtered
    qsizetype removed = 0;
    qsizetype kept = 0;
};

// Filters the session's list: rows the filter drops leave it (nothing on disk changes), a
// line in the message pane gives the counts, and the commands run again over what is left,
// since fewer rows number differently.
RowFilterResult filterRows(Session& session, const RowFilterSpec& spec);

// Named filter sets, each kept in a section "FilterSet_" + name of the settings.
namespace filtersets {
QStringList names(const SettingsStore& settings);
std::optional<RowFilterSpec> read(const SettingsStore& settings, const QString& name);
// Empty when the set was written, else why the name cannot be used.
QString write(SettingsStore& settings, const QString& name, const RowFilterSpec& spec);
void remove(SettingsStore& settings, const QString& name);
}  // namespace filtersets

}  // namespace qp
