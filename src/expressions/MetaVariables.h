// The meta-variable expander: an expression text such as "<NAME>_<SAMPLENO>" becomes plain
// text for one row of the rename list. A command compiles its expression once per run into
// a MetaExpression and then expands it for many rows.
//
// Tags are "<", capital letters, digits or a dot, ">", matched without regard to ASCII case.
// The metadata field tags ("<M.TITLE>", a family letter, a dot and a field name) come after
// every other tag in the search order.
// Each pass over the working text expands the first tag found in the fixed search order,
// computing its value once and replacing every occurrence; there are as many passes as the
// text has bracket pairs, and the brackets left over at the end are removed.
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "expressions/FieldTags.h"

namespace qp {

class Session;

struct ExpressionOptions {
    // Month and weekday names and the long date; tests pin a locale.
    QLocale locale = QLocale::system();
    // The "current" time of the <Y> … <TIME> tags; read each time a row needs it.
    std::function<QDateTime()> clock;
    // Seed of the generator behind "<R>"; without one, a fresh seed per compiled expression.
    std::optional<std::uint64_t> seed;
    // Rebuild and rescan the text after every pass even where a pass cannot have made or
    // broken a tag; slower, with the same results (tests compare the two).
    bool stepByStep = false;
    // How field tags ("<M.TITLE>") read and stand in for fields a file lacks.
    FieldOptions fields;
};

class MetaExpression {
public:
    explicit MetaExpression(const QString& text, ExpressionOptions options = {});
    ~MetaExpression();
    MetaExpression(MetaExpression&&) noexcept;
    MetaExpression& operator=(MetaExpression&&) noexcept;

    // The text for row `row` of the session's rename list. Never fails: unknown tags lose
    // their brackets and values that cannot be had (a missing file, a row beyond the list)
    // are empty. Tag parameters are read from the session's settings at the first use and
    // kept for the life of this object.
    QString expand(const Session& session, qsizetype row) const;
    // The same, telling which field tags had no value.
    QString expand(const Session& session, qsizetype row, ExpansionReport& report) const;

    // True when no row can change the result (no known tag in the text).
    bool isConstant() const;
    // The families of the field tags in the text ("MD"), in the order they first appear.
    QString fieldFamilies() const;
    const QString& text() const;

private:
    QString expandRow(const Session& session, qsizetype row, ExpansionReport* report) const;

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

// One-off expansion (compiles, expands, forgets).
QString expandMetaVariables(const Session& session, const QString& text, qsizetype row,
                            const ExpressionOptions& options = {});

// Fills user list n (0-9) with the new-name column (the new name without extension) of
// every row, in row order, replacing what it held. `refreshPreview`, when given, is called
// first if the settings ask for automatic preview, so that the column is current.
void defineUserList(Session& session, int n, const std::function<void()>& refreshPreview = {});

}  // namespace qp
