// The expander's side of the metadata field tags ("<M.TITLE>", "<D.DATETAKEN>" …): the
// session's field cache, what a command may choose about the fields it reads, and how a
// field's value becomes text under its tag's parameter.
#pragma once

#include <QLocale>
#include <QString>
#include <optional>
#include <vector>

#include "metadata/FieldCache.h"
#include "metadata/FieldCatalogue.h"

namespace qp {

class Session;
class SettingsStore;
struct FileEntry;

// What a command may choose about the fields its expressions read.
struct FieldOptions {
    // Where "<D.DATETAKEN>" looks after EXIF DateTimeOriginal, in this order.
    bool dateFromDigitized = true;
    bool dateFromXmp = true;
    bool dateFromFileTime = false;
    // The text a field that the file lacks expands to; none: empty.
    std::optional<QString> missingText;
};

// Filled by an expansion that met field tags.
struct ExpansionReport {
    int missingFields = 0;    // field tags whose file had no such field
    bool unreadable = false;  // a file that could not be read for a family (gone, empty,
                              // broken or of another kind)
};

// The session's field cache, made on first use.
metadata::FieldCache& fieldCacheOf(const Session& session);
// The setting "非 Unicode 标签编码".
metadata::LegacyEncoding legacyEncodingOf(const SettingsStore& settings);

// What to ask the cache for a family's fields under the present settings: the legacy text
// setting, and the keys that the family's key tags ("<D.KEY>", "<C.INFO>") name.
metadata::ReadRequest fieldReadRequest(const SettingsStore& settings, QChar family);

// Whether `name` (upper case, without brackets: "M.TITLE") is a field tag: a family letter
// the program has, a dot and a name of capital letters and digits.
bool isFieldTagName(QStringView name);

// One field tag of a compiled expression.
struct FieldTag {
    QChar family;
    QString name;                                // "TITLE"
    const metadata::FieldInfo* info = nullptr;   // null for a field the family does not list
};

// How a compiled expression reads its field tags.
struct FieldReading {
    const FieldOptions& options;
    const QLocale& locale;
    metadata::LegacyEncoding legacy;
};

// The text of a field tag for a row, under the tag's parameter; nullopt when the file has
// no such field (or cannot be read; `report` then says so).
std::optional<QString> fieldTagValue(const Session& session, const FileEntry& row, const FieldTag& tag,
                                     const QString& parameter, const FieldReading& reading, ExpansionReport* report);

// A field's value under a parameter of its kind, as the tag expands it; a number the
// parameter lacks is taken from `fallback` (the tag's default).
QString formatField(const metadata::FieldValue& value, metadata::ParameterKind kind, const QString& parameter,
                    const QString& fallback, const QLocale& locale);

// One line of a file's field listing (`quillet fields`, the field picker of a page).
struct FieldLine {
    QString tag;    // "<M.TITLE>"; a library key as "<D.KEY>(Exif.Photo.LensSerialNumber)"
    QString value;  // the natural text of the value
};
// The fields of one family as listed: the family's own fields in catalogue order (with
// "<D.DATETAKEN>" from EXIF and XMP), then the reader's others, then the library keys.
std::vector<FieldLine> fieldLines(QChar family, const metadata::FamilyFields& fields);

}  // namespace qp
