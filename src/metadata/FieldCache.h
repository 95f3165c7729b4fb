// The fields read from files, kept so that each file is read once however often the command
// list runs again (it does on every keystroke). Entries are keyed by the file's path key
// and remembered with its size and modified time: a file that changed is read again. Only
// the families asked for are read, each by the reader that serves the file's content.
#pragma once

#include <QHash>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "metadata/ContentSniffer.h"
#include "metadata/FieldReader.h"

namespace qp::metadata {

class FieldCache {
public:
    // Without readers, the ones the program ships (Readers.h).
    FieldCache();
    explicit FieldCache(std::vector<std::unique_ptr<FieldReader>> readers);
    ~FieldCache();
    FieldCache(const FieldCache&) = delete;
    FieldCache& operator=(const FieldCache&) = delete;

    // The fields of `family` for the file at `path` ('/'-separated), read when they are not
    // at hand. The reference stays valid until the next call.
    const FamilyFields& fields(const QString& path, QChar family, const ReadRequest& request);
    // A new run of the commands: each file is checked for changes again, once, at its next
    // request. Between runs a file is trusted to be as it was.
    void beginRun() { ++m_generation; }
    // The fields of every family (or of those in `families`, "MD") with every key the
    // libraries give, for listings; nothing is kept.
    std::vector<std::pair<QChar, FamilyFields>> readEverything(const QString& path, LegacyEncoding legacy,
                                                               const QString& families = {});

    void clear()
    {
        m_entries.clear();
        m_lastEntry = nullptr;
    }
    // How many times a file was opened and handed to a reader, for tests and measurements.
    qint64 readCount() const { return m_readCount; }

private:
    struct Entry {
        std::uint64_t size = 0;
        std::int64_t modified = 0;
        bool missing = false;       // nothing readable at the path
        quint64 checked = 0;        // the run in which it was last compared with the disk
        std::optional<ContentType> type;
        QHash<QChar, FamilyFields> families;
    };
    Entry* validEntry(const QString& path);
    static bool covers(const FamilyFields& fields, const ReadRequest& request);
    FamilyFields readFamily(const QString& path, Entry& entry, QChar family, const ReadRequest& request);

    std::vector<std::unique_ptr<FieldReader>> m_readers;
    ContentSniffer m_sniffer;
    QHash<QString, Entry> m_entries;
    // The entry asked for last: the tags of one expression ask for the same file in turn.
    QString m_lastPath;
    Entry* m_lastEntry = nullptr;
    LegacyEncoding m_legacy = LegacyEncoding::Automatic;
    quint64 m_generation = 1;
    qint64 m_readCount = 0;
};

}  // namespace qp::metadata
