// Readable failure output for QString values in GoogleTest assertions.
#pragma once

#include <QString>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }
