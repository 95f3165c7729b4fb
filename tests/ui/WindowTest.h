// The main window over a settings file inside a temporary tree, with its dialogs answered
// by a script; files to rename go under "w/".
#pragma once

#include <gtest/gtest.h>

#include <QComboBox>
#include <QFile>
#include <QPushButton>
#include <QTest>

#include "DialogScript.h"
#include "commands/ExtensionCommands.h"
#include "core/CommandList.h"
#include "core/SettingsKeys.h"
#include "ui/models/RenameListModel.h"
#include "ui/window/LoadBar.h"
#include "ui/window/MainWindow.h"
#include "../support/TempTree.h"

namespace qp::ui::test {

class WindowTest : public ::testing::Test {
protected:
    WindowTest()
        : window(makeStore(), QStringLiteral("[20240305140709123]"))
    {
        registerExtensionCommands(window.session().pipeline().registry());
        window.setModalRunner(script.runner());
        window.show();
    }

    SettingsStore makeStore()
    {
        SettingsStore store;
        store.setFileName(tree.path("cfg/QuilletPro.ini"));
        // Folders become rows only when a test wants them.
        store.writeBool(keys::kOperation, keys::kFlagAddFolder, false);
        store.writeBool(keys::kOperation, keys::kFlagFindDeepin, true);
        return store;
    }

    Session& session() { return window.session(); }
    RenameListModel& grid() { return *window.renameModel(); }

    QString cell(int row, int column) { return grid().index(row, column).data().toString(); }
    QStringList column(int column)
    {
        QStringList out;
        for (int r = 0; r < grid().rowCount(); ++r)
            out.append(cell(r, column));
        return out;
    }

    // Types the folder into "路径" and clicks "载入路径", as the user does.
    void loadFolder(const QString& folder)
    {
        window.loadBar()->pathBox()->setEditText(folder);
        QTest::mouseClick(window.loadBar()->loadButton(), Qt::LeftButton);
    }

    // Records an extension command the way a function page does, then ends it so that the
    // next one is a command of its own.
    void recordExtension(const char* code, std::initializer_list<std::pair<const char*, const char*>> params)
    {
        const RecordAnswer answer = recordCommand(session(), QStringLiteral("E1"), false);
        ASSERT_TRUE(answer.write);
        session().commandList().describe(answer.section, QLatin1String(code),
                                         extensionCommandComment(QLatin1String(code)));
        for (const auto& [key, value] : params)
            session().settings().writeString(answer.section, QLatin1String(key), QString::fromUtf8(value));
        session().pipeline().runOne(answer.section);
        session().commandList().endCurrent();
        window.refreshAfterCommandChange();
    }

    bool exists(const std::string& relative) { return QFile::exists(tree.path(relative)); }

    qp::test::TempTree tree;
    DialogScript script;
    MainWindow window;
};

}  // namespace qp::ui::test
