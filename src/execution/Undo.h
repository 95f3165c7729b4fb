// Undo ("撤销上次更名操作"): gives every object of an apply its former name again from the
// apply's snapshot. Within a run the applies form a stack (the session's apply counter
// numbers the snapshots of this run); any snapshot file, and the journal of an apply that
// never finished, can also be undone by its path (command line, later runs).
//
// While undo runs, the snapshot file is itself the journal of the undo (Snapshot.h), so an
// undo that is stopped half way can simply be undone again. When every line is undone the
// file is deleted; otherwise it keeps the lines still to undo.
#pragma once

#include <QString>

namespace qp {

class FileOperations;
class Session;

struct UndoResult {
    enum class End {
        Done,
        WrongPage,
        NothingToUndo,    // the apply counter is 0
        Declined,
        SnapshotUnusable, // missing, unreadable or without entries: "撤销上一次的批量更名出现错误！"
        FirstPassFailed,  // "智能撤销更名失败！": everything put back, snapshot kept
    };
    End end = End::Declined;
    qsizetype entries = 0;    // lines of the snapshot
    qsizetype missing = 0;    // "对象不存在："
    qsizetype succeeded = 0;
    qsizetype failed = 0;
    qsizetype skipped = 0;
    // Some line was not undone (its object missing, its rename failed, or it stayed under a
    // temporary name): the snapshot was rewritten with those lines only, where their objects
    // are now, instead of being deleted, and it stays on the stack.
    bool kept = false;
    qsizetype remaining = 0;
};

class Undo {
public:
    Undo(Session& session, FileOperations& ops) : m_session(session), m_ops(ops) {}

    // The newest apply of this run; it leaves the undo stack when everything was undone.
    UndoResult undoLast();
    // Any snapshot or unfinished journal. Rows of the rename list that name objects of the
    // snapshot are refreshed to their restored names.
    UndoResult undoFile(const QString& snapshotFile);

private:
    UndoResult run(const QString& snapshotFile);

    Session& m_session;
    FileOperations& m_ops;
};

}  // namespace qp
