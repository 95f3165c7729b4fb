// One value read from a file's metadata, typed as the file holds it: text, a number, a
// fraction (an exposure of 1/250 s) or a moment (a date, perhaps with time, sub-seconds
// and the offset from UTC). Tags format it through their parameters; text() is its natural
// form, as `quillet fields` prints it.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QTime>
#include <optional>

namespace qp::metadata {

// A date and time as a file recorded it: the wall-clock time where it was taken, not turned
// into this computer's time zone.
struct Moment {
    QDate date;
    QTime time;                        // invalid when the file gives a date only
    bool subseconds = false;           // time.msec() came from the file
    std::optional<int> offsetMinutes;  // east of UTC, where the file says

    bool isValid() const { return date.isValid(); }
    // "2021-05-06T07:08:09.120+08:00", with only the parts the file gave.
    QString isoText() const;
    // "+08:00" (or "+0800" without `colon`); empty when the file gave no offset.
    QString offsetText(bool colon) const;
    bool operator==(const Moment&) const = default;
};

// "2021:05:06 07:08:09", "2021-05-06T07:08:09+08:00", "2021-05-06", "2021", "UTC 2021-05-06
// 07:08:09" and the like; an invalid Moment when the text holds no date (EXIF writes
// "0000:00:00 00:00:00" for none).
Moment parseMoment(QStringView text);

class FieldValue {
public:
    enum class Kind { Text, Number, Fraction, Moment };

    FieldValue() = default;
    static FieldValue text(QString value);
    static FieldValue list(QStringList values);  // several texts (keywords, artists)
    static FieldValue number(double value);
    static FieldValue fraction(qint64 numerator, qint64 denominator);
    static FieldValue moment(Moment value);

    Kind kind() const { return m_kind; }
    // The natural text: numbers without needless decimals, fractions as "1/250" (or as a
    // decimal number when the division comes out whole or above one), moments in ISO 8601,
    // lists joined with "; ".
    QString text() const;
    const QStringList& items() const { return m_items; }
    double number() const { return m_number; }
    qint64 numerator() const { return m_numerator; }
    qint64 denominator() const { return m_denominator; }
    const Moment& moment() const { return m_moment; }
    // Empty text, an empty list or an invalid moment: the file has the field but says nothing.
    bool isEmpty() const;

private:
    Kind m_kind = Kind::Text;
    QStringList m_items;  // the text is its only item
    double m_number = 0;
    qint64 m_numerator = 0;
    qint64 m_denominator = 1;
    Moment m_moment;
};

// A number as the program writes it in names: no exponent, at most `decimals` decimals,
// without trailing zeros.
QString numberText(double value, int decimals = 6);

}  // namespace qp::metadata
