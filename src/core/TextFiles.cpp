#include "core/TextFiles.h"

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
