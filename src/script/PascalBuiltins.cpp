// The language's built-in routines, with Delphi's names and behaviour where the two agree
// with the program's rules (letter-case changes touch ASCII letters only; positions are
// 1-based UTF-16 units).
#include <QDate>
#include <QLocale>
#include <QRandomGenerator>
#include <cmath>
#include <limits>

#include "core/PathText.h"
#include "script/PascalScript.h"

namespace qp::pascal {

namespace {

using Call = std::function<Value(Machine&, Value*, int)>;

[[noreturn]] void fail(const QString& message) { throw NativeError{message}; }

QString asciiUpper(QString s)
{
    for (QChar& c : s) {
        if (c >= u'a' && c <= u'z')
            c = QChar(c.unicode() - 32);
    }
    return s;
}

QString asciiLower(QString s)
{
    for (QChar& c : s) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + 32);
    }
    return s;
}

int compareText(const QString& a, const QString& b)
{
    const QString x = asciiUpper(a);
    const QString y = asciiUpper(b);
    return QString::compare(x, y, Qt::CaseSensitive);
}

// Delphi's Trim: every character up to the space, control characters included.
QString trimmed(const QString& s, bool left, bool right)
{
    qsizetype from = 0;
    qsizetype to = s.size();
    while (left && from < to && s[from].unicode() <= 0x20)
        ++from;
    while (right && to > from && s[to - 1].unicode() <= 0x20)
        --to;
    return s.mid(from, to - from);
}

// The paths a script sees use the platform's separators; on Linux a backslash is part of a name.
qsizetype lastSeparator(const QString& path) { return internalSeparators(path).lastIndexOf(u'/'); }

// The dot that starts the extension, -1 when the name part has none.
qsizetype extensionDot(const QString& path)
{
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot > lastSeparator(path) ? dot : -1;
}

QString fileName(const QString& path) { return path.mid(lastSeparator(path) + 1); }

QString baseName(const QString& path)
{
    const QString name = fileName(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? name : name.left(dot);
}

std::optional<qint64> parseInteger(const QString& text)
{
    const QString t = text.trimmed();
    bool ok = false;
    qint64 v = 0;
    if (t.startsWith(u'$'))
        v = t.mid(1).toLongLong(&ok, 16);
    else if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        v = t.mid(2).toLongLong(&ok, 16);
    else if (t.startsWith(QLatin1String("-$")))
        v = -t.mid(2).toLongLong(&ok, 16);
    else
        v = t.toLongLong(&ok, 10);
    return ok ? std::optional<qint64>(v) : std::nullopt;
}

std::optional<double> parseReal(const QString& text)
{
    bool ok = false;
    const double v = QLocale::c().toDouble(text.trimmed(), &ok);
    return ok ? std::optional<double>(v) : std::nullopt;
}

qint64 checkedTrunc(double v)
{
    // Beyond ±2^63 the conversion would be undefined.
    if (!std::isfinite(v) || v >= 9.2233720368547758e18 || v < -9.2233720368547758e18)
        fail(scriptTr("数值超出整数范围"));
    return qint64(v);
}

// Delphi's FloatToStr: up to 15 significant digits, "1E20" for large and small values.
QString floatText(double v)
{
    QString s = QString::number(v, 'g', 15);
    const qsizetype e = s.indexOf(u'e');
    if (e < 0)
        return s;
    QString mantissa = s.left(e);
    QString exponent = s.mid(e + 1);
    const bool negative = exponent.startsWith(u'-');
    if (exponent.startsWith(u'+') || negative)
        exponent.remove(0, 1);
    while (exponent.size() > 1 && exponent.startsWith(u'0'))
        exponent.remove(0, 1);
    return mantissa + u'E' + (negative ? QStringLiteral("-") : QString()) + exponent;
}

QString hexText(qint64 v, qint64 digits)
{
    QString s = QString::number(quint64(v), 16).toUpper();
    const qsizetype width = qsizetype(std::clamp<qint64>(digits, 0, 16));
    return s.size() < width ? QString(width - s.size(), u'0') + s : s;
}

QString grouped(const QString& fixed)
{
    const qsizetype dot = fixed.indexOf(u'.');
    QString whole = dot < 0 ? fixed : fixed.left(dot);
    const qsizetype first = whole.startsWith(u'-') ? 1 : 0;
    for (qsizetype i = whole.size() - 3; i > first; i -= 3)
        whole.insert(i, u',');
    return dot < 0 ? whole : whole + fixed.mid(dot);
}

// ---------------------------------------------------------------------------------------
// Format

class Formatter {
public:
    Formatter(Machine& m, const QString& format, const Array& args) : m_m(m), m_format(format), m_args(args) {}

    QString run()
    {
        QString out;
        for (qsizetype i = 0; i < m_format.size(); ++i) {
            const QChar c = m_format[i];
            if (c != u'%') {
                out += c;
                continue;
            }
            if (i + 1 < m_format.size() && m_format[i + 1] == u'%') {
                out += u'%';
                ++i;
                continue;
            }
            i = directive(i + 1, out);
        }
        return out;
    }

private:
    qsizetype number(qsizetype& i) const
    {
        qsizetype v = 0;
        while (i < m_format.size() && m_format[i].isDigit()) {
            v = std::min<qsizetype>(v * 10 + m_format[i].digitValue(), m_m.limits.maxStringLength);
            ++i;
        }
        return v;
    }

    // One "%[-][width][.precision]type"; returns the position of its type letter.
    qsizetype directive(qsizetype i, QString& out)
    {
        const bool leftAlign = i < m_format.size() && m_format[i] == u'-';
        if (leftAlign)
            ++i;
        const qsizetype width = number(i);
        qsizetype precision = -1;
        if (i < m_format.size() && m_format[i] == u'.') {
            ++i;
            precision = number(i);
        }
        if (i >= m_format.size())
            fail(scriptTr("Format 的格式不完整：%1").arg(m_format));
        const QChar type = m_format[i].toLower();
        QString text = convert(type, precision);
        m_m.checkLength(out.size() + std::max(width, text.size()));
        if (text.size() < width)
            text = leftAlign ? text + QString(width - text.size(), u' ') : QString(width - text.size(), u' ') + text;
        out += text;
        return i;
    }

    const Value& next(QChar type)
    {
        if (m_used >= qsizetype(m_args.size()))
            fail(scriptTr("Format 的参数不够"));
        const Value& v = m_args[size_t(m_used++)];
        const bool fits = type == u's' ? (v.tag == Kind::String || v.tag == Kind::Char)
            : (type == u'd' || type == u'u' || type == u'x') ? v.tag == Kind::Integer
                                                             : (v.tag == Kind::Double || v.tag == Kind::Integer);
        if (!fits)
            fail(scriptTr("Format 的第 %1 个参数与“%%2”不符").arg(m_used).arg(type));
        return v;
    }

    QString convert(QChar type, qsizetype precision)
    {
        switch (type.unicode()) {
        case u's': {
            const Value& v = next(type);
            const QString s = v.tag == Kind::Char ? charText(v.i) : v.s;
            return precision >= 0 ? s.left(precision) : s;
        }
        case u'd':
        case u'u':
        case u'x': {
            const qint64 v = next(type).i;
            QString digits = type == u'x' ? hexText(v, 0)
                : type == u'u'            ? QString::number(quint64(v))
                                          : QString::number(v < 0 ? 0 - quint64(v) : quint64(v));
            if (digits.size() < precision)
                digits.prepend(QString(std::min(precision, qsizetype(64)) - digits.size(), u'0'));
            return type == u'd' && v < 0 ? u'-' + digits : digits;
        }
        case u'f':
        case u'n':
        case u'e':
        case u'g': {
            const Value& v = next(type);
            const double d = v.tag == Kind::Integer ? double(v.i) : v.d;
            const int p = int(std::min<qsizetype>(precision, 18));
            if (type == u'e')
                return QString::number(d, 'E', (p < 0 ? 15 : std::max(p, 1)) - 1);
            if (type == u'g')
                return floatText(p < 0 ? d : QString::number(d, 'g', std::max(p, 1)).toDouble());
            const QString fixed = QString::number(d, 'f', p < 0 ? 2 : p);
            return type == u'n' ? grouped(fixed) : fixed;
        }
        default:
            fail(scriptTr("Format 不支持“%%1”").arg(type));
        }
    }

    Machine& m_m;
    const QString& m_format;
    const Array& m_args;
    qsizetype m_used = 0;
};

// ---------------------------------------------------------------------------------------
// Dates

const QDate kDateBase(1899, 12, 30);
constexpr double kMsPerDay = 86400000.0;

QDateTime dateTimeOf(double v)
{
    const std::optional<QDateTime> t = fromDateTime(v);
    if (!t)
        fail(scriptTr("日期时间值无效：%1").arg(v));
    return *t;
}

// Delphi's FormatDateTime: d dd ddd dddd, m mm mmm mmmm (minutes right after an hour), yy
// yyyy, h hh, n nn, s ss, z zzz, am/pm and a/p, c, t tt, and text in quotes.
class DateFormatter {
public:
    DateFormatter(const QString& format, const QDateTime& t) : m_f(format), m_t(t)
    {
        m_twelve = format.contains(QLatin1String("am/pm"), Qt::CaseInsensitive)
            || format.contains(QLatin1String("a/p"), Qt::CaseInsensitive);
    }

    QString run()
    {
        QString out;
        for (qsizetype i = 0; i < m_f.size();) {
            const QChar c = m_f[i];
            const char16_t lower = c.toLower().unicode();
            if (c == u'"' || c == u'\'') {
                const qsizetype close = m_f.indexOf(c, i + 1);
                const qsizetype end = close < 0 ? m_f.size() : close;
                out += m_f.mid(i + 1, end - i - 1);
                i = end + 1;
                continue;
            }
            if (m_f.mid(i, 5).compare(QLatin1String("am/pm"), Qt::CaseInsensitive) == 0) {
                out += m_t.time().hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
                i += 5;
                continue;
            }
            if (m_f.mid(i, 3).compare(QLatin1String("a/p"), Qt::CaseInsensitive) == 0) {
                out += m_t.time().hour() < 12 ? u'A' : u'P';
                i += 3;
                continue;
            }
            qsizetype run = 1;
            while (i + run < m_f.size() && m_f[i + run].toLower() == QChar(lower))
                ++run;
            if (!field(lower, run, out))
                out += m_f.mid(i, run);
            m_afterHour = lower == u'h' || (m_afterHour && !QChar(lower).isLetter());
            i += run;
        }
        return out;
    }

private:
    static QString padded(int v, qsizetype run) { return run >= 2 ? QString::asprintf("%02d", v) : QString::number(v); }

    bool field(char16_t letter, qsizetype run, QString& out)
    {
        const QDate d = m_t.date();
        const QTime t = m_t.time();
        const QLocale locale = QLocale::system();
        switch (letter) {
        case u'y': out += run <= 2 ? QString::asprintf("%02d", d.year() % 100) : QString::number(d.year()); return true;
        case u'm':
            if (m_afterHour)
                out += padded(t.minute(), run);
            else if (run <= 2)
                out += padded(d.month(), run);
            else
                out += locale.monthName(d.month(), run == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            return true;
        case u'd':
            if (run <= 2)
                out += padded(d.day(), run);
            else if (run <= 4)
                out += locale.dayName(d.dayOfWeek(), run == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
            else
                out += d.toString(QStringLiteral("yyyy-MM-dd"));
            return true;
        case u'h': {
            int hour = t.hour();
            if (m_twelve)
                hour = hour % 12 == 0 ? 12 : hour % 12;
            out += padded(hour, run);
            return true;
        }
        case u'n': out += padded(t.minute(), run); return true;
        case u's': out += padded(t.second(), run); return true;
        case u'z': out += run >= 3 ? QString::asprintf("%03d", t.msec()) : QString::number(t.msec()); return true;
        case u'c': out += m_t.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")); return true;
        case u't': out += t.toString(run >= 2 ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm")); return true;
        default: return false;
        }
    }

    const QString& m_f;
    const QDateTime m_t;
    bool m_twelve = false;
    bool m_afterHour = false;
};

// ---------------------------------------------------------------------------------------
// The table

Value str(QString s) { return Value::string(std::move(s)); }
Value num(qint64 v) { return Value::integer(v); }
Value real(double v) { return Value::real(v); }
Value flag(bool v) { return Value::boolean(v); }

QString clippedCopy(const QString& s, qint64 index, qint64 count)
{
    const qint64 from = std::max<qint64>(index, 1) - 1;
    if (from >= s.size() || count <= 0)
        return QString();
    return s.mid(qsizetype(from), qsizetype(std::min<qint64>(count, s.size() - from)));
}

QString replaced(Machine& m, const QString& s, const QString& from, const QString& to, const Array* flags)
{
    bool all = false;
    bool ignoreCase = false;
    for (const Value& f : flags ? *flags : Array{}) {
        if (f.tag != Kind::Integer)
            fail(scriptTr("StringReplace 的选项应为 rfReplaceAll、rfIgnoreCase"));
        all = all || f.i == 0;
        ignoreCase = ignoreCase || f.i == 1;
    }
    if (from.isEmpty())
        return s;
    const Qt::CaseSensitivity cs = ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
    if (!all) {
        const qsizetype at = s.indexOf(from, 0, cs);
        if (at < 0)
            return s;
        m.checkLength(s.size() - from.size() + to.size());
        return s.left(at) + to + s.mid(at + from.size());
    }
    const qint64 count = s.count(from, cs);
    m.checkLength(qsizetype(s.size() + count * (to.size() - from.size())));
    QString result = s;
    return result.replace(from, to, cs);
}

void setStringLength(Machine& m, Value& s, qint64 length)
{
    const qsizetype n = qsizetype(std::max<qint64>(length, 0));
    m.checkLength(n);
    if (n <= s.s.size())
        s.s.truncate(n);
    else
        s.s.append(QString(n - s.s.size(), u' '));
    m.produced(n);
}

void setArrayLength(Machine& m, Value& a, qint64 length)
{
    if (length > m.limits.maxArrayLength)
        fail(scriptTr("数组过长（超过 %1 个元素）").arg(m.limits.maxArrayLength));
    const size_t n = size_t(std::max<qint64>(length, 0));
    // As in Delphi, SetLength gives the variable an array of its own.
    if (!a.a || a.a.use_count() > 1)
        a.a = std::make_shared<Array>(a.a ? *a.a : Array{});
    a.a->resize(n);
    m.produced(qsizetype(n) * qsizetype(sizeof(Value) / 2));
}

double encodeDate(qint64 y, qint64 mo, qint64 d)
{
    const QDate date(int(std::clamp<qint64>(y, 0, 10000)), int(std::clamp<qint64>(mo, 0, 13)), int(std::clamp<qint64>(d, 0, 32)));
    if (!date.isValid() || y < 1 || y > 9999)
        fail(scriptTr("日期无效：%1-%2-%3").arg(y).arg(mo).arg(d));
    return double(kDateBase.daysTo(date));
}

double encodeTime(qint64 h, qint64 mi, qint64 s, qint64 ms)
{
    if (h < 0 || h > 23 || mi < 0 || mi > 59 || s < 0 || s > 59 || ms < 0 || ms > 999)
        fail(scriptTr("时间无效：%1:%2:%3.%4").arg(h).arg(mi).arg(s).arg(ms));
    return double(((h * 60 + mi) * 60 + s) * 1000 + ms) / kMsPerDay;
}

void addStringNatives(NativeTable& t)
{
    t.push_back({"Length", "I:S", [](Machine&, Value* a, int) { return num(a[0].s.size()); }});
    t.push_back({"Length", "I:A", [](Machine&, Value* a, int) { return num(a[0].arrayLength()); }});
    t.push_back({"Copy", "S:SI|I", [](Machine&, Value* a, int n) {
                     return str(clippedCopy(a[0].s, a[1].i, n > 2 ? a[2].i : std::numeric_limits<qint64>::max()));
                 }});
    auto pos = [](Machine&, Value* a, int n) {
        const qint64 from = n > 2 ? std::max<qint64>(a[2].i, 1) - 1 : 0;
        if (a[0].s.isEmpty() || from >= a[1].s.size())
            return num(0);
        return num(a[1].s.indexOf(a[0].s, qsizetype(from)) + 1);
    };
    t.push_back({"Pos", "I:SS|I", pos});
    t.push_back({"PosEx", "I:SS|I", pos});
    t.push_back({"Delete", "V:&SII", [](Machine&, Value* a, int) {
                     QString& s = a[0].s;
                     const qint64 from = a[1].i - 1;
                     if (from >= 0 && from < s.size() && a[2].i > 0)
                         s.remove(qsizetype(from), qsizetype(std::min<qint64>(a[2].i, s.size() - from)));
                     return Value();
                 }});
    t.push_back({"Insert", "V:S&SI", [](Machine& m, Value* a, int) {
                     QString& s = a[1].s;
                     m.checkLength(s.size() + a[0].s.size());
                     s.insert(qsizetype(std::clamp<qint64>(a[2].i - 1, 0, s.size())), a[0].s);
                     m.produced(s.size());
                     return Value();
                 }});
    t.push_back({"SetLength", "V:&SI", [](Machine& m, Value* a, int) {
                     setStringLength(m, a[0], a[1].i);
                     return Value();
                 }});
    t.push_back({"SetLength", "V:&AI", [](Machine& m, Value* a, int) {
                     setArrayLength(m, a[0], a[1].i);
                     return Value();
                 }});
    t.push_back({"Trim", "S:S", [](Machine&, Value* a, int) { return str(trimmed(a[0].s, true, true)); }});
    t.push_back({"TrimLeft", "S:S", [](Machine&, Value* a, int) { return str(trimmed(a[0].s, true, false)); }});
    t.push_back({"TrimRight", "S:S", [](Machine&, Value* a, int) { return str(trimmed(a[0].s, false, true)); }});
    for (const char* name : {"UpperCase", "WideUpperCase", "AnsiUpperCase"})
        t.push_back({name, "S:S", [](Machine&, Value* a, int) { return str(asciiUpper(a[0].s)); }});
    for (const char* name : {"LowerCase", "WideLowerCase", "AnsiLowerCase"})
        t.push_back({name, "S:S", [](Machine&, Value* a, int) { return str(asciiLower(a[0].s)); }});
    t.push_back({"UpCase", "C:C", [](Machine&, Value* a, int) { return num(asciiUpper(charText(a[0].i))[0].unicode()); }});
    t.push_back({"StringReplace", "S:SSSL", [](Machine& m, Value* a, int) {
                     return str(replaced(m, a[0].s, a[1].s, a[2].s, a[3].a.get()));
                 }});
    t.push_back({"StringOfChar", "S:CI", [](Machine& m, Value* a, int) {
                     const qsizetype n = qsizetype(std::clamp<qint64>(a[1].i, 0, m.limits.maxStringLength + 1));
                     m.checkLength(n);
                     m.produced(n);
                     return str(QString(n, QChar(char16_t(a[0].i))));
                 }});
    t.push_back({"ReverseString", "S:S", [](Machine&, Value* a, int) {
                     QString s = a[0].s;
                     std::reverse(s.begin(), s.end());
                     // Keep each surrogate pair in its order.
                     for (qsizetype i = 0; i + 1 < s.size(); ++i) {
                         if (s[i].isLowSurrogate() && s[i + 1].isHighSurrogate()) {
                             std::swap(s[i], s[i + 1]);
                             ++i;
                         }
                     }
                     return str(s);
                 }});
    t.push_back({"LastDelimiter", "I:SS", [](Machine&, Value* a, int) {
                     for (qsizetype i = a[1].s.size() - 1; i >= 0; --i) {
                         if (a[0].s.contains(a[1].s[i]))
                             return num(i + 1);
                     }
                     return num(0);
                 }});
    for (const char* name : {"SameText", "WideSameText", "AnsiSameText"})
        t.push_back({name, "B:SS", [](Machine&, Value* a, int) { return flag(compareText(a[0].s, a[1].s) == 0); }});
    for (const char* name : {"CompareText", "WideCompareText", "AnsiCompareText"})
        t.push_back({name, "I:SS", [](Machine&, Value* a, int) { return num(compareText(a[0].s, a[1].s)); }});
    t.push_back({"CompareStr", "I:SS", [](Machine&, Value* a, int) { return num(QString::compare(a[0].s, a[1].s)); }});
    t.push_back({"Chr", "C:I", [](Machine&, Value* a, int) {
                     if (a[0].i < 0 || a[0].i > 0xFFFF)
                         fail(scriptTr("Chr 的参数超出范围：%1").arg(a[0].i));
                     return num(a[0].i);
                 }});
    t.push_back({"Ord", "I:O", [](Machine&, Value* a, int) { return num(a[0].i); }});
    t.push_back({"High", "I:S", [](Machine&, Value* a, int) { return num(a[0].s.size()); }});
    t.push_back({"High", "I:A", [](Machine&, Value* a, int) { return num(a[0].arrayLength() - 1); }});
    t.push_back({"Low", "I:S", [](Machine&, Value*, int) { return num(1); }});
    t.push_back({"Low", "I:A", [](Machine&, Value*, int) { return num(0); }});
    t.push_back({"Format", "S:SL", [](Machine& m, Value* a, int) {
                     return str(Formatter(m, a[0].s, a[1].a ? *a[1].a : Array{}).run());
                 }});
}

void addFileNameNatives(NativeTable& t)
{
    for (const char* name : {"ExtractFileExt", "WideExtractFileExt"}) {
        t.push_back({name, "S:S", [](Machine&, Value* a, int) {
                         const qsizetype dot = extensionDot(a[0].s);
                         return str(dot < 0 ? QString() : a[0].s.mid(dot));
                     }});
    }
    for (const char* name : {"ExtractFileName", "WideExtractFileName"})
        t.push_back({name, "S:S", [](Machine&, Value* a, int) { return str(fileName(a[0].s)); }});
    for (const char* name : {"ExtractFilePath", "WideExtractFilePath"})
        t.push_back({name, "S:S", [](Machine&, Value* a, int) { return str(a[0].s.left(lastSeparator(a[0].s) + 1)); }});
    for (const char* name : {"ExtractFileDir", "WideExtractFileDir"})
        t.push_back({name, "S:S", [](Machine&, Value* a, int) { return str(a[0].s.left(std::max<qsizetype>(lastSeparator(a[0].s), 0))); }});
    for (const char* name : {"ChangeFileExt", "WideChangeFileExt"}) {
        t.push_back({name, "S:SS", [](Machine&, Value* a, int) {
                         const qsizetype dot = extensionDot(a[0].s);
                         return str((dot < 0 ? a[0].s : a[0].s.left(dot)) + a[1].s);
                     }});
    }
    for (const char* name : {"WideExtractBaseName", "ExtractBaseName"})
        t.push_back({name, "S:S", [](Machine&, Value* a, int) { return str(baseName(a[0].s)); }});
}

void addNumberNatives(NativeTable& t)
{
    t.push_back({"IntToStr", "S:I", [](Machine&, Value* a, int) { return str(QString::number(a[0].i)); }});
    t.push_back({"StrToInt", "I:S", [](Machine&, Value* a, int) {
                     const auto v = parseInteger(a[0].s);
                     if (!v)
                         fail(scriptTr("“%1”不是有效的整数").arg(a[0].s.left(64)));
                     return num(*v);
                 }});
    t.push_back({"StrToIntDef", "I:SI", [](Machine&, Value* a, int) { return num(parseInteger(a[0].s).value_or(a[1].i)); }});
    t.push_back({"IntToHex", "S:I|I", [](Machine&, Value* a, int n) { return str(hexText(a[0].i, n > 1 ? a[1].i : 0)); }});
    t.push_back({"FloatToStr", "S:D", [](Machine&, Value* a, int) { return str(floatText(a[0].d)); }});
    t.push_back({"StrToFloat", "D:S", [](Machine&, Value* a, int) {
                     const auto v = parseReal(a[0].s);
                     if (!v)
                         fail(scriptTr("“%1”不是有效的数").arg(a[0].s.left(64)));
                     return real(*v);
                 }});
    t.push_back({"StrToFloatDef", "D:SD", [](Machine&, Value* a, int) { return real(parseReal(a[0].s).value_or(a[1].d)); }});
    t.push_back({"BoolToStr", "S:B|B", [](Machine&, Value* a, int n) {
                     if (n > 1 && a[1].i)
                         return str(a[0].i ? QStringLiteral("True") : QStringLiteral("False"));
                     return str(a[0].i ? QStringLiteral("-1") : QStringLiteral("0"));
                 }});
    t.push_back({"Inc", "V:&I|I", [](Machine&, Value* a, int n) {
                     a[0].i = qint64(quint64(a[0].i) + quint64(n > 1 ? a[1].i : 1));
                     return Value();
                 }});
    t.push_back({"Dec", "V:&I|I", [](Machine&, Value* a, int n) {
                     a[0].i = qint64(quint64(a[0].i) - quint64(n > 1 ? a[1].i : 1));
                     return Value();
                 }});
    t.push_back({"Abs", "I:I", [](Machine&, Value* a, int) { return num(a[0].i < 0 ? qint64(0 - quint64(a[0].i)) : a[0].i); }});
    t.push_back({"Abs", "D:D", [](Machine&, Value* a, int) { return real(std::fabs(a[0].d)); }});
    t.push_back({"Min", "I:II", [](Machine&, Value* a, int) { return num(std::min(a[0].i, a[1].i)); }});
    t.push_back({"Min", "D:DD", [](Machine&, Value* a, int) { return real(std::min(a[0].d, a[1].d)); }});
    t.push_back({"Max", "I:II", [](Machine&, Value* a, int) { return num(std::max(a[0].i, a[1].i)); }});
    t.push_back({"Max", "D:DD", [](Machine&, Value* a, int) { return real(std::max(a[0].d, a[1].d)); }});
    t.push_back({"Odd", "B:I", [](Machine&, Value* a, int) { return flag(a[0].i & 1); }});
    t.push_back({"Trunc", "I:D", [](Machine&, Value* a, int) { return num(checkedTrunc(a[0].d)); }});
    // Delphi rounds halves to the even neighbour, as the processor does by default.
    t.push_back({"Round", "I:D", [](Machine&, Value* a, int) { return num(checkedTrunc(std::nearbyint(a[0].d))); }});
    t.push_back({"Sqrt", "D:D", [](Machine&, Value* a, int) {
                     if (a[0].d < 0)
                         fail(scriptTr("Sqrt 的参数不能为负数"));
                     return real(std::sqrt(a[0].d));
                 }});
    t.push_back({"Power", "D:DD", [](Machine&, Value* a, int) { return real(std::pow(a[0].d, a[1].d)); }});
    t.push_back({"Random", "I:I", [](Machine& m, Value* a, int) {
                     if (a[0].i <= 0)
                         return num(0);
                     return num(std::uniform_int_distribution<qint64>(0, a[0].i - 1)(m.random));
                 }});
    t.push_back({"Random", "D:", [](Machine& m, Value*, int) { return real(std::uniform_real_distribution<double>(0, 1)(m.random)); }});
    t.push_back({"Randomize", "V:", [](Machine& m, Value*, int) {
                     m.random.seed(QRandomGenerator::global()->generate64());
                     return Value();
                 }});
}

void addDateNatives(NativeTable& t)
{
    t.push_back({"Now", "D:", [](Machine&, Value*, int) { return real(toDateTime(QDateTime::currentDateTime())); }});
    t.push_back({"Date", "D:", [](Machine&, Value*, int) { return real(std::floor(toDateTime(QDateTime::currentDateTime()))); }});
    t.push_back({"Time", "D:", [](Machine&, Value*, int) {
                     const double now = toDateTime(QDateTime::currentDateTime());
                     return real(now - std::floor(now));
                 }});
    t.push_back({"FormatDateTime", "S:SD", [](Machine&, Value* a, int) { return str(DateFormatter(a[0].s, dateTimeOf(a[1].d)).run()); }});
    t.push_back({"DateToStr", "S:D", [](Machine&, Value* a, int) { return str(dateTimeOf(a[0].d).toString(QStringLiteral("yyyy-MM-dd"))); }});
    t.push_back({"TimeToStr", "S:D", [](Machine&, Value* a, int) { return str(dateTimeOf(a[0].d).toString(QStringLiteral("HH:mm:ss"))); }});
    t.push_back({"DateTimeToStr", "S:D", [](Machine&, Value* a, int) {
                     return str(dateTimeOf(a[0].d).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
                 }});
    t.push_back({"EncodeDate", "D:III", [](Machine&, Value* a, int) { return real(encodeDate(a[0].i, a[1].i, a[2].i)); }});
    t.push_back({"EncodeTime", "D:IIII", [](Machine&, Value* a, int) { return real(encodeTime(a[0].i, a[1].i, a[2].i, a[3].i)); }});
    t.push_back({"DecodeDate", "V:D&I&I&I", [](Machine&, Value* a, int) {
                     const QDate d = dateTimeOf(a[0].d).date();
                     a[1].i = d.year();
                     a[2].i = d.month();
                     a[3].i = d.day();
                     return Value();
                 }});
    t.push_back({"DecodeTime", "V:D&I&I&I&I", [](Machine&, Value* a, int) {
                     const QTime time = dateTimeOf(a[0].d).time();
                     a[1].i = time.hour();
                     a[2].i = time.minute();
                     a[3].i = time.second();
                     a[4].i = time.msec();
                     return Value();
                 }});
    const std::pair<const char*, int (*)(const QDateTime&)> parts[] = {
        {"YearOf", [](const QDateTime& d) { return d.date().year(); }},
        {"MonthOf", [](const QDateTime& d) { return d.date().month(); }},
        {"DayOf", [](const QDateTime& d) { return d.date().day(); }},
        {"HourOf", [](const QDateTime& d) { return d.time().hour(); }},
        {"MinuteOf", [](const QDateTime& d) { return d.time().minute(); }},
        {"SecondOf", [](const QDateTime& d) { return d.time().second(); }},
        {"DayOfWeek", [](const QDateTime& d) { return d.date().dayOfWeek() % 7 + 1; }},  // Sunday is 1
    };
    for (const auto& entry : parts) {
        const auto part = entry.second;
        t.push_back({entry.first, "I:D", [part](Machine&, Value* a, int) { return num(part(dateTimeOf(a[0].d))); }});
    }
}

}  // namespace

double toDateTime(const QDateTime& time)
{
    const double days = double(kDateBase.daysTo(time.date()));
    return days + time.time().msecsSinceStartOfDay() / kMsPerDay;
}

std::optional<QDateTime> fromDateTime(double value)
{
    // Years 1 to 9999: QDate would take more, but Delphi stops there and so do names.
    constexpr double kFirst = -693593;  // 0001-01-01
    constexpr double kLast = 2958466;   // 10000-01-01
    if (!std::isfinite(value) || value < kFirst || value >= kLast)
        return std::nullopt;
    double day = std::floor(value);
    qint64 ms = std::llround((value - day) * kMsPerDay);
    if (ms >= qint64(kMsPerDay)) {
        day += 1;
        ms = 0;
    }
    return QDateTime(kDateBase.addDays(qint64(day)), QTime::fromMSecsSinceStartOfDay(int(ms)));
}

const NativeTable& languageNatives()
{
    static const NativeTable table = [] {
        NativeTable t;
        addStringNatives(t);
        addFileNameNatives(t);
        addNumberNatives(t);
        addDateNatives(t);
        return t;
    }();
    return table;
}

}  // namespace qp::pascal
