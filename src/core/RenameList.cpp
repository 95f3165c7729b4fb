#include "core/RenameList.h"

namespace qp {

void RenameList::reserve(qsizetype rows)
{
    m_rows.reserve(size_t(rows));
    m_known.reserve(rows);
}

void RenameList::append(FileEntry entry)
{
    m_known.insert(pathKey(entry.fullPath()));
    m_rows.push_back(std::move(entry));
}

void RenameList::removeAt(qsizetype row)
{
    m_known.remove(pathKey(at(row).fullPath()));
    m_rows.erase(m_rows.begin() + row);
}

void RenameList::clear()
{
    m_rows.clear();
    m_known.clear();
}

void RenameList::updateKnownPath(const QString& oldFullPath, const QString& newFullPath)
{
    m_known.remove(pathKey(oldFullPath));
    m_known.insert(pathKey(newFullPath));
}

}  // namespace qp
