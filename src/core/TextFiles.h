// What the program's own text files (settings, command files, rename programmes,
// snapshots) share: blank trimming as their readers do it, the comment header and the
// byte form (UTF-8 with a byte-order mark, CR LF line ends).
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace qp::text {

// Trims spaces and tabs only: other white space (such as U+3000) may be part of a name.
QStringView trimBlanks(QStringView s);

// ";" and 59 "=": the rule line that opens and closes every header.
QString ruleLine();
// The banner comment line that names the product.
QString productLine();

// The header of a rename programme or snapshot file: the rule, `title`, the banner, `maker`,
// ";", the five lines that explain the format, and the rule again.
QStringList programmeHeader(const QString& title, const QString& maker);

// Calls `each(line)` for every line of `text`; a line ends with CR LF, LF or a lone CR, so a
// CR is never part of a line.
template <typename Each>
void forEachLine(QStringView text, Each each)
{
    const qsizetype size = text.size();
    qsizetype pos = 0;
    while (pos < size) {
        qsizetype end = pos;
        while (end < size && text[end] != u'\n' && text[end] != u'\r')
            ++end;
        const QStringView line = text.sliced(pos, end - pos);
        pos = (end + 1 < size && text[end] == u'\r' && text[end + 1] == u'\n') ? end + 2 : end + 1;
        each(line);
    }
}

// The section name of a line "[name]" (blanks around both trimmed); a null view when the
// line is no section header.
QStringView sectionHeader(QStringView line);

// A name or path as it stands in a line of a rename programme or snapshot: "=" would end
// the key and CR or LF the line, so they are written "<61>", "<13>" and "<10>"; a "<" that
// would be read as one of these (or as "<60>") is written "<60>".
void appendNameField(QString& out, QStringView text);
QString nameField(QStringView text);
// The text back from such a field.
QString fromNameField(QStringView field);
// appendNameField straight into UTF-8 bytes, as files are written.
void appendNameFieldUtf8(QByteArray& out, QStringView text);

// BOM + every line followed by CR LF, in UTF-8.
QByteArray withBomAndCrlf(const QStringList& lines);

}  // namespace qp::text
