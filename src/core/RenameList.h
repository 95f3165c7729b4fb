// The rows of the rename list and the set of their full paths (the known-path list),
// kept as comparison keys so that a duplicate is found by a hash look-up.
#pragma once

#include <QSet>
#include <QString>
#include <vector>

#include "core/FileEntry.h"
#include "core/PathText.h"

namespace qp {

class RenameList {
public:
    qsizetype size() const { return qsizetype(m_rows.size()); }
    bool isEmpty() const { return m_rows.empty(); }
    const FileEntry& at(qsizetype row) const { return m_rows[size_t(row)]; }
    FileEntry& operator[](qsizetype row) { return m_rows[size_t(row)]; }
    const std::vector<FileEntry>& rows() const { return m_rows; }

    void reserve(qsizetype rows);
    // Appends the row and records its path as known; `key` is pathKey(fullPath) when the
    // caller has it already.
    void append(FileEntry entry, QString key = {});
    // Appends many rows at once; `keys` is empty or holds pathKey(fullPath) of each row.
    void appendAll(std::vector<FileEntry>&& rows, std::vector<QString>&& keys);
    void removeAt(qsizetype row);
    // Removes the rows whose flag is set (`drop` has one flag per row), keeping order.
    qsizetype removeRows(const std::vector<bool>& drop);
    // Puts the rows in the order `order` gives: row i becomes the old row order[i]. The
    // grid's order is the numbering order, so a sort of the grid reorders the rows here.
    // `order` must be a permutation of 0..size()-1.
    void reorder(const std::vector<qsizetype>& order);
    // Removes every row for which `drop` is true, keeping order, in one pass.
    template <typename Pred>
    qsizetype removeIf(Pred drop);
    void clear();

    bool isKnown(const QString& key) const { return m_known.contains(key); }
    qsizetype knownCount() const { return m_known.size(); }
    // Re-records a row's path after the row was renamed or moved.
    void updateKnownPath(const QString& oldFullPath, const QString& newFullPath);
    // Records every row's path anew: quicker than one update per row after a batch that
    // moved most of them.
    void rebuildKnownPaths();

    // Grows whenever rows are added, removed or put in another order.
    quint64 revision() const { return m_revision; }

private:
    std::vector<FileEntry> m_rows;
    quint64 m_revision = 0;
    QSet<QString> m_known;
};

template <typename Pred>
qsizetype RenameList::removeIf(Pred drop)
{
    const size_t before = m_rows.size();
    size_t kept = 0;
    ++m_revision;
    for (size_t i = 0; i < m_rows.size(); ++i) {
        if (drop(m_rows[i])) {
            m_known.remove(pathKey(m_rows[i].fullPath()));
            continue;
        }
        if (kept != i)
            m_rows[kept] = std::move(m_rows[i]);
        ++kept;
    }
    m_rows.resize(kept);
    return qsizetype(before - kept);
}

}  // namespace qp
