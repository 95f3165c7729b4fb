// A session over a real temporary tree, with rows made from paths below the tree and a
// settings file inside it (so snapshots go to <tree>/cfg/AutoSnapshot/…).
#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <gtest/gtest.h>

#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "execution/FileOperations.h"
#include "execution/Preview.h"
#include "execution/RenameRunner.h"
#include "execution/Snapshot.h"
#include "execution/Undo.h"
#include "platform/FileSystem.h"
#include "../support/TempTree.h"

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out) { *out << text.toStdString(); }
QT_END_NAMESPACE

namespace qp::test {

struct World {
    World() : session(makeStore(), ui, QStringLiteral("[20240305140709123]")) {}
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    SettingsStore makeStore()
    {
        SettingsStore store;
        store.setFileName(tree.path("cfg/QuilletPro.ini"));
        return store;
    }

    // A row for the object at `relative` (which must exist) with the new file name `newName`.
    void addRow(const std::string& relative, const QString& newName, bool selected = true)
    {
        const QString full = tree.path(relative);
        const auto info = platform::stat(full.toStdU16String());
        ASSERT_TRUE(info) << relative;
        const PathParts parts = splitPath(full);
        FileEntry row;
        row.isFolder = info->isFolder;
        const NameParts now = splitFileName(parts.fileName, row.isFolder);
        const NameParts next = splitFileName(newName, row.isFolder);
        row.name = now.name;
        row.ext = now.ext;
        row.newName = next.name;
        row.newExt = next.ext;
        row.path = parts.folder;
        row.selected = selected;
        row.attributes = info->attributes;
        session.renameList().append(row);
    }

    // Relative path -> content of every file below the tree's "w" folder; folders as "<dir>".
    QMap<QString, QString> listing() const
    {
        QMap<QString, QString> out;
        const QString root = tree.path("w");
        QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString relative = path.mid(root.size() + 1);
            if (it.fileInfo().isDir()) {
                out.insert(relative, QStringLiteral("<dir>"));
            } else {
                QFile file(path);
                EXPECT_TRUE(file.open(QIODevice::ReadOnly));
                out.insert(relative, QString::fromUtf8(file.readAll()));
            }
        }
        return out;
    }

    // Creates files under "w/" whose content is their own relative path.
    void makeFiles(const std::vector<std::string>& relatives)
    {
        for (const std::string& relative : relatives)
            tree.file("w/" + relative, relative);
    }

    ApplyResult apply(FileOperations& ops) { return RenameRunner(session, ops).apply(); }
    ApplyResult apply() { return apply(disk); }

    QString snapshot(int number) const
    {
        return snapshotPath(tree.path("cfg") + '/', session.runStamp(), number);
    }

    int logged(const QString& start) const
    {
        int n = 0;
        for (const MessageLine& line : session.messages().lines())
            n += line.text.mid(11).startsWith(start) ? 1 : 0;
        return n;
    }

    TempTree tree;
    ScriptedInteraction ui;
    Session session;
    DiskOperations disk;
};

class ExecutionFixture : public ::testing::Test, public World {};

}  // namespace qp::test
