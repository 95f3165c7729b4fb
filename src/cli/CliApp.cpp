#include "cli/CliApp.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include "core/Startup.h"

namespace qp::cli {

std::optional<SettingOverride> parseOverride(const QString& text)
{
    const qsizetype slash = text.indexOf(QLatin1Char('/'));
    if (slash <= 0)
        return std::nullopt;
    const qsizetype equals = text.indexOf(QLatin1Char('='), slash + 1);
    if (equals < 0 || equals == slash + 1)
        return std::nullopt;
    return SettingOverride{text.left(slash), text.mid(slash + 1, equals - slash - 1), text.mid(equals + 1)};
}

int CliApp::fail(const QString& message)
{
    m_err << QStringLiteral("quillet: ") << message << Qt::endl;
    return ExitBadUsage;
}

int CliApp::run(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Quillet Pro 批量文件更名的命令行工具 (batch renamer, command line)"));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("显示帮助 (show this help)"));
    const QCommandLineOption version(QStringLiteral("version"), QStringLiteral("显示版本 (show the version)"));
    const QCommandLineOption settings(QStringLiteral("settings"),
                                      QStringLiteral("使用指定的设置文件 (settings file to use)"), QStringLiteral("FILE"));
    const QCommandLineOption set(QStringLiteral("set"),
                                 QStringLiteral("仅本次运行覆盖一个设置项，不保存 (override one setting for this run)"),
                                 QStringLiteral("Section/Key=Value"));
    parser.addOptions({help, version, settings, set});
    parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("要执行的命令 (command to run)"));
    parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("要载入的文件或文件夹 (files or folders)"),
                                 QStringLiteral("[PATH...]"));
    if (!parser.parse(arguments))
        return fail(parser.errorText());
    if (parser.isSet(help)) {
        m_out << parser.helpText();
        return ExitDone;
    }
    if (parser.isSet(version)) {
        m_out << QStringLiteral("quillet ") << QCoreApplication::applicationVersion() << Qt::endl;
        return ExitDone;
    }
    for (const QString& text : parser.values(set)) {
        if (!parseOverride(text))
            return fail(QStringLiteral("设置项格式错误，应为 Section/Key=Value：") + text);
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.isEmpty())
        return fail(QStringLiteral("缺少命令，请用 --help 查看用法 (missing command)"));
    return fail(QStringLiteral("未知的命令：") + positional.first());
}

}  // namespace qp::cli
