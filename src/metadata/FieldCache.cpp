#include "metadata/FieldCache.h"

#include <algorithm>

#include "metadata/ByteSource.h"
#include "metadata/Readers.h"
#include "platform/FileSystem.h"

namespace qp::metadata {

namespace {

QString keyOf(const QString& path)
{
    if (!platform::pathKeysIgnoreCase())
        return path;
    const platform::Path key = platform::pathKey(path.toStdU16String());
    return QString(reinterpret_cast<const QChar*>(key.data()), qsizetype(key.size()));
}

FamilyFields withStatus(ReadStatus status)
{
    FamilyFields fields;
    fields.status = status;
    return fields;
}

}  // namespace

FieldCache::FieldCache() : FieldCache(makeFieldReaders()) {}

FieldCache::FieldCache(std::vector<std::unique_ptr<FieldReader>> readers) : m_readers(std::move(readers)) {}

FieldCache::~FieldCache() = default;

FieldCache::Entry* FieldCache::validEntry(const QString& path)
{
    if (m_lastEntry && m_lastEntry->checked == m_generation && path == m_lastPath)
        return m_lastEntry;
    // A new key may move the other entries; the one asked for now is where it is.
    Entry& entry = m_entries[keyOf(path)];
    m_lastEntry = &entry;
    m_lastPath = path;
    if (entry.checked == m_generation)
        return &entry;
    const auto info = platform::stat(path.toStdU16String());
    const bool missing = !info || info->isFolder;
    const std::uint64_t size = info ? info->size : 0;
    const std::int64_t modified = info ? info->modified : 0;
    if (entry.checked == 0 || missing != entry.missing || size != entry.size || modified != entry.modified) {
        entry = Entry();
        entry.missing = missing;
        entry.size = size;
        entry.modified = modified;
    }
    entry.checked = m_generation;
    return &entry;
}

bool FieldCache::covers(const FamilyFields& fields, const ReadRequest& request)
{
    if (fields.status != ReadStatus::Ok || fields.everyKey)
        return true;
    if (request.everyKey)
        return false;
    for (const QString& key : request.keys) {
        if (!fields.keysAsked.contains(key))
            return false;
    }
    return true;
}

const FamilyFields& FieldCache::fields(const QString& path, QChar family, const ReadRequest& request)
{
    if (request.legacy != m_legacy) {
        // Text was decoded under the other setting.
        clear();
        m_legacy = request.legacy;
    }
    Entry* entry = validEntry(path);
    if (entry->missing) {
        static const FamilyFields missing = withStatus(ReadStatus::Missing);
        return missing;
    }
    auto it = entry->families.find(family);
    if (it != entry->families.end() && covers(*it, request))
        return *it;
    ReadRequest wider = request;
    if (it != entry->families.end()) {
        // Keep the keys asked for earlier as well.
        for (const QString& key : std::as_const(it->keysAsked)) {
            if (!wider.keys.contains(key))
                wider.keys.append(key);
        }
    }
    return entry->families.insert(family, readFamily(path, *entry, family, wider)).value();
}

FamilyFields FieldCache::readFamily(const QString& path, Entry& entry, QChar family, const ReadRequest& request)
{
    const FileSource source(path);
    if (!source.isOpen())
        return withStatus(ReadStatus::Missing);
    if (source.size() == 0)
        return withStatus(ReadStatus::NotThisKind);
    if (!entry.type)
        entry.type = m_sniffer.sniff(source);
    for (const auto& reader : m_readers) {
        if (reader->family() != family || !reader->accepts(*entry.type))
            continue;
        ++m_readCount;
        FamilyFields fields = reader->read(source, *entry.type, request);
        if (fields.status != ReadStatus::NotThisKind)
            return fields;
    }
    return withStatus(ReadStatus::NotThisKind);
}

std::vector<std::pair<QChar, FamilyFields>> FieldCache::readEverything(const QString& path, LegacyEncoding legacy,
                                                                       const QString& families)
{
    std::vector<std::pair<QChar, FamilyFields>> all;
    Entry scratch;
    ReadRequest request;
    request.legacy = legacy;
    request.everyKey = true;
    for (const auto& reader : m_readers) {
        const QChar family = reader->family();
        if (!families.isEmpty() && !families.contains(family))
            continue;
        const bool seen = std::any_of(all.begin(), all.end(), [&](const auto& pair) { return pair.first == family; });
        if (!seen)
            all.emplace_back(family, readFamily(path, scratch, family, request));
    }
    return all;
}

}  // namespace qp::metadata
