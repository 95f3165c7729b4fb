#include "metadata/FieldValue.h"

#include <QRegularExpression>
#include <cmath>

namespace qp::metadata {

QString Moment::isoText() const
{
    if (!date.isValid())
        return {};
    QString text = date.toString(QStringLiteral("yyyy-MM-dd"));
    if (time.isValid()) {
        text += time.toString(subseconds ? QStringLiteral("'T'HH:mm:ss.zzz") : QStringLiteral("'T'HH:mm:ss"));
        text += offsetText(true);
    }
    return text;
}

QString Moment::offsetText(bool colon) const
{
    if (!offsetMinutes)
        return {};
    const int minutes = std::abs(*offsetMinutes);
    return QString(*offsetMinutes < 0 ? u'-' : u'+') + QStringLiteral("%1").arg(minutes / 60, 2, 10, QLatin1Char('0'))
           + (colon ? QStringLiteral(":") : QString()) + QStringLiteral("%1").arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

Moment parseMoment(QStringView text)
{
    // Year, then optional month, day, hour, minute, second, fraction and zone, with any of
    // the separators the formats use.
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\s*(?:UTC\s+)?(\d{4})(?:[:\-/](\d{1,2})(?:[:\-/](\d{1,2})(?:[T ]+(\d{1,2}):(\d{2})(?::(\d{2})(?:[.,](\d+))?)?)?)?)?\s*(Z|UTC|[+\-]\d{2}:?\d{2})?\s*$)"));
    const QRegularExpressionMatch m = pattern.match(text);
    Moment moment;
    if (!m.hasMatch())
        return moment;
    const int year = m.capturedView(1).toInt();
    const int month = m.hasCaptured(2) ? m.capturedView(2).toInt() : 1;
    const int day = m.hasCaptured(3) ? m.capturedView(3).toInt() : 1;
    moment.date = QDate(year, month, day);
    if (year == 0 || !moment.date.isValid())
        return {};
    if (m.hasCaptured(4)) {
        int msec = 0;
        if (m.hasCaptured(7)) {
            moment.subseconds = true;
            msec = QStringView(m.capturedView(7).left(3).toString() + QStringLiteral("00")).left(3).toInt();
        }
        moment.time = QTime(m.capturedView(4).toInt(), m.capturedView(5).toInt(),
                            m.hasCaptured(6) ? m.capturedView(6).toInt() : 0, msec);
        if (!moment.time.isValid())
            return {};
    }
    const QStringView zone = m.capturedView(8);
    if (zone == u"Z" || zone == u"UTC" || text.trimmed().startsWith(u"UTC")) {
        moment.offsetMinutes = 0;
    } else if (!zone.isEmpty()) {
        const QString digits = zone.mid(1).toString().remove(u':');
        const int minutes = digits.left(2).toInt() * 60 + digits.mid(2).toInt();
        moment.offsetMinutes = zone.front() == u'-' ? -minutes : minutes;
    }
    return moment;
}

QString numberText(double value, int decimals)
{
    if (!std::isfinite(value))
        return {};
    QString text = QString::number(value, 'f', decimals);
    if (text.contains(u'.')) {
        while (text.endsWith(u'0'))
            text.chop(1);
        if (text.endsWith(u'.'))
            text.chop(1);
    }
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

FieldValue FieldValue::text(QString value)
{
    FieldValue v;
    v.m_items = QStringList{std::move(value)};
    return v;
}

FieldValue FieldValue::list(QStringList values)
{
    FieldValue v;
    v.m_items = std::move(values);
    return v;
}

FieldValue FieldValue::number(double value)
{
    FieldValue v;
    v.m_kind = Kind::Number;
    v.m_number = value;
    return v;
}

FieldValue FieldValue::fraction(qint64 numerator, qint64 denominator)
{
    FieldValue v;
    v.m_kind = Kind::Fraction;
    v.m_numerator = numerator;
    v.m_denominator = denominator;
    v.m_number = denominator != 0 ? double(numerator) / double(denominator) : 0.0;
    return v;
}

FieldValue FieldValue::moment(Moment value)
{
    FieldValue v;
    v.m_kind = Kind::Moment;
    v.m_moment = std::move(value);
    return v;
}

QString FieldValue::text() const
{
    switch (m_kind) {
    case Kind::Text: return m_items.join(QStringLiteral("; "));
    case Kind::Number: return numberText(m_number);
    case Kind::Fraction:
        if (m_denominator == 0)
            return {};
        // 1/250 stays a fraction; 10/1, 25/10 and 4/3 (above one) read better as numbers.
        if (m_numerator % m_denominator == 0 || std::abs(m_number) >= 1.0 || m_numerator == 0)
            return numberText(m_number, 1);
        return QStringLiteral("1/%1").arg(numberText(double(m_denominator) / double(m_numerator), 0));
    case Kind::Moment: return m_moment.isoText();
    }
    return {};
}

bool FieldValue::isEmpty() const
{
    switch (m_kind) {
    case Kind::Text:
        for (const QString& item : m_items) {
            if (!item.isEmpty())
                return false;
        }
        return true;
    case Kind::Moment: return !m_moment.isValid();
    case Kind::Fraction: return m_denominator == 0;
    case Kind::Number: return false;
    }
    return true;
}

}  // namespace qp::metadata
