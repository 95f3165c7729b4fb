// The order of the rename list by one of its columns, as the grid sorts it. The grid's order
// is the order in which numbering commands count, so a sort moves the rows themselves
// (RenameList::reorder) instead of showing them through a sorted view.
#pragma once

#include <QStringView>
#include <vector>

namespace qp {

class RenameList;

enum class RowKey { Selected, Name, Extension, State, NewName, NewExtension, Modified, Attributes, Size, Folder };

// Names as people count them: a run of digits compares by its value ("file2" before
// "file10"), other characters one by one without regard to ASCII letter case. Texts that
// differ only in letter case or in leading zeros are told apart at the end ("A" before "a",
// "7" before "007"), so that a sort never depends on where two such rows started.
int naturalCompare(QStringView a, QStringView b);

// The rows' positions sorted by `key`: element i is the row that goes to place i. Rows that
// compare equal keep their present order, so sorting by a second column after a first one
// keeps the first order within the groups of the second.
std::vector<qsizetype> sortedOrder(const RenameList& list, RowKey key, bool ascending);

}  // namespace qp
