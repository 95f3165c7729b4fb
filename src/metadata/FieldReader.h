// What every metadata reader offers: given a file's bytes and what its content was found to
// be, the fields of its family. One reader per library; a family may have several readers
// (each serving other kinds of file), tried in order.
#pragma once

#include <QChar>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include "metadata/FieldValue.h"
#include "metadata/LegacyText.h"

namespace qp::metadata {

class ByteSource;

// What a file's content was found to be (by libmagic): "audio/mpeg", "image/jpeg" …
struct ContentType {
    QString mime;  // empty for an empty file or one that cannot be read
};

struct ReadRequest {
    LegacyEncoding legacy = LegacyEncoding::Automatic;
    // Library keys to keep besides the family's fields ("Exif.Photo.LensSerialNumber",
    // "Video;Width"); with `everyKey`, every key the library gives (for listings).
    QStringList keys;
    bool everyKey = false;
};

enum class ReadStatus {
    Ok,
    NotThisKind,  // no reader of the family serves this kind of file (or the file is empty)
    Broken,       // a reader serves the kind, but the file could not be parsed
    Missing,      // the file is gone or cannot be opened
};

// The fields of one family read from one file.
struct FamilyFields {
    ReadStatus status = ReadStatus::NotThisKind;
    QHash<QString, FieldValue> fields;  // by tag name ("TITLE", "MUSICBRAINZALBUMID")
    QHash<QString, QString> keys;       // library key -> value, as the request asked
    QStringList order;                  // field names in the order the reader found them
    QSet<QString> keysAsked;            // the keys the request asked for, found or not
    bool everyKey = false;

    void set(const QString& name, FieldValue value)
    {
        if (value.isEmpty())
            return;
        if (!fields.contains(name))
            order.append(name);
        fields.insert(name, std::move(value));
    }
    void setText(const QString& name, const QString& text) { set(name, FieldValue::text(text.trimmed())); }
    const FieldValue* find(const QString& name) const
    {
        const auto it = fields.constFind(name);
        return it == fields.constEnd() ? nullptr : &*it;
    }
};

class FieldReader {
public:
    virtual ~FieldReader() = default;
    virtual QChar family() const = 0;
    // Whether this reader serves files of this content.
    virtual bool accepts(const ContentType& type) const = 0;
    // Reads the family's fields; status Broken when the file cannot be parsed. Never throws.
    virtual FamilyFields read(const ByteSource& source, const ContentType& type, const ReadRequest& request) = 0;
};

}  // namespace qp::metadata
