// Text building blocks that several name commands share: searching, the text between two
// delimiters, placing a text into a name, moving a run, counted numbers and ASCII case.
//
// Positions are UTF-16 code units, as QString counts them. A character outside the Basic
// Multilingual Plane (an emoji, a rare CJK ideograph) is two code units, and no block ever
// cuts between them: a search never reports a hit that starts or ends inside such a pair,
// an insertion point inside one moves past it, and a run with an end inside one grows to
// take the whole character.
#pragma once

#include <QString>
#include <QStringMatcher>
#include <QStringView>

namespace qp::nametext {

// True when `at` lies between the two halves of a surrogate pair.
bool splitsPair(QStringView text, qsizetype at);
// An insertion point: inside a pair it moves past the pair; clamped to 0..size.
qsizetype insertionPoint(QStringView text, qsizetype at);

// A run [start, start + count), already clamped to the text, widened to whole characters.
struct Run {
    qsizetype start = 0;
    qsizetype count = 0;
};
Run wholeCharacters(QStringView text, qsizetype start, qsizetype count);

// The first hit of `needle` at or after `from` whose ends both lie on character
// boundaries; -1 when there is none or the needle is empty.
qsizetype find(QStringView text, QStringView needle, qsizetype from,
               Qt::CaseSensitivity cs = Qt::CaseSensitive);

// The same with a matcher made once for many searches; `length` is its pattern's length,
// which must not be 0.
qsizetype find(QStringView text, const QStringMatcher& matcher, qsizetype length, qsizetype from);

// Occurrences counted left to right without overlap (after a hit the search goes on
// behind it); an empty needle occurs 0 times.
qsizetype countOccurrences(QStringView text, QStringView needle);

// The 0-based position of the n-th occurrence (n ≥ 1), searching again one character after
// each hit, so overlapping hits count here; -1 when there are fewer than n.
qsizetype nthOccurrence(QStringView text, QStringView needle, qsizetype n);

// The n-th occurrence as nthOccurrence() finds it, or the last one when there are fewer
// than n; -1 when the needle does not occur.
qsizetype nthOrLastOccurrence(QStringView text, QStringView needle, qsizetype n);

// A run given by a 1-based position and a count. From the left it starts at that
// position; from the right the position counts from the end (1 is the last character) and
// the run ends there, reaching leftwards. Cut at both ends of the text, widened to whole
// characters; empty when the position lies beyond the text.
Run runAt(QStringView text, qint64 position, qint64 count, bool fromRight);

// The text between the delimiters: the first left delimiter followed by a right one with
// something between them that holds no left delimiter (so of nested pairs the innermost);
// with `includeDelimiters` the delimiters come with it. Empty when either delimiter is
// empty, when they are equal or when no such piece exists.
QString between(QStringView text, QStringView left, QStringView right, bool includeDelimiters);

// Where a text goes into a name.
struct Placement {
    enum Kind { None, Before, After, AtPosition, AtText, AtDelimited } kind = None;
    qint64 position = 0;        // AtPosition: characters that stay to its left (right when fromRight)
    bool fromRight = false;
    QString text;               // AtText: the text to look for
    qint64 occurrence = 1;      // AtText: which occurrence; beyond the last means the last
    QString left, right;        // AtDelimited
    bool includeDelimiters = false;
    bool beforeIt = false;      // AtText, AtDelimited: in front of the text found (else behind it)
};
// The name with `insert` placed; unchanged when the place is not found.
QString place(const QString& name, const QString& insert, const Placement& where);

// Moves the first occurrence of `piece` by `distance` characters to the right (or left),
// stopping at the ends of the name; the name is unchanged when the piece does not occur.
QString movePiece(const QString& name, const QString& piece, qint64 distance, bool right);

// Upper or lower case for ASCII letters only, so that results never depend on the locale.
QString asciiCase(QString text, bool upper);
inline bool isAsciiLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
inline bool isAsciiDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
inline char16_t asciiUpper(char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - 32) : c; }
inline char16_t asciiLower(char16_t c) { return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c; }

// Base 26 with the zero letter as its zero digit: 0 is "A", 25 "Z", 26 "BA". `value` ≥ 0.
QString lettersOf(qint64 value, char16_t zeroLetter);

}  // namespace qp::nametext
