// A Perl-compatible "replace every match" for the commands that take a regular expression
// (E501 on the extension, A1 on the name, the script built-ins). The pattern is compiled
// once, JIT-compiled where the library can, and then applied to many subjects with one
// reused match block and output buffer.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>

namespace qp {

class RegexSubstitution {
public:
    // Texts are Unicode: "." is a character, not a code unit, and "\w", "\d" take letters and
    // digits of every script, as Perl does for Unicode strings.
    RegexSubstitution(const QString& pattern, const QString& replacement, bool caseSensitive = true);
    ~RegexSubstitution();
    RegexSubstitution(const RegexSubstitution&) = delete;
    RegexSubstitution& operator=(const RegexSubstitution&) = delete;

    // False when the engine rejected the pattern; compileError() and compileErrorOffset()
    // then say why and where (0-based, in code units).
    bool compiled() const { return m_engine != nullptr; }
    const QString& compileError() const { return m_compileError; }
    qsizetype compileErrorOffset() const { return m_compileErrorOffset; }

    enum class Outcome {
        Done,              // `result` holds the subject with every match replaced (or unchanged)
        BadReplacement,    // the replacement text is wrong: it fails for every subject alike
        FailedForSubject,  // this subject only (a limit reached, text that is not valid UTF-16)
    };
    // Replaces every match; Perl's replacement rules: "$1", "${name}", "\U…\E" case changes,
    // "\n"-style escapes; a group that did not take part, or does not exist, stands for
    // nothing. lastError() has the engine's text after a failure.
    Outcome replaceAll(const QString& subject, QString& result);
    const QString& lastError() const { return m_lastError; }

    // A result longer than this many code units fails for its subject instead of being made
    // (scripts choose their own patterns and replacements).
    void setLengthLimit(qsizetype units) { m_lengthLimit = units; }

    // The groups 1, 2, … of the first match (a group that did not take part is empty); false
    // when nothing matches or matching failed (lastError() then says why).
    bool firstMatchGroups(const QString& subject, QStringList& groups);

private:
    struct Engine;
    std::unique_ptr<Engine> m_engine;  // null when the pattern did not compile
    QString m_replacement;
    QString m_compileError;
    qsizetype m_compileErrorOffset = 0;
    qsizetype m_lengthLimit = -1;
    QString m_lastError;
};

}  // namespace qp
