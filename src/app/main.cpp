// QuilletPro: the desktop program.
#include <QApplication>
#include <QCommandLineParser>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QTimer>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "commands/CommandFamilies.h"
#include "core/DesktopIntegration.h"
#include "core/PathText.h"
#include "core/Startup.h"
#include "core/Translation.h"
#include "execution/FileOperations.h"
#include "execution/RenameRunner.h"
#include "execution/Snapshot.h"
#include "ui/shell/SingleInstance.h"
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

// "-i" / "-u" (either case): puts the program into the file manager's context menu, or takes
// it out, and ends. No window is needed; the outcome goes to standard output and the exit
// code (0 done, 1 something failed).
std::optional<int> integrate(int argc, char* argv[])
{
    if (argc != 2)
        return std::nullopt;
    const QByteArray option = QByteArray(argv[1]).toLower();
    if (option != "-i" && option != "-u")
        return std::nullopt;
    QCoreApplication app(argc, argv);
    const qp::DesktopPlaces places = qp::desktopPlacesFromEnvironment();
    QByteArray icon;
    if (QFile file(QStringLiteral(":/icons/quilletpro-256.png")); file.open(QIODevice::ReadOnly))
        icon = file.readAll();
    const qp::IntegrationReport report = option == "-i"
        ? qp::installDesktopIntegration(places, QCoreApplication::applicationFilePath(), icon)
        : qp::removeDesktopIntegration(places);
    for (const QString& done : report.done)
        std::printf("%s\n", done.toUtf8().constData());
    for (const QString& problem : report.problems)
        std::fprintf(stderr, "QuilletPro: %s\n", problem.toUtf8().constData());
    return report.ok() ? 0 : 1;
}

QIcon programIcon()
{
    QIcon icon;
    for (int size : {16, 32, 48, 256})
        icon.addFile(QStringLiteral(":/icons/quilletpro-%1.png").arg(size), QSize(size, size));
    return icon;
}

}  // namespace

int main(int argc, char* argv[])
{
    if (const std::optional<int> integrated = integrate(argc, argv))
        return *integrated;
    if (!haveDisplay()) {
        std::fputs("QuilletPro: 没有可用的显示器 (no display: set DISPLAY or run under xvfb-run)\n", stderr);
        return 2;
    }
    const QString runStamp = qp::makeRunStamp(QDateTime::currentDateTime());
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("QuilletPro"));
    QApplication::setApplicationVersion(QStringLiteral(QP_VERSION));
    QApplication::setWindowIcon(programIcon());

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({QStringLiteral("settings"), QStringLiteral("使用指定的设置文件 (settings file to use)"),
                      QStringLiteral("FILE")});
    parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("载入文件列表的文件或文件夹 (files or folders to load)"),
                                 QStringLiteral("[PATH...]"));
    parser.process(app);

    const QString file = qp::chooseSettingsFile(parser.value(QStringLiteral("settings")));
    QStringList paths;
    for (const QString& given : parser.positionalArguments())
        paths.append(qp::internalSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(given))));

    // A window runs already for these settings: it takes the paths, this start ends.
    qp::ui::SingleInstance instance(qp::ui::SingleInstance::channelName(file));
    switch (instance.claim(paths)) {
    case qp::ui::SingleInstance::Role::Forwarded:
        return 0;
    case qp::ui::SingleInstance::Role::Unanswered:
        QMessageBox::warning(nullptr, QStringLiteral("Quillet Pro"),
                             QStringLiteral("Quillet Pro 的窗口正忙，没有接收这些对象。请稍后再试。\n"
                                            "(The Quillet Pro window is busy and did not take these objects. Try again later.)"));
        return 1;
    case qp::ui::SingleInstance::Role::Primary:
        break;
    }

    qp::OpenedSettings opened = qp::openSettings(file, QApplication::applicationFilePath());
    // The program's texts in the chosen language; Qt's own texts (file dialogs, context
    // menus of text boxes) follow: Chinese from Qt's translations, English as Qt has them.
    const qp::LanguageChoice language =
        qp::chooseLanguage(qp::languageSetting(opened.store), QLocale::system().uiLanguages());
    const std::unique_ptr<QTranslator> programTexts = qp::installLanguage(language.language);
    QTranslator qtTexts;
    if (language.language == qp::Language::Chinese
        && qtTexts.load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtTexts);

    qp::ui::MainWindow window(std::move(opened.store), runStamp);
    qp::registerCommandFamilies(window.session().pipeline().registry());
    if (!language.notice.isEmpty())
        window.session().messages().add(language.notice);
    if (language.language == qp::Language::English && !programTexts)
        window.session().messages().add(QStringLiteral("The English texts could not be read; the program speaks Chinese."),
                                        qp::MessageColour::Red);
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
    instance.serve(&window);
    window.show();
    QTimer::singleShot(0, &window, [&window, paths] {
        if (!paths.isEmpty())
            window.loadPaths(paths);
        window.startShell();
    });
    return app.exec();
}
