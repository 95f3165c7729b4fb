// Names from file metadata: one family of commands per field family of the metadata layer
// ("M" music tags, "D" photo data, "C" media information …). Each command expands a
// template of field tags ("<M.TRACK> <M.ARTIST> - <M.TITLE>") for a row and puts the result
// in place of the name, before or after it, or at a position; a row whose file lacks a field
// of the template is left unchanged, or the field is left empty or replaced by a fallback
// text, as the command says.
//
// Sub-codes: the family letter, group 1 and the placement: x101 the whole name, x102 before
// the name, x103 after it, x104 at a position. Keys (with the family letter first, "M1_…"):
// Template, InsertPos, InsertPosFromRight, Missing (0 leave the row, 1 empty, 2 fallback),
// MissingText; the photo family adds DateDigitized, DateXmp and DateFileTime, the sources of
// "<D.DATETAKEN>" after EXIF DateTimeOriginal.
#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

namespace qp {

class CommandRegistry;
class Session;

// The sub-codes of one family's page, in page order.
QStringList metadataCommandCodes(QChar family);
// "CMDComment" of a sub-code; empty for a code of no field family.
QString metadataCommandComment(const QString& code);

// Registers every field family's commands, and the preparer that reads the fields a run
// needs before it starts (with progress the user can stop).
void registerMetadataCommands(CommandRegistry& registry);

// The field families whose tags the stored commands use ("MD"): every value of their
// sections is looked at, so tags in any command's expression count.
QString fieldFamiliesUsedBy(const Session& session, const QStringList& sections);

// Reads the fields of `families` for the first `rows` ticked rows that are not at hand yet,
// showing progress; false when the user stopped it.
bool prefetchFields(Session& session, const QString& families, qsizetype rows);

}  // namespace qp
