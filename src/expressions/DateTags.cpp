// Date and time pictures of the eight date and time groups.
#include "expressions/TagParts.h"

namespace qp::expr {
namespace {

QString twoDigits(int value) { return QString::number(value).rightJustified(2, u'0'); }

bool isChinese(const QLocale& locale) { return locale.language() == QLocale::Chinese; }

}  // namespace

QString formatPicture(const QDateTime& moment, QStringView picture, const QLocale& locale)
{
    const QDate date = moment.date();
    const QTime time = moment.time();
    QString out;
    out.reserve(picture.size() + 8);
    qsizetype i = 0;
    while (i < picture.size()) {
        const char16_t c = picture[i].unicode();
        const char16_t lower = (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
        qsizetype run = 1;
        while (i + run < picture.size()) {
            char16_t next = picture[i + run].unicode();
            if (next >= u'A' && next <= u'Z')
                next = char16_t(next + 32);
            if (next != lower)
                break;
            ++run;
        }
        switch (lower) {
        case u'y':
            // "yy" (or a lone "y") is the year in two digits; three or more letters, in four.
            out += run <= 2 ? twoDigits(date.year() % 100) : QString::number(date.year()).rightJustified(4, u'0');
            break;
        case u'm':
            if (run == 1)
                out += QString::number(date.month());
            else if (run == 2)
                out += twoDigits(date.month());
            else
                out += locale.monthName(date.month(), run == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            break;
        case u'd':
            if (run == 1)
                out += QString::number(date.day());
            else if (run == 2)
                out += twoDigits(date.day());
            else if (run <= 4)
                out += locale.dayName(date.dayOfWeek(), run == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            else if (run == 5)
                out += QStringLiteral("%1-%2-%3").arg(date.year()).arg(date.month()).arg(date.day());
            else if (isChinese(locale))
                out += QStringLiteral("%1年%2月%3日").arg(date.year()).arg(date.month()).arg(date.day());
            else
                out += locale.toString(date, QLocale::LongFormat);
            break;
        case u'h':
            out += run == 1 ? QString::number(time.hour()) : twoDigits(time.hour());
            break;
        case u'n':
            out += run == 1 ? QString::number(time.minute()) : twoDigits(time.minute());
            break;
        case u's':
            out += run == 1 ? QString::number(time.second()) : twoDigits(time.second());
            break;
        default:
            out += picture.mid(i, run);
            break;
        }
        // Runs longer than a code takes are read as the longest form, not repeated.
        i += run;
    }
    return out;
}

}  // namespace qp::expr
