#include "commands/NameText.h"

#include <algorithm>
#include <initializer_list>

namespace qp::nametext {

namespace {

QString joined(std::initializer_list<QStringView> parts)
{
    QString text;
    qsizetype size = 0;
    for (QStringView part : parts)
        size += part.size();
    text.reserve(size);
    for (QStringView part : parts)
        text.append(part);
    return text;
}

}  // namespace

bool splitsPair(QStringView text, qsizetype at)
{
    return at > 0 && at < text.size() && text[at - 1].isHighSurrogate() && text[at].isLowSurrogate();
}

qsizetype insertionPoint(QStringView text, qsizetype at)
{
    at = std::clamp<qsizetype>(at, 0, text.size());
    return splitsPair(text, at) ? at + 1 : at;
}

Run wholeCharacters(QStringView text, qsizetype start, qsizetype count)
{
    start = std::clamp<qsizetype>(start, 0, text.size());
    qsizetype end = std::clamp<qsizetype>(start + std::max<qsizetype>(count, 0), start, text.size());
    if (end > start) {
        if (splitsPair(text, start))
            --start;
        if (splitsPair(text, end))
            ++end;
    }
    return {start, end - start};
}

qsizetype find(QStringView text, QStringView needle, qsizetype from, Qt::CaseSensitivity cs)
{
    if (needle.isEmpty())
        return -1;
    for (qsizetype at = text.indexOf(needle, std::max<qsizetype>(from, 0), cs); at >= 0;
         at = text.indexOf(needle, at + 1, cs)) {
        if (!splitsPair(text, at) && !splitsPair(text, at + needle.size()))
            return at;
    }
    return -1;
}

qsizetype find(QStringView text, const QStringMatcher& matcher, qsizetype length, qsizetype from)
{
    for (qsizetype at = matcher.indexIn(text, std::max<qsizetype>(from, 0)); at >= 0; at = matcher.indexIn(text, at + 1)) {
        if (!splitsPair(text, at) && !splitsPair(text, at + length))
            return at;
    }
    return -1;
}

qsizetype countOccurrences(QStringView text, QStringView needle)
{
    qsizetype count = 0;
    for (qsizetype at = find(text, needle, 0); at >= 0; at = find(text, needle, at + needle.size()))
        ++count;
    return count;
}

qsizetype nthOccurrence(QStringView text, QStringView needle, qsizetype n)
{
    qsizetype at = n >= 1 ? find(text, needle, 0) : -1;
    for (qsizetype seen = 1; at >= 0 && seen < n; ++seen)
        at = find(text, needle, at + 1);
    return at;
}

qsizetype nthOrLastOccurrence(QStringView text, QStringView needle, qsizetype n)
{
    qsizetype last = -1;
    qsizetype seen = 0;
    for (qsizetype at = find(text, needle, 0); at >= 0 && seen < std::max<qsizetype>(n, 1); at = find(text, needle, at + 1)) {
        last = at;
        ++seen;
    }
    return last;
}

Run runAt(QStringView text, qint64 position, qint64 count, bool fromRight)
{
    const qint64 length = text.size();
    count = std::max<qint64>(count, 0);
    position = std::max<qint64>(position, 1);  // a run never starts before the first character
    if (!fromRight)
        return position > length ? Run{} : wholeCharacters(text, qsizetype(position - 1), qsizetype(std::min(count, length)));
    const qint64 end = length - position + 1;  // 1-based last character of the run
    if (end < 1 || count == 0)
        return {};
    const qint64 start = std::max<qint64>(end - count + 1, 1);
    return wholeCharacters(text, qsizetype(start - 1), qsizetype(end - start + 1));
}

QString between(QStringView text, QStringView left, QStringView right, bool includeDelimiters)
{
    if (left.isEmpty() || right.isEmpty() || left == right)
        return {};
    qsizetype from = 0;
    for (;;) {
        const qsizetype l = find(text, left, from);
        if (l < 0)
            return {};
        const qsizetype start = l + left.size();
        const qsizetype r = find(text, right, start);
        if (r < 0)
            return {};
        const QStringView piece = text.sliced(start, r - start);
        // Adjacent delimiters, or a piece that opens again: try from behind this left one,
        // which finds the innermost of nested pairs.
        if (piece.isEmpty() || find(piece, left, 0) >= 0) {
            from = start;
            continue;
        }
        return includeDelimiters ? joined({left, piece, right}) : piece.toString();
    }
}

namespace {

QString insertAt(const QString& name, qsizetype at, const QString& insert)
{
    at = insertionPoint(name, at);
    return joined({QStringView(name).first(at), insert, QStringView(name).sliced(at)});
}

// Puts `insert` before or behind the text found at `at`.
QString insertAround(const QString& name, qsizetype at, qsizetype foundLength, const QString& insert, bool beforeIt)
{
    return at < 0 ? name : insertAt(name, beforeIt ? at : at + foundLength, insert);
}

}  // namespace

QString place(const QString& name, const QString& insert, const Placement& where)
{
    switch (where.kind) {
    case Placement::None:
        return name;
    case Placement::Before:
        return insert + name;
    case Placement::After:
        return name + insert;
    case Placement::AtPosition: {
        const qint64 keep = std::clamp<qint64>(where.position, 0, name.size());
        return insertAt(name, qsizetype(where.fromRight ? name.size() - keep : keep), insert);
    }
    case Placement::AtText: {
        const qsizetype count = countOccurrences(name, where.text);
        if (count == 0)
            return name;
        const qsizetype which = qsizetype(std::clamp<qint64>(where.occurrence, 1, count));
        return insertAround(name, nthOccurrence(name, where.text, which), where.text.size(), insert, where.beforeIt);
    }
    case Placement::AtDelimited: {
        const QString found = between(name, where.left, where.right, where.includeDelimiters);
        if (found.isEmpty())
            return name;
        return insertAround(name, find(name, found, 0), found.size(), insert, where.beforeIt);
    }
    }
    return name;
}

QString movePiece(const QString& name, const QString& piece, qint64 distance, bool right)
{
    const qsizetype at = find(name, piece, 0);
    if (at < 0 || distance <= 0)
        return name;
    QStringView before = QStringView(name).first(at);
    QStringView after = QStringView(name).sliced(at + piece.size());
    if (right) {
        const qsizetype taken = insertionPoint(after, qsizetype(std::min<qint64>(distance, after.size())));
        return joined({before, after.first(taken), piece, after.sliced(taken)});
    }
    qsizetype cut = before.size() - qsizetype(std::min<qint64>(distance, before.size()));
    if (splitsPair(before, cut))
        --cut;
    return joined({before.first(cut), piece, before.sliced(cut), after});
}

QString asciiCase(QString text, bool upper)
{
    for (QChar& c : text)
        c = QChar(upper ? asciiUpper(c.unicode()) : asciiLower(c.unicode()));
    return text;
}

QString lettersOf(qint64 value, char16_t zeroLetter)
{
    QString text;
    do {
        text.prepend(QChar(char16_t(zeroLetter + value % 26)));
        value /= 26;
    } while (value > 0);
    return text;
}

}  // namespace qp::nametext
