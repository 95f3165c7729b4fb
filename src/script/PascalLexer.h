// The tokens of a Pascal script. Identifiers and keywords ignore letter case; comments are
// "//" to the end of the line, "{ … }" and "(* … *)" (compiler directives "{$…}" too).
// String literals are '…' with '' for a quote, joined with character codes such as #13 or
// #$0A written next to them ('a'#9'b').
#pragma once

#include <QString>
#include <vector>

#include "script/PascalDiagnostic.h"

namespace qp::pascal {

enum class Tok {
    End,
    Identifier,  // `text` holds the case-folded name, `spelling` the name as written
    Keyword,     // `text` holds the keyword in lower case
    Integer,
    Real,
    String,      // `text` holds the value
    Symbol,      // `text` holds the symbol: + - * / = <> < > <= >= := ( ) [ ] , ; : . .. ^ @
};

struct Token {
    Tok kind = Tok::End;
    QString text;
    QString spelling;
    qint64 integer = 0;
    double real = 0;
    Position at;

    bool is(Tok k, QStringView t) const { return kind == k && text == t; }
    bool isSymbol(QStringView t) const { return is(Tok::Symbol, t); }
    bool isKeyword(QStringView t) const { return is(Tok::Keyword, t); }
};

// The whole script as tokens, ending with one Tok::End; throws ScriptError on text that is
// no token (an unclosed comment or string, a stray character, a number too large).
std::vector<Token> tokenize(const QString& source);

}  // namespace qp::pascal
