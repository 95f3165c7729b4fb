#include "commands/RegexSubstitution.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <QCoreApplication>
#include <QList>

namespace qp {

struct RegexSubstitution::Engine {
    struct CodeFree {
        void operator()(pcre2_code* code) const { pcre2_code_free(code); }
    };
    struct MatchFree {
        void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
    };
    std::unique_ptr<pcre2_code, CodeFree> code;
    std::unique_ptr<pcre2_match_data, MatchFree> match;
    QList<QChar> output;
};

namespace {

QString errorText(int error)
{
    PCRE2_UCHAR buffer[256];
    const int length = pcre2_get_error_message(error, buffer, sizeof buffer / sizeof buffer[0]);
    return length > 0 ? QString::fromUtf16(reinterpret_cast<const char16_t*>(buffer), length) : QString::number(error);
}

PCRE2_SPTR units(const QString& text) { return reinterpret_cast<PCRE2_SPTR>(text.utf16()); }

}  // namespace

RegexSubstitution::RegexSubstitution(const QString& pattern, const QString& replacement, bool caseSensitive)
    : m_replacement(replacement)
{
    int error = 0;
    PCRE2_SIZE offset = 0;
    const uint32_t options = PCRE2_UTF | PCRE2_UCP | (caseSensitive ? 0 : PCRE2_CASELESS);
    pcre2_code* code = pcre2_compile(units(pattern), PCRE2_SIZE(pattern.size()), options, &error, &offset, nullptr);
    if (!code) {
        m_compileError = errorText(error);
        m_compileErrorOffset = qsizetype(offset);
        return;
    }
    m_engine = std::make_unique<Engine>();
    m_engine->code.reset(code);
    // Without JIT (a platform the library has no compiler for) matching is only slower.
    pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
    m_engine->match.reset(pcre2_match_data_create_from_pattern(code, nullptr));
    m_engine->output.resize(64);
}

RegexSubstitution::~RegexSubstitution() = default;

RegexSubstitution::Outcome RegexSubstitution::replaceAll(const QString& subject, QString& result)
{
    if (!m_engine) {
        m_lastError = m_compileError;
        return Outcome::BadReplacement;
    }
    constexpr uint32_t options = PCRE2_SUBSTITUTE_GLOBAL | PCRE2_SUBSTITUTE_EXTENDED | PCRE2_SUBSTITUTE_UNSET_EMPTY
        | PCRE2_SUBSTITUTE_UNKNOWN_UNSET | PCRE2_SUBSTITUTE_OVERFLOW_LENGTH;
    QList<QChar>& output = m_engine->output;
    for (int attempt = 0; attempt < 2; ++attempt) {
        PCRE2_SIZE length = PCRE2_SIZE(output.size());
        const int rc = pcre2_substitute(m_engine->code.get(), units(subject), PCRE2_SIZE(subject.size()), 0, options,
                                        m_engine->match.get(), nullptr, units(m_replacement),
                                        PCRE2_SIZE(m_replacement.size()),
                                        reinterpret_cast<PCRE2_UCHAR*>(output.data()), &length);
        if (rc >= 0) {
            result = rc == 0 ? subject : QString(output.constData(), qsizetype(length));
            return Outcome::Done;
        }
        if (rc == PCRE2_ERROR_NOMEMORY && m_lengthLimit >= 0 && length > PCRE2_SIZE(m_lengthLimit)) {
            m_lastError = QCoreApplication::translate("RegexSubstitution", "替换结果超过 %1 个字符").arg(m_lengthLimit);
            return Outcome::FailedForSubject;
        }
        if (rc != PCRE2_ERROR_NOMEMORY) {
            m_lastError = errorText(rc);
            const bool badReplacement = rc == PCRE2_ERROR_BADREPLACEMENT || rc == PCRE2_ERROR_BADREPESCAPE
                || rc == PCRE2_ERROR_REPMISSINGBRACE || rc == PCRE2_ERROR_BADSUBSTITUTION;
            return badReplacement ? Outcome::BadReplacement : Outcome::FailedForSubject;
        }
        output.resize(qsizetype(length));  // the length it needs, then once more
    }
    m_lastError = errorText(PCRE2_ERROR_NOMEMORY);
    return Outcome::FailedForSubject;
}

bool RegexSubstitution::firstMatchGroups(const QString& subject, QStringList& groups)
{
    groups.clear();
    if (!m_engine) {
        m_lastError = m_compileError;
        return false;
    }
    pcre2_match_data* match = m_engine->match.get();
    const int rc = pcre2_match(m_engine->code.get(), units(subject), PCRE2_SIZE(subject.size()), 0, 0, match, nullptr);
    if (rc < 0) {
        m_lastError = rc == PCRE2_ERROR_NOMATCH ? QString() : errorText(rc);
        return false;
    }
    uint32_t count = 0;
    pcre2_pattern_info(m_engine->code.get(), PCRE2_INFO_CAPTURECOUNT, &count);
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(match);
    for (uint32_t i = 1; i <= count; ++i) {
        const PCRE2_SIZE start = offsets[2 * i];
        const bool taken = int(i) < rc && start != PCRE2_UNSET;
        groups.append(taken ? subject.mid(qsizetype(start), qsizetype(offsets[2 * i + 1] - start)) : QString());
    }
    return true;
}

}  // namespace qp
