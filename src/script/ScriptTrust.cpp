#include "script/ScriptTrust.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QStringList>

#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp::scripts {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("ScriptTrust", text); }

constexpr qsizetype kShownLines = 8;
constexpr qsizetype kShownLineLength = 100;

// The script's first lines, so the user sees what is asked about.
QString opening(const QString& text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    const bool more = lines.size() > kShownLines;
    lines.resize(std::min(lines.size(), kShownLines));
    for (QString& line : lines) {
        if (line.size() > kShownLineLength)
            line = line.left(kShownLineLength) + QStringLiteral("…");
    }
    if (more)
        lines.append(QStringLiteral("……"));
    return lines.join(QLatin1Char('\n'));
}

}  // namespace

QString scriptDigest(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toHex());
}

Permission permitScript(Session& session, const QString& language, const QString& text, bool fromFile)
{
    using Policy = Session::ScriptPermission;
    if (session.scriptPermission == Policy::DenyAll)
        return {false, tr("%1 脚本未运行：命令行中要加上 --allow-scripts 才会运行脚本，所有文件名保持不变。").arg(language)};
    if (session.scriptPermission == Policy::AllowAll || !fromFile)
        return {true, {}};

    SettingsStore& settings = session.settings();
    const QString digest = scriptDigest(text);
    const QString refused = tr("来自命令文件的 %1 脚本未获允许运行，所有文件名保持不变。").arg(language);
    if (settings.hasKey(keys::kScriptApprovals, digest))
        return settings.readBool(keys::kScriptApprovals, digest, false) ? Permission{true, {}} : Permission{false, refused};

    const QString reach = language == u"Python" ? tr("Python 脚本可以读写文件、运行程序，请只允许您信任的脚本。")
                                                : tr("Pascal 脚本只能读取文件名和文件信息，不能改动文件。");
    const Question question{QStringLiteral("script.allowFromFile"), tr("警告"),
                            tr("此命令文件包含脚本（%1，共 %2 行），预览和更名时会运行它。%3\n\n脚本开头：\n%4\n\n"
                               "是否允许运行？您的选择会被记住。")
                                .arg(language)
                                .arg(text.count(QLatin1Char('\n')) + 1)
                                .arg(reach, opening(text)),
                            Button::Yes | Button::No, Button::No, Icon::Warning};
    const bool allowed = session.interaction().ask(question) == Button::Yes;
    settings.writeBool(keys::kScriptApprovals, digest, allowed);
    session.saveSettings();
    return allowed ? Permission{true, {}} : Permission{false, refused};
}

}  // namespace qp::scripts
