#include <gtest/gtest.h>

#include "../support/TempTree.h"
#include "cli/CliApp.h"
#include "core/PathText.h"

namespace qp::cli {
namespace {

// Nobody can be asked on the command line: a script runs only with --allow-scripts.
TEST(CliScripts, RunOnlyWhenAllowed)
{
    test::TempTree tree;
    const QString settingsFile = tree.file("conf/QuilletPro.ini", "\xEF\xBB\xBF[General Config]\r\n");
    const QString commands = tree.file("script.frc",
                                       "[CommandList]\r\nCommandListCount=1\r\n1=CMD_A1220240101000000000\r\n\r\n"
                                       "[CMD_A1220240101000000000]\r\nCMDid=A1201\r\nA12_PascalScriptLinesCount=1\r\n"
                                       "A12_PSLine1=FileName := UpperCase(FileName);\r\n");
    tree.file("d/one.txt", "1");
    const QString row = nativeSeparators(tree.path("d/one.txt"));
    for (const bool allowed : {false, true}) {
        QStringList arguments{"quillet", "--settings", settingsFile, "preview", "--commands", commands, tree.path("d/one.txt")};
        if (allowed)
            arguments.append("--allow-scripts");
        QString out, err;
        QTextStream outStream(&out), errStream(&err);
        EXPECT_EQ(CliApp(outStream, errStream).run(arguments), ExitDone) << err.toStdString();
        outStream.flush();
        errStream.flush();
        EXPECT_EQ(out, QStringLiteral("1\t%1\t%2\n").arg(row, allowed ? "ONE.TXT" : "one.txt"));
        EXPECT_EQ(err.contains("--allow-scripts"), !allowed) << err.toStdString();
    }
}

}  // namespace
}  // namespace qp::cli
