// QuilletPro: the desktop program.
#include <QApplication>
#include <QCommandLineParser>
#include <QDateTime>
#include <QDir>
#include <QLibraryInfo>
#include <QTimer>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>

#include "commands/CommandFamilies.h"
#include "core/PathText.h"
#include "core/Startup.h"
#include "execution/FileOperations.h"
#include "execution/RenameRunner.h"
#include "execution/Snapshot.h"
#include "ui/window/MainWindow.h"

namespace {

bool haveDisplay()
{
#if defined(_WIN32) || defined(__APPLE__)
    return true;
#else
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY")
        || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
#endif
}

}  // namespace

int main(int argc, char* argv[])
{
    if (!haveDisplay()) {
        std::fputs("QuilletPro: 没有可用的显示器 (no display: set DISPLAY or run under xvfb-run)\n", stderr);
        return 2;
    }
    const QString runStamp = qp::makeRunStamp(QDateTime::currentDateTime());
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("QuilletPro"));

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({QStringLiteral("settings"), QStringLiteral("使用指定的设置文件 (settings file to use)"),
                      QStringLiteral("FILE")});
    parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("载入文件列表的文件或文件夹 (files or folders to load)"),
                                 QStringLiteral("[PATH...]"));
    parser.process(app);

    // The program speaks Chinese: Qt's own texts (file dialogs, context menus of text boxes)
    // too, whatever the desktop's language.
    QTranslator qtTexts;
    if (qtTexts.load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtTexts);

    const QString file = qp::chooseSettingsFile(parser.value(QStringLiteral("settings")));
    qp::OpenedSettings opened = qp::openSettings(file, QApplication::applicationFilePath());
    qp::ui::MainWindow window(std::move(opened.store), runStamp);
    qp::registerCommandFamilies(window.session().pipeline().registry());
    if (!opened.error.isEmpty())
        window.session().messages().add(opened.error, qp::MessageColour::Red);
    if (opened.report.invalidUtf8) {
        window.session().messages().add(QStringLiteral("设置文件中有不是 UTF-8 的字节，已替换为“�”；原文件已备份为：")
                                            + qp::nativeSeparators(opened.backupFile),
                                        qp::MessageColour::Red);
    }
    // A batch that was cut off (a crash, a power cut) left its journal unfinished: say so, so
    // that the user can undo it from that file.
    qp::DiskOperations disk;
    for (const QString& journal : qp::findUnfinishedJournals(qp::settingsFolderOf(window.session()), disk)) {
        window.session().messages().add(QStringLiteral("发现未完成的批量更名记录，可用它撤销那次更名：")
                                            + qp::nativeSeparators(journal),
                                        qp::MessageColour::Red);
    }
    window.show();
    QStringList paths;
    for (const QString& given : parser.positionalArguments())
        paths.append(qp::internalSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(given))));
    if (!paths.isEmpty())
        QTimer::singleShot(0, &window, [&window, paths] { window.loadPaths(paths); });
    return app.exec();
}
