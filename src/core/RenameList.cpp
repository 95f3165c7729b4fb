#include "core/RenameList.h"

namespace qp {

void RenameList::reserve(qsizetype rows)
{
    m_rows.reserve(size_t(rows));
    m_known.reserve(rows);
}

void RenameList::append(FileEntry entry, QString key)
{
    ++m_revision;
    m_known.insert(key.isEmpty() ? pathKey(entry.fullPath()) : std::move(key));
    m_rows.push_back(std::move(entry));
}

void RenameList::appendAll(std::vector<FileEntry>&& rows, std::vector<QString>&& keys)
{
    ++m_revision;
    m_known.reserve(m_known.size() + qsizetype(rows.size()));
    if (keys.size() == rows.size()) {
        for (QString& key : keys)
            m_known.insert(std::move(key));
    } else {
        for (const FileEntry& row : rows)
            m_known.insert(pathKey(row.fullPath()));
    }
    if (m_rows.empty()) {
        m_rows = std::move(rows);
        return;
    }
    m_rows.insert(m_rows.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
}

void RenameList::removeAt(qsizetype row)
{
    ++m_revision;
    m_known.remove(pathKey(at(row).fullPath()));
    m_rows.erase(m_rows.begin() + row);
}

qsizetype RenameList::removeRows(const std::vector<bool>& drop)
{
    ++m_revision;
    size_t index = 0;
    return removeIf([&](const FileEntry&) {
        const bool gone = index < drop.size() && drop[index];
        ++index;
        return gone;
    });
}

void RenameList::reorder(const std::vector<qsizetype>& order)
{
    ++m_revision;
    // Cycle by cycle in place: a second vector of a million rows would cost more in fresh
    // memory than the moves themselves.
    std::vector<bool> placed(m_rows.size(), false);
    for (size_t start = 0; start < m_rows.size(); ++start) {
        if (placed[start])
            continue;
        placed[start] = true;
        if (size_t(order[start]) == start)
            continue;
        FileEntry first = std::move(m_rows[start]);
        size_t to = start;
        for (size_t from = size_t(order[to]); from != start; from = size_t(order[to])) {
            m_rows[to] = std::move(m_rows[from]);
            placed[from] = true;
            to = from;
        }
        m_rows[to] = std::move(first);
    }
}

void RenameList::clear()
{
    ++m_revision;
    m_rows.clear();
    m_known.clear();
}

void RenameList::rebuildKnownPaths()
{
    m_known.clear();
    m_known.reserve(qsizetype(m_rows.size()));
    for (const FileEntry& row : m_rows)
        m_known.insert(pathKey(row.fullPath()));
}

void RenameList::updateKnownPath(const QString& oldFullPath, const QString& newFullPath)
{
    m_known.remove(pathKey(oldFullPath));
    m_known.insert(pathKey(newFullPath));
}

}  // namespace qp
