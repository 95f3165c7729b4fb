#include "core/TextFiles.h"

#include <cstring>

namespace qp::text {

QStringView trimBlanks(QStringView s)
{
    auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (!s.isEmpty() && isBlank(s.front()))
        s = s.sliced(1);
    while (!s.isEmpty() && isBlank(s.back()))
        s.chop(1);
    return s;
}

QStringView sectionHeader(QStringView line)
{
    const QStringView trimmed = trimBlanks(line);
    if (trimmed.size() < 2 || trimmed.front() != u'[' || trimmed.back() != u']')
        return QStringView();
    const QStringView name = trimBlanks(trimmed.sliced(1, trimmed.size() - 2));
    return name.isNull() ? QStringView(u"") : name;
}

QString ruleLine() { return QLatin1Char(';') + QString(59, QLatin1Char('=')); }

QString productLine() { return QStringLiteral(";Quillet Pro 批量文件更名工具"); }

QStringList programmeHeader(const QString& title, const QString& maker)
{
    return {
        ruleLine(),
        title,
        productLine(),
        maker,
        QStringLiteral(";"),
        QStringLiteral(";说明：更名方案文件 或 快照文件 内容必须遵守的指定格式如下："),
        QStringLiteral(";1. 必须包含字段：[Rename Programme]；"),
        QStringLiteral(";2. [Rename Programme]字段下面每行的格式为："),
        QStringLiteral(";   原始文件名（含路径）=结果文件名（不含路径，含扩展名）"),
        QStringLiteral(";3. 所有文件名中的“=”必须改为“<61>”；"),
        QStringLiteral(";4. 本文件为系统生成，文件遵守ini文件格式。"),
        ruleLine(),
    };
}

namespace {

// The escapes a field may hold, by the character they stand for.
char16_t escaped(QStringView code)
{
    return code == u"61" ? u'=' : code == u"13" ? u'\r' : code == u"10" ? u'\n' : code == u"60" ? u'<' : 0;
}

bool startsEscape(QStringView text, qsizetype at)
{
    return at + 3 < text.size() && text[at] == u'<' && text[at + 3] == u'>' && escaped(text.sliced(at + 1, 2));
}

}  // namespace

void appendNameField(QString& out, QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        switch (text[i].unicode()) {
        case u'=': out += QLatin1String("<61>"); break;
        case u'\r': out += QLatin1String("<13>"); break;
        case u'\n': out += QLatin1String("<10>"); break;
        // A "<" that would read as an escape is itself escaped, so every name comes back.
        case u'<': out += startsEscape(text, i) ? QLatin1String("<60>") : QLatin1String("<"); break;
        default: out += text[i];
        }
    }
}

void appendNameFieldUtf8(QByteArray& out, QStringView text)
{
    // Encoded into a small buffer first: one append per piece instead of one per byte.
    char buffer[512];
    int used = 0;
    auto put = [&](const char* bytes, int n) {
        if (used + n > int(sizeof buffer)) {
            out.append(buffer, used);
            used = 0;
        }
        std::memcpy(buffer + used, bytes, size_t(n));
        used += n;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c >= 0x20 && c < 0x80 && c != u'=' && c != u'<') {
            if (used == int(sizeof buffer)) {
                out.append(buffer, used);
                used = 0;
            }
            buffer[used++] = char(c);
            continue;
        }
        if (c < 0x80) {
            switch (c) {
            case u'=': put("<61>", 4); break;
            case u'\r': put("<13>", 4); break;
            case u'\n': put("<10>", 4); break;
            case u'<': startsEscape(text, i) ? put("<60>", 4) : put("<", 1); break;
            default: {
                const char one = char(c);
                put(&one, 1);
            }
            }
            continue;
        }
        char32_t cp = c;
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            cp = QChar::surrogateToUcs4(c, text[++i].unicode());
        else if (QChar::isSurrogate(c))
            cp = 0xFFFD;  // half a pair has no UTF-8 form
        char bytes[4];
        int n = 0;
        if (cp < 0x800) {
            bytes[n++] = char(0xC0 | (cp >> 6));
        } else {
            if (cp < 0x10000) {
                bytes[n++] = char(0xE0 | (cp >> 12));
            } else {
                bytes[n++] = char(0xF0 | (cp >> 18));
                bytes[n++] = char(0x80 | ((cp >> 12) & 0x3F));
            }
            bytes[n++] = char(0x80 | ((cp >> 6) & 0x3F));
        }
        bytes[n++] = char(0x80 | (cp & 0x3F));
        put(bytes, n);
    }
    out.append(buffer, used);
}

QString nameField(QStringView text)
{
    QString out;
    out.reserve(text.size() + 8);
    appendNameField(out, text);
    return out;
}

QString fromNameField(QStringView field)
{
    if (!field.contains(u'<'))
        return field.toString();
    QString out;
    out.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (startsEscape(field, i)) {
            out += QChar(escaped(field.sliced(i + 1, 2)));
            i += 3;
        } else {
            out += field[i];
        }
    }
    return out;
}

QByteArray withBomAndCrlf(const QStringList& lines)
{
    QByteArray bytes("\xEF\xBB\xBF");
    for (const QString& line : lines) {
        bytes += line.toUtf8();
        bytes += "\r\n";
    }
    return bytes;
}

}  // namespace qp::text
