// Where in a Pascal script something went wrong, and what.
#pragma once

#include <QString>

namespace qp::pascal {

struct Position {
    int line = 0;    // from 1
    int column = 0;  // from 1, in UTF-16 units
};

// A compile or run-time error of a script, in the program's own words.
struct ScriptError {
    Position at;
    QString message;
};

// An error raised inside a built-in, which does not know where it was called; the call
// adds its position.
struct NativeError {
    QString message;
};

// Texts of the interpreter go through the translation context "PascalScript".
QString scriptTr(const char* text);

}  // namespace qp::pascal
