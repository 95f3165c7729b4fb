// Types and values of the Pascal-script interpreter.
//
// The language is statically typed: every expression's type is known when the script is
// compiled, so values carry no tag. Integer, Int64 and the other whole-number types are one
// 64-bit type; Double, Real and TDateTime are one floating type; a String is a QString
// (1-based UTF-16 positions, as everywhere in the program) and a Char one UTF-16 unit.
// Dynamic arrays ("array of String") are shared by reference, as in Delphi.
#pragma once

#include <QString>
#include <memory>
#include <vector>

namespace qp::pascal {

enum class Kind : unsigned char { Void, Integer, Double, Boolean, Char, String, Array, List };

struct Type {
    Kind kind = Kind::Void;
    Kind element = Kind::Void;  // of an Array; of a List when all its items agree

    friend bool operator==(const Type&, const Type&) = default;
    bool isNumeric() const { return kind == Kind::Integer || kind == Kind::Double; }
    bool isOrdinal() const { return kind == Kind::Integer || kind == Kind::Char || kind == Kind::Boolean; }
    bool isText() const { return kind == Kind::String || kind == Kind::Char; }
};

inline constexpr Type kVoid{Kind::Void};
inline constexpr Type kInteger{Kind::Integer};
inline constexpr Type kDouble{Kind::Double};
inline constexpr Type kBoolean{Kind::Boolean};
inline constexpr Type kChar{Kind::Char};
inline constexpr Type kString{Kind::String};
inline constexpr Type kStringArray{Kind::Array, Kind::String};

inline Type arrayOf(Kind element) { return Type{Kind::Array, element}; }

// "Integer", "array of String" …, as messages name them.
QString typeName(const Type& type);

struct Value;
using Array = std::vector<Value>;

// One value of any type; which member counts follows from the static type: `i` for Integer,
// Boolean (0/1) and Char (the code unit), `d` for Double, `s` for String, `a` for Array and
// List (null: an empty array). A default Value is the zero of every type. Only the items of
// a List carry their type in `tag`, for the built-ins that take mixed lists (Format).
struct Value {
    union {
        qint64 i = 0;
        double d;
    };
    Kind tag = Kind::Void;
    QString s;
    std::shared_ptr<Array> a;

    static Value integer(qint64 v)
    {
        Value x;
        x.i = v;
        return x;
    }
    static Value real(double v)
    {
        Value x;
        x.d = v;
        return x;
    }
    static Value boolean(bool v) { return integer(v ? 1 : 0); }
    static Value character(char16_t c) { return integer(c); }
    static Value string(QString v)
    {
        Value x;
        x.s = std::move(v);
        return x;
    }
    static Value array(std::shared_ptr<Array> v)
    {
        Value x;
        x.a = std::move(v);
        return x;
    }
    qsizetype arrayLength() const { return a ? qsizetype(a->size()) : 0; }
};

// A Char as a one-character String.
inline QString charText(qint64 code) { return QString(QChar(char16_t(code))); }

}  // namespace qp::pascal
