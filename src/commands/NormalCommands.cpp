#include "commands/NormalCommands.h"

#include <QCoreApplication>
#include <QHash>
#include <QRandomGenerator>
#include <QVarLengthArray>
#include <algorithm>
#include <limits>
#include <bitset>
#include <memory>
#include <optional>
#include <random>
#include <unordered_map>
#include <vector>

#include "commands/CharacterSets.h"
#include "commands/NameText.h"
#include "core/CommandRegistry.h"
#include "core/FileEntry.h"
#include "core/NameFilter.h"
#include "core/PathText.h"
#include "core/RenameList.h"
#include "core/Session.h"
#include "expressions/MetaVariables.h"

namespace qp {

using namespace nametext;

namespace {

QString tr(const char* text) { return QCoreApplication::translate("NormalCommands", text); }

const QString kNoPresetChosen = QStringLiteral("请选择预设字符集");
// The longest fill or number width a page offers.
constexpr qint64 kLongestFill = 255;
constexpr qint64 kMaxInt32 = std::numeric_limits<qint32>::max();

// Reads the keys of one stored command by their names.
struct Keys {
    const CommandSection& s;
    bool flag(const char* key, bool byDefault) const { return s.readBool(QLatin1String(key), byDefault); }
    qint64 number(const char* key, qint64 byDefault) const { return s.readInt(QLatin1String(key), byDefault); }
    // A stored number held to the range its page allows, so that no command file can make
    // the arithmetic overflow or a fill allocate without end.
    qint64 number(const char* key, qint64 byDefault, qint64 lowest, qint64 highest) const
    {
        return std::clamp(number(key, byDefault), lowest, highest);
    }
    qint64 int32(const char* key, qint64 byDefault) const
    {
        return number(key, byDefault, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    }
    QString text(const char* key, const QString& byDefault = {}) const
    {
        return s.readString(QLatin1String(key), byDefault);
    }
};

// A command whose result depends on the working name alone (and what it was compiled with).
class NameRule : public CompiledCommand {
public:
    using Rule = std::function<QString(const QString& name)>;
    explicit NameRule(Rule rule) : m_rule(std::move(rule)) {}
    void apply(const CommandContext&, QString& name, QString&) override { name = m_rule(name); }

private:
    Rule m_rule;
};

std::unique_ptr<CompiledCommand> rule(NameRule::Rule function)
{
    return std::make_unique<NameRule>(std::move(function));
}

// ---------------------------------------------------------------------------------------
// N1: add text, or pad the name with repeated text.

Placement placementOfAddCommand(const Keys& k)
{
    Placement where;
    if (k.flag("N1_AddLeft", false)) {
        where.kind = Placement::Before;
    } else if (k.flag("N1_AddRight", false)) {
        where.kind = Placement::After;
    } else if (k.flag("N1_AddInsert", false)) {
        where.kind = Placement::AtPosition;
        where.position = k.number("N1_InsertPos", 0);
        where.fromRight = k.flag("N1_InsertPosFormRight", false);
    } else if (k.flag("N1_AddInsertByStr", false)) {
        where.kind = Placement::AtText;
        where.text = k.text("N1_AddInsertByStrText");
        where.occurrence = k.number("N1_AddInsertByStrWhich", 1);
        where.beforeIt = k.number("N1_AddInsertByStrPos", 0) == 1;
    } else if (k.flag("N1_AddInsertByLR", false)) {
        where.kind = Placement::AtDelimited;
        where.left = k.text("N1_AddInsertByLeft");
        where.right = k.text("N1_AddInsertByRight");
        where.includeDelimiters = k.flag("N1_AddInsertByLRPosIncludeLR", false);
        where.beforeIt = k.number("N1_AddInsertByLRPos", 0) == 1;
    }
    return where;
}

// The first `length` characters of `text` repeated; a pair that would be cut in half at
// the end is left out, so the padding may fall one code unit short.
QString repeatedTo(const QString& text, qint64 length)
{
    QString padding = text.repeated(qsizetype(length / text.size() + 1));
    padding.truncate(qsizetype(length));
    if (!padding.isEmpty() && padding.back().isHighSurrogate())
        padding.chop(1);
    return padding;
}

class AddText : public CompiledCommand {
public:
    AddText(const Keys& k, bool pad)
        : m_text(k.text("N1_AddStr")), m_where(placementOfAddCommand(k)), m_pad(pad),
          m_padLength(k.number("N1_FillLength", 0, 0, kLongestFill))
    {
    }

    void apply(const CommandContext& context, QString& name, QString&) override
    {
        if (m_where.kind == Placement::None)
            return;
        QString added = m_text.expand(context.session, context.rowIndex);
        if (added.isEmpty())
            return;
        if (m_pad) {
            const qint64 missing = m_padLength - name.size();
            if (missing <= 0)
                return;
            added = repeatedTo(added, missing);
        }
        name = place(name, added, m_where);
    }

private:
    MetaExpression m_text;
    Placement m_where;
    bool m_pad;
    qint64 m_padLength;
};

// ---------------------------------------------------------------------------------------
// N2: find and replace.

// Which occurrences a replacement takes: "1~-1" (all), "2", "-1" (the last), "1|3", "2~-2".
// Negative ordinals count from the right. Ordinals run from 1 to 255.
class OccurrenceSet {
public:
    static constexpr qsizetype kMaxOrdinal = 255;
    using Selection = std::bitset<kMaxOrdinal + 1>;

    explicit OccurrenceSet(const QString& text)
    {
        // A blank box means every occurrence; items that are not numbers are ignored.
        if (text.trimmed().isEmpty()) {
            m_items.push_back({1, -1});
            return;
        }
        for (const QString& item : text.split(QLatin1Char('|'))) {
            const QStringList ends = item.split(QLatin1Char('~'));
            bool firstOk = false;
            bool lastOk = ends.size() <= 2;
            const qint64 first = ends.front().trimmed().toLongLong(&firstOk);
            const qint64 last = ends.size() == 2 ? ends.back().trimmed().toLongLong(&lastOk) : first;
            if (firstOk && lastOk)
                m_items.push_back({first, last});
        }
    }

    // The ordinals chosen among `count` occurrences. A range whose start comes after its end
    // (once negative ordinals are resolved) chooses nothing.
    const Selection& resolve(qsizetype count)
    {
        m_selection.reset();
        for (const Item& item : m_items) {
            const qint64 first = std::max<qint64>(absolute(item.first, count), 1);
            const qint64 last = std::min<qint64>({absolute(item.last, count), count, kMaxOrdinal});
            for (qint64 n = first; n <= last; ++n)
                m_selection.set(size_t(n));
        }
        return m_selection;
    }

private:
    struct Item {
        qint64 first;
        qint64 last;
    };
    static qint64 absolute(qint64 ordinal, qsizetype count) { return ordinal < 0 ? count + ordinal + 1 : ordinal; }

    std::vector<Item> m_items;
    Selection m_selection;
};

class FindReplace : public CompiledCommand {
public:
    explicit FindReplace(const Keys& k)
        : m_occurrences(k.text("N2_ReplaceTextSet", QStringLiteral("1~-1"))),
          m_case(k.flag("N2_CaseFlag", false) ? Qt::CaseSensitive : Qt::CaseInsensitive),
          m_simultaneous(k.flag("N2_SameTimeFlag", true))
    {
        const QString find = k.text("N2_SearchText");
        const QString replace = k.text("N2_ReplaceText");
        if (!find.contains(QLatin1Char('|'))) {
            m_finds.append(find);
            m_replacements.emplace_back(replace);
            makeMatchers();
            return;
        }
        // The i-th find item pairs with the i-th replacement item; a find item without a
        // partner is replaced by nothing, and spare replacement items are not used.
        m_finds = find.split(QLatin1Char('|'));
        const QStringList replacements = replace.split(QLatin1Char('|'));
        for (qsizetype i = 0; i < m_finds.size(); ++i)
            m_replacements.emplace_back(i < replacements.size() ? replacements[i] : QString());
        makeMatchers();
    }

    // Searching with a matcher made once per run spares the per-row setup of a search
    // without regard to case.
    void makeMatchers()
    {
        for (const QString& find : std::as_const(m_finds))
            m_matchers.emplace_back(find, m_case);
    }

    void apply(const CommandContext& context, QString& name, QString&) override
    {
        if (name.isEmpty())
            return;
        if (m_finds.size() > 1 && m_simultaneous) {
            name = replaceAllAtOnce(context, name);
            return;
        }
        for (qsizetype i = 0; i < m_finds.size(); ++i)
            name = replaceOne(context, name, i);
    }

private:
    // A stretch of the name: the original text [from, to), or (item ≥ 0) the place of one
    // replaced occurrence of find item `item`.
    struct Piece {
        qsizetype from;
        qsizetype to;
        qsizetype item;
    };

    QString replaceOne(const CommandContext& context, const QString& name, qsizetype item)
    {
        m_hits.clear();
        const QString& find = m_finds[item];
        const QStringMatcher& matcher = m_matchers[size_t(item)];
        for (qsizetype at = find.isEmpty() ? -1 : nametext::find(name, matcher, find.size(), 0); at >= 0;
             at = nametext::find(name, matcher, find.size(), at + find.size()))
            m_hits.push_back({at, at + find.size(), item});
        if (m_hits.empty())
            return name;
        const OccurrenceSet::Selection& chosen = m_occurrences.resolve(qsizetype(m_hits.size()));
        const QString replacement = m_replacements[size_t(item)].expand(context.session, context.rowIndex);
        QString result;
        result.reserve(name.size() + replacement.size() * qsizetype(m_hits.size()));
        qsizetype copied = 0;
        for (size_t n = 0; n < m_hits.size() && n < OccurrenceSet::kMaxOrdinal; ++n) {
            if (!chosen.test(n + 1))
                continue;
            result += QStringView(name).sliced(copied, m_hits[n].from - copied);
            result += replacement;
            copied = m_hits[n].to;
        }
        result += QStringView(name).sliced(copied);
        return result;
    }

    // Every find item is looked for in the name as it was: an item's occurrences are cut
    // out of the original stretches only, so no item ever sees another item's
    // replacement, nor matches across its edges.
    QString replaceAllAtOnce(const CommandContext& context, const QString& name)
    {
        std::vector<Piece>& pieces = m_pieces;
        pieces.assign(1, {0, name.size(), -1});
        for (qsizetype item = 0; item < m_finds.size(); ++item)
            cutOut(name, item, pieces);
        if (pieces.size() == 1 && pieces.front().item < 0)
            return name;
        QString result;
        result.reserve(name.size() + 16);
        std::vector<std::optional<QString>>& values = m_values;
        values.assign(size_t(m_finds.size()), std::nullopt);
        for (const Piece& piece : pieces) {
            if (piece.item < 0) {
                result += QStringView(name).sliced(piece.from, piece.to - piece.from);
                continue;
            }
            std::optional<QString>& value = values[size_t(piece.item)];
            if (!value)
                value = m_replacements[size_t(piece.item)].expand(context.session, context.rowIndex);
            result += *value;
        }
        return result;
    }

    void cutOut(const QString& name, qsizetype item, std::vector<Piece>& pieces)
    {
        const QString& find = m_finds[item];
        if (find.isEmpty())
            return;
        m_hits.clear();
        for (const Piece& piece : pieces) {
            if (piece.item >= 0)
                continue;
            const QStringView stretch = QStringView(name).sliced(piece.from, piece.to - piece.from);
            for (qsizetype at = nametext::find(stretch, m_matchers[size_t(item)], find.size(), 0); at >= 0;
                 at = nametext::find(stretch, m_matchers[size_t(item)], find.size(), at + find.size()))
                m_hits.push_back({piece.from + at, piece.from + at + find.size(), item});
        }
        if (m_hits.empty())
            return;
        const OccurrenceSet::Selection& chosen = m_occurrences.resolve(qsizetype(m_hits.size()));
        std::vector<Piece>& next = m_next;
        next.clear();
        size_t n = 0;
        for (const Piece& piece : pieces) {
            if (piece.item >= 0) {
                next.push_back(piece);
                continue;
            }
            qsizetype from = piece.from;
            for (; n < m_hits.size() && m_hits[n].to <= piece.to; ++n) {
                if (n >= OccurrenceSet::kMaxOrdinal || !chosen.test(n + 1))
                    continue;
                if (m_hits[n].from > from)
                    next.push_back({from, m_hits[n].from, -1});
                next.push_back(m_hits[n]);
                from = m_hits[n].to;
            }
            if (piece.to > from)
                next.push_back({from, piece.to, -1});
        }
        pieces.swap(next);
    }

    QStringList m_finds;
    std::vector<QStringMatcher> m_matchers;
    std::vector<MetaExpression> m_replacements;
    OccurrenceSet m_occurrences;
    Qt::CaseSensitivity m_case;
    bool m_simultaneous;
    // Scratch space kept between rows.
    std::vector<Piece> m_hits;
    std::vector<Piece> m_pieces;
    std::vector<Piece> m_next;
    std::vector<std::optional<QString>> m_values;
};

// N202 and N305 look the delimited text up again in the whole name, without regard to
// case, so an earlier text equal to it but for case is the one they take.
qsizetype findAgainIgnoringCase(const QString& name, const QString& piece)
{
    return nametext::find(name, piece, 0, Qt::CaseInsensitive);
}

class ReplaceBetween : public CompiledCommand {
public:
    explicit ReplaceBetween(const Keys& k)
        : m_left(k.text("N2_SearchLeft")), m_right(k.text("N2_SearchRight")),
          m_withDelimiters(k.flag("N2_SearchIncludeLRFlag", false)), m_replacement(k.text("N2_ReplaceTextLR"))
    {
    }

    void apply(const CommandContext& context, QString& name, QString&) override
    {
        const QString piece = between(name, m_left, m_right, m_withDelimiters);
        const qsizetype at = piece.isEmpty() ? -1 : findAgainIgnoringCase(name, piece);
        if (at >= 0)
            name.replace(at, piece.size(), m_replacement.expand(context.session, context.rowIndex));
    }

private:
    QString m_left;
    QString m_right;
    bool m_withDelimiters;
    MetaExpression m_replacement;
};

// ---------------------------------------------------------------------------------------
// N3: delete and keep.

// Blanks at both ends: every character Unicode counts as white space (the ideographic
// space among them) and every control character.
QString trimBlanks(const QString& name)
{
    const auto blank = [](QChar c) { return c.isSpace() || c.category() == QChar::Other_Control; };
    qsizetype first = 0;
    qsizetype end = name.size();
    while (first < end && blank(name[first]))
        ++first;
    while (end > first && blank(name[end - 1]))
        --end;
    return name.sliced(first, end - first);
}

std::unique_ptr<CompiledCommand> deleteOrKeepRun(const Keys& k)
{
    const qint64 from = k.number("N3_DelFrom", 1);
    const qint64 count = k.number("N3_DelTo", 1);
    const bool fromRight = k.flag("N3_DelFromToFromRight", false);
    const bool keep = k.number("N3_DelOrKeep", 0) == 1;
    return rule([=](const QString& name) -> QString {
        const Run run = runAt(name, from, count, fromRight);
        return keep ? name.sliced(run.start, run.count) : QString(name).remove(run.start, run.count);
    });
}

std::unique_ptr<CompiledCommand> cutAtText(const Keys& k)
{
    const QString word = k.text("N3_CutWord");
    const qint64 which = k.number("N3_DelCutWhichWord", 1);
    const bool cutBefore = k.number("N3_DelCutDirection", 0) == 1;
    const bool cutWord = k.flag("N3_DelCutIncludeSelf", true);
    return rule([=](const QString& name) -> QString {
        // Fewer occurrences than asked for: the cut is made at the last one.
        const qsizetype at = nthOrLastOccurrence(name, word, qsizetype(std::clamp<qint64>(which, 1, 1 << 16)));
        if (at < 0)
            return name;
        if (cutBefore)
            return name.sliced(cutWord ? at + word.size() : at);
        return name.first(cutWord ? at : at + word.size());
    });
}

std::unique_ptr<CompiledCommand> deleteOrKeepBetween(const Keys& k)
{
    const QString left = k.text("N3_CutWordLeft");
    const QString right = k.text("N3_CutWordRight");
    const bool withDelimiters = k.flag("N3_DelCutIncludeSelfLR", false);
    const bool keep = k.number("N3_DelOrKeepLR", 0) == 1;
    return rule([=](const QString& name) -> QString {
        const QString piece = between(name, left, right, withDelimiters);
        if (keep)
            return piece;
        const qsizetype at = piece.isEmpty() ? -1 : findAgainIgnoringCase(name, piece);
        return at < 0 ? name : QString(name).remove(at, piece.size());
    });
}

// N306: delete removes every listed text (found without regard to case), each text in turn
// by non-overlapping occurrences from the left, then every character of a chosen set. Keep
// marks every character inside an occurrence of a listed text or belonging to a chosen set
// and keeps only those. With nothing to look for the name stays.
class DeleteOrKeepParts : public CompiledCommand {
public:
    explicit DeleteOrKeepParts(const Keys& k) : m_keep(k.number("N3_DelPartDeleteOrHold", 0) == 1)
    {
        if (k.flag("N3_DelPartTheString", false)) {
            for (const QString& text : k.text("N3_TheString").split(QLatin1Char('|'), Qt::SkipEmptyParts))
                m_texts.append(text);
        }
        if (k.flag("N3_DelPartUserCharset", false))
            m_set.addCharacters(k.text("N3_TheUserCharset"));
        for (const QString& preset : splitPresetCharsets(k.text("N3_FixedCharsetString", kNoPresetChosen)))
            m_set.addPreset(preset);
    }

    void apply(const CommandContext&, QString& name, QString&) override
    {
        if (m_texts.isEmpty() && m_set.isEmpty())
            return;
        if (!m_keep) {
            for (const QString& text : std::as_const(m_texts))
                name = withoutOccurrences(name, text);
            m_marked.assign(size_t(name.size()), false);
            markCharacters(name);
            dropMarked(name, true);
            return;
        }
        m_marked.assign(size_t(name.size()), false);
        markTexts(name);
        markCharacters(name);
        dropMarked(name, false);
    }

private:
    static QString withoutOccurrences(const QString& name, const QString& text)
    {
        QString out;
        qsizetype from = 0;
        for (qsizetype at = find(name, text, 0, Qt::CaseInsensitive); at >= 0;
             at = find(name, text, from, Qt::CaseInsensitive)) {
            out += QStringView(name).sliced(from, at - from);
            from = at + text.size();
        }
        return from == 0 ? name : out + name.mid(from);
    }

    void dropMarked(QString& name, bool marked) const
    {
        QString result;
        result.reserve(name.size());
        for (qsizetype i = 0; i < name.size(); ++i) {
            if (m_marked[size_t(i)] != marked)
                result += name[i];
        }
        name = std::move(result);
    }

    void markTexts(const QString& name)
    {
        for (const QString& text : std::as_const(m_texts)) {
            for (qsizetype at = find(name, text, 0, Qt::CaseInsensitive); at >= 0;
                 at = find(name, text, at + 1, Qt::CaseInsensitive))
                std::fill_n(m_marked.begin() + at, text.size(), true);
        }
    }

    void markCharacters(const QString& name)
    {
        if (m_set.isEmpty())
            return;
        for (qsizetype i = 0; i < name.size(); ++i) {
            const bool pair = name[i].isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate();
            const char32_t c = pair ? QChar::surrogateToUcs4(name[i], name[i + 1]) : name[i].unicode();
            if (m_set.contains(c)) {
                m_marked[size_t(i)] = true;
                if (pair)
                    m_marked[size_t(i + 1)] = true;
            }
            i += pair ? 1 : 0;
        }
    }

    bool m_keep;
    QStringList m_texts;
    CharacterSet m_set;
    std::vector<bool> m_marked;
};

// ---------------------------------------------------------------------------------------
// N4: automatic numbering.

struct NumberStyle {
    qint64 start = 1;
    qint64 step = 1;
    qint64 width = 1;
    qint64 group = 1;
    int form = 0;  // 0 digits, 1 small letters, 2 capital letters
    std::optional<qint64> restartPeriod;
    QString fill;  // empty: no filling

    explicit NumberStyle(const Keys& k)
        : start(k.int32("N4_Start", 1)), step(k.int32("N4_Increment", 1)),
          width(k.number("N4_DigitUnits", 1, 0, kLongestFill)), group(k.number("N4_GroupCount", 1, 1, kMaxInt32)),
          form(int(k.number("N4_AutoNumType", 0, 0, 2)))
    {
        if (form < 0 || form > 2)
            form = 0;
        // With no step every number is the start value, so there is nothing to restart. A
        // limit that the first number already passes restarts at every row.
        if (k.flag("N4_Reset", false) && step != 0)
            restartPeriod = std::max<qint64>((k.int32("N4_ResetValue", 0) - start) / step + 1, 1);
        if (k.flag("N4_AutoSupplement", true))
            fill = form == 1 ? QStringLiteral("a") : form == 2 ? QStringLiteral("A") : QStringLiteral("0");
        else if (k.flag("N4_ManualSupplement", false))
            fill = k.text("N4_SupplementText", QStringLiteral("0"));
    }

    // The number for the ordinal-th counted row (0 for the first).
    QString textFor(qint64 ordinal) const
    {
        qint64 k = ordinal / group;
        if (restartPeriod)
            k %= *restartPeriod;
        const qint64 value = start + k * step;
        const qint64 magnitude = value < 0 ? -value : value;
        QString digits = form == 0 ? QString::number(magnitude) : lettersOf(magnitude, form == 1 ? u'a' : u'A');
        // The fill goes whole in front of the digits, once per missing digit; a sign stays in
        // front of everything.
        const qint64 missing = width - digits.size();
        if (missing > 0 && !fill.isEmpty())
            digits.prepend(fill.repeated(qsizetype(std::min<qint64>(missing, 255))));
        return value < 0 ? QLatin1Char('-') + digits : digits;
    }
};

// The name built from the expression with "<#>" standing for the number. The number goes
// in before the meta-variables are expanded, as if it had been typed there.
class NumberExpression {
public:
    explicit NumberExpression(const QString& text) : m_text(text)
    {
        // Where nothing next to a "<#>" could join the number to a tag, the expression is
        // compiled once with a marker in place of the number and the number put in after
        // expanding; elsewhere each distinct text is compiled on its own.
        bool separate = true;
        for (qsizetype at = text.indexOf(kPlaceholder); at >= 0; at = text.indexOf(kPlaceholder, at + 3)) {
            const QChar before = at > 0 ? text[at - 1] : QChar();
            const QChar after = at + 3 < text.size() ? text[at + 3] : QChar();
            if (isTagCharacter(before) || isTagCharacter(after) || (before == u'<' && after == u'>'))
                separate = false;
            ++m_placeholders;
        }
        if (separate) {
            m_marked.emplace(QString(text).replace(kPlaceholder, QString(kMarker)));
        }
    }

    QString expand(const CommandContext& context, const QString& number)
    {
        if (m_marked && !number.contains(u'<') && !number.contains(u'>')) {
            QString result = m_marked->expand(context.session, context.rowIndex);
            // A value that itself holds the marker character would be mistaken for it.
            if (result.count(kMarker) == m_placeholders)
                return result.replace(kMarker, number);
        }
        if (m_compiled.size() > kCacheLimit)
            m_compiled.clear();
        const QString text = QString(m_text).replace(kPlaceholder, number);
        auto it = m_compiled.find(text);
        if (it == m_compiled.end())
            it = m_compiled.emplace(text, MetaExpression(text)).first;
        return it->second.expand(context.session, context.rowIndex);
    }

private:
    static bool isTagCharacter(QChar c) { return isAsciiLetter(c.unicode()) || isAsciiDigit(c.unicode()) || c == u'.'; }

    static constexpr QLatin1String kPlaceholder{"<#>"};
    static constexpr QChar kMarker{u'\uFDD0'};  // a noncharacter: no name is meant to hold one
    static constexpr qsizetype kCacheLimit = 4096;
    QString m_text;
    qsizetype m_placeholders = 0;
    std::optional<MetaExpression> m_marked;
    std::unordered_map<QString, MetaExpression> m_compiled;
};

// Counts the rows as the pipeline walks them in grid order. The counts live as long as the
// compiled command, that is one run of the command list over the rows.
class Numbering : public CompiledCommand {
public:
    Numbering(const Keys& k, const QString& code)
        : m_style(k), m_skipUnticked(k.flag("N4_SkipNoCheckRow", true)), m_byFolder(k.flag("N4_ByPath", false))
    {
        if (code == u"N401") {
            m_where.kind = Placement::AtPosition;
            m_where.position = k.number("N4_InsertPos", 1);
            m_where.fromRight = k.flag("N4_InsertPosFromRight", false);
        } else if (code == u"N402") {
            m_where.kind = Placement::AtText;
            m_where.text = k.text("N4_InsertPosByStr");
            m_where.beforeIt = k.number("N4_InsertPosByStrLorR", 0) == 1;
            m_where.occurrence = k.number("N4_InsertPosByStrWhich", 1);
        } else {
            m_expression.emplace(k.text("N4_InsertExpression"));
        }
        readExclusions(k);
    }

    void apply(const CommandContext& context, QString& name, QString&) override
    {
        const std::optional<qint64> ordinal = takeOrdinal(context.row, true);
        const QString number = ordinal ? m_style.textFor(*ordinal) : QString();
        record(context, number);
        if (!ordinal)
            return;
        name = m_expression ? m_expression->expand(context, number) : place(name, number, m_where);
    }

    void skip(const CommandContext& context) override
    {
        takeOrdinal(context.row, false);
        record(context, QString());
    }

private:
    // Excluded rows take no number and are not counted; an unticked row is counted only when
    // unticked rows count.
    std::optional<qint64> takeOrdinal(const FileEntry& row, bool ticked)
    {
        if (!ticked && m_skipUnticked)
            return std::nullopt;
        if (m_excludeAll || (m_exclusions && m_exclusions->passes(row.path, row.fileName(), row.isFolder)))
            return std::nullopt;
        qint64& counter = m_byFolder ? m_perFolder[pathKey(row.path)] : m_counted;
        return counter++;
    }

    // Exclusions are masks as in the filter boxes ("*.txt|cover.*|<DIR>"), matched against
    // the row's current name with its extension; "*" alone excludes every row.
    void readExclusions(const Keys& k)
    {
        if (!k.flag("N4_Except", false))
            return;
        const QString text = k.text("N4_ExceptText");
        if (text.trimmed().isEmpty())
            return;
        m_excludeAll = k.flag("N4_ExceptTextHaveSingleStar", false);
        QStringList masks;
        for (const QString& mask : text.split(QLatin1Char('|'))) {
            if (mask.trimmed() == u"*")
                m_excludeAll = true;
            if (!mask.trimmed().isEmpty())
                masks.append(mask.trimmed());
        }
        if (masks.isEmpty())
            return;
        m_exclusions.emplace(masks.join(QLatin1Char('|')), QString());
    }

    void record(const CommandContext& context, const QString& number)
    {
        std::optional<QStringList>& numbers = context.session.numbersForAssignment;
        if (!m_recording) {
            m_recording = true;
            numbers.emplace(context.session.renameList().size(), QString());
        }
        if (context.rowIndex < numbers->size())
            (*numbers)[context.rowIndex] = number;
    }

    NumberStyle m_style;
    bool m_skipUnticked;
    bool m_byFolder;
    Placement m_where;
    std::optional<NumberExpression> m_expression;
    std::optional<NameFilter> m_exclusions;
    bool m_excludeAll = false;
    qint64 m_counted = 0;
    QHash<QString, qint64> m_perFolder;
    bool m_recording = false;
};

// ---------------------------------------------------------------------------------------
// N5: move a piece of the name.

std::unique_ptr<CompiledCommand> movePieceCommand(const Keys& k, const QString& code)
{
    const qint64 distance = k.number("N5_MoveMum", 1);
    const bool right = k.number("N5_MoveDirection", 1) == 1;
    if (code == u"N501") {
        const qint64 position = k.number("N5_Position", 1);
        const qint64 length = k.number("N5_Length", 1);
        const bool fromRight = k.flag("N5_FromRight", false);
        return rule([=](const QString& name) {
            const Run run = runAt(name, position, length, fromRight);
            // The piece is looked up again, so an equal text further left is the one that moves.
            return movePiece(name, name.sliced(run.start, run.count), distance, right);
        });
    }
    if (code == u"N502") {
        const QString left = k.text("N5_MoveByStrLeft");
        const QString rightDelimiter = k.text("N5_MoveByStrRight");
        const bool withDelimiters = k.flag("N5_MoveByStrIncludeLR", false);
        return rule([=](const QString& name) {
            return movePiece(name, between(name, left, rightDelimiter, withDelimiters), distance, right);
        });
    }
    const QString piece = k.text("N5_MoveStrText");
    return rule([=](const QString& name) { return movePiece(name, piece, distance, right); });
}

// ---------------------------------------------------------------------------------------
// N6: letter case, ASCII letters only.

QString alternating(QString name, bool upperFirst)
{
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool upper = (i % 2 == 0) == upperFirst;
        name[i] = QChar(upper ? asciiUpper(name[i].unicode()) : asciiLower(name[i].unicode()));
    }
    return name;
}

QString swappedCase(QString name)
{
    for (QChar& c : name) {
        const char16_t u = c.unicode();
        c = QChar(u >= u'a' && u <= u'z' ? asciiUpper(u) : asciiLower(u));
    }
    return name;
}

enum class WordBreak { Separator, NonLetter, NonLetterOrDigit };

// In every piece of the name between separators the first character goes upper case and,
// with `lowerRest`, the others lower; the separators stay as written.
QString capitalisedPieces(QString name, bool lowerRest, const QString& separator)
{
    QVarLengthArray<qsizetype, 16> cuts;  // where each separator starts, found before any change
    if (!separator.isEmpty()) {
        for (qsizetype at = name.indexOf(separator); at >= 0; at = name.indexOf(separator, at + separator.size()))
            cuts.append(at);
    }
    cuts.append(name.size());
    QChar* text = name.data();  // detaches once, not once per character
    qsizetype start = 0;
    for (const qsizetype end : cuts) {
        for (qsizetype i = start; i < end; ++i) {
            const char16_t c = text[i].unicode();
            text[i] = QChar(i == start ? asciiUpper(c) : lowerRest ? asciiLower(c) : c);
        }
        start = end + separator.size();
    }
    return name;
}

// Words start at the beginning and after every separator text, or after every character
// that is not an ASCII letter (or digit); characters beyond ASCII always separate.
QString capitalisedWords(QString name, bool lowerRest, WordBreak breaks, const QString& separator)
{
    if (breaks == WordBreak::Separator)
        return capitalisedPieces(std::move(name), lowerRest, separator);
    if (lowerRest)
        name = asciiCase(std::move(name), false);
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t previous = i > 0 ? name[i - 1].unicode() : u' ';
        const bool startsWord = !isAsciiLetter(previous) && (breaks == WordBreak::NonLetter || !isAsciiDigit(previous));
        if (startsWord)
            name[i] = QChar(asciiUpper(name[i].unicode()));
    }
    return name;
}

class LetterCase : public CompiledCommand {
public:
    LetterCase(const Keys& k, const QString& code)
        : m_variant(code.back().unicode() - u'0'), m_exception(k.text("N6_ExceptWord")),
          m_separator(k.text("N6_Separator", QStringLiteral(" "))), m_random(QRandomGenerator::system()->generate())
    {
        if (!k.flag("N6_UseSeparator", true)) {
            if (k.flag("N6_NotLetter", false))
                m_breaks = WordBreak::NonLetter;
            else if (k.flag("N6_NotNumOrLetter", false))
                m_breaks = WordBreak::NonLetterOrDigit;
        }
    }

    void apply(const CommandContext&, QString& name, QString&) override
    {
        name = changed(std::move(name));
        restoreException(name);
    }

private:
    QString changed(QString name)
    {
        switch (m_variant) {
        case 1:
            return asciiCase(std::move(name), true);
        case 2:
            return asciiCase(std::move(name), false);
        case 3:
        case 4:
            return alternating(std::move(name), m_variant == 3);
        case 5:
            return swappedCase(std::move(name));
        case 6:
            for (QChar& c : name)
                c = QChar((m_random() & 1) == 0 ? asciiUpper(c.unicode()) : asciiLower(c.unicode()));
            return name;
        default:
            return capitalisedWords(std::move(name), m_variant == 7, m_breaks, m_separator);
        }
    }

    // The exception keeps its own letters wherever it occurs, whatever the case.
    void restoreException(QString& name) const
    {
        for (qsizetype at = find(name, m_exception, 0, Qt::CaseInsensitive); at >= 0;
             at = find(name, m_exception, at + m_exception.size(), Qt::CaseInsensitive))
            name.replace(at, m_exception.size(), m_exception);
    }

    int m_variant;  // the last digit of N601 … N608
    QString m_exception;
    QString m_separator;
    WordBreak m_breaks = WordBreak::Separator;
    std::minstd_rand m_random;
};

std::unique_ptr<CompiledCommand> compileNormalCommand(const CommandSection& section)
{
    const Keys k{section};
    const QString& code = section.code;
    if (code == u"N101" || code == u"N102")
        return std::make_unique<AddText>(k, code == u"N102");
    if (code == u"N201")
        return std::make_unique<FindReplace>(k);
    if (code == u"N202")
        return std::make_unique<ReplaceBetween>(k);
    if (code == u"N301")
        return rule([](const QString&) { return QString(); });
    if (code == u"N302")
        return rule(trimBlanks);
    if (code == u"N303")
        return deleteOrKeepRun(k);
    if (code == u"N304")
        return cutAtText(k);
    if (code == u"N305")
        return deleteOrKeepBetween(k);
    if (code == u"N306")
        return std::make_unique<DeleteOrKeepParts>(k);
    if (code == u"N401" || code == u"N402" || code == u"N403")
        return std::make_unique<Numbering>(k, code);
    if (code == u"N501" || code == u"N502" || code == u"N503")
        return movePieceCommand(k, code);
    if (code.startsWith(u"N60") && code.size() == 4 && code.back() >= u'1' && code.back() <= u'8')
        return std::make_unique<LetterCase>(k, code);
    return nullptr;
}

}  // namespace

QStringList normalCommandCodes()
{
    return {"N101", "N102", "N201", "N202", "N301", "N302", "N303", "N304", "N305", "N306", "N401", "N402",
            "N403", "N501", "N502", "N503", "N601", "N602", "N603", "N604", "N605", "N606", "N607", "N608"};
}

QString normalCommandComment(const QString& code)
{
    static const QHash<QString, const char*> comments = {
        {"N101", QT_TRANSLATE_NOOP("NormalCommands", "直接添加字符串")},
        {"N102", QT_TRANSLATE_NOOP("NormalCommands", "补齐添加字符串")},
        {"N201", QT_TRANSLATE_NOOP("NormalCommands", "查找替换字符串")},
        {"N202", QT_TRANSLATE_NOOP("NormalCommands", "以左右间隔为界查找替换字符串")},
        {"N301", QT_TRANSLATE_NOOP("NormalCommands", "清空文件名")},
        {"N302", QT_TRANSLATE_NOOP("NormalCommands", "去除两端空格")},
        {"N303", QT_TRANSLATE_NOOP("NormalCommands", "删除/保留指定位置和数量")},
        {"N304", QT_TRANSLATE_NOOP("NormalCommands", "以指定字符串为界剪裁")},
        {"N305", QT_TRANSLATE_NOOP("NormalCommands", "删除/保留以左右间隔为界的字符串")},
        {"N306", QT_TRANSLATE_NOOP("NormalCommands", "删除/保留部分字符串")},
        {"N401", QT_TRANSLATE_NOOP("NormalCommands", "插入自动编号到指定位置")},
        {"N402", QT_TRANSLATE_NOOP("NormalCommands", "插入自动编号到指定字符串位置")},
        {"N403", QT_TRANSLATE_NOOP("NormalCommands", "使用表达式插入自动编号")},
        {"N501", QT_TRANSLATE_NOOP("NormalCommands", "移动指定位置和字符数的子字符串")},
        {"N502", QT_TRANSLATE_NOOP("NormalCommands", "移动以左右间隔为界的子字符串")},
        {"N503", QT_TRANSLATE_NOOP("NormalCommands", "移动指定子字符串")},
        {"N601", QT_TRANSLATE_NOOP("NormalCommands", "全部大写")},
        {"N602", QT_TRANSLATE_NOOP("NormalCommands", "全部小写")},
        {"N603", QT_TRANSLATE_NOOP("NormalCommands", "一大一小")},
        {"N604", QT_TRANSLATE_NOOP("NormalCommands", "一小一大")},
        {"N605", QT_TRANSLATE_NOOP("NormalCommands", "大小写反转")},
        {"N606", QT_TRANSLATE_NOOP("NormalCommands", "随机大小写")},
        {"N607", QT_TRANSLATE_NOOP("NormalCommands", "单词首字母大写后面小写")},
        {"N608", QT_TRANSLATE_NOOP("NormalCommands", "单词首字母大写后面不变")},
    };
    const char* text = comments.value(code, nullptr);
    return text ? tr(text) : QString();
}

void registerNormalCommands(CommandRegistry& registry)
{
    registry.registerFamily(normalCommandCodes(), compileNormalCommand);
}

QStringList presetCharsetNames() { return characterSetPresetNames(); }

QString joinPresetCharsets(const QStringList& names)
{
    if (names.isEmpty())
        return kNoPresetChosen;
    QString stored;
    for (const QString& name : names)
        stored += name + QLatin1Char(';');
    return stored;
}

QStringList splitPresetCharsets(const QString& stored)
{
    if (!stored.contains(QLatin1Char(';')))
        return {};
    QStringList names;
    for (const QString& name : stored.split(QLatin1Char(';'))) {
        if (!name.trimmed().isEmpty())
            names.append(name.trimmed());
    }
    return names;
}

qsizetype longestNameLength(const RenameList& list)
{
    qsizetype longest = 0;
    for (const FileEntry& row : list.rows())
        longest = std::max(longest, row.name.size());
    return longest;
}

bool assignNumbersToUserList(Session& session, int n)
{
    if (!session.numbersForAssignment || n < 0 || n >= Session::kUserListCount)
        return false;
    session.userList(n) = *session.numbersForAssignment;
    return true;
}

}  // namespace qp
