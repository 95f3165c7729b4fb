#include "commands/AdvancedCommands.h"

#include <QCoreApplication>
#include <QHash>
#include <functional>
#include <memory>

#include "commands/RegexSubstitution.h"
#include "commands/RenameFromList.h"
#include "core/CommandRegistry.h"
#include "core/FileEntry.h"
#include "core/MessageLog.h"
#include "core/Session.h"
#include "expressions/ChineseText.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("AdvancedCommands", text); }

QString key(const char* name) { return QString::fromLatin1(name); }

// A1: a Perl-compatible pattern, every match replaced. A101 works on the whole name with its
// extension and splits the result again at its last dot (a folder's whole name stays whole);
// A102 works on the name and leaves the extension alone. A pattern or replacement the engine
// rejects leaves every row as it was and says so once per run.
class RegexOnName : public CompiledCommand {
public:
    RegexOnName(const CommandSection& s, bool withExtension)
        : m_pattern(s.readString(key("A1_RegexText"), QString())),
          m_replacement(s.readString(key("A1_RegexReplaceText"), QString())),
          m_regex(m_pattern, m_replacement, s.readBool(key("A1_CaseFlag"), false)),
          m_withExtension(withExtension)
    {
        if (!m_pattern.isEmpty() && !m_regex.compiled()) {
            m_problem = tr("正则表达式有误，所有名称保持不变：%1（位置 %2）：%3")
                            .arg(m_regex.compileError(), QString::number(m_regex.compileErrorOffset()), m_pattern);
            m_failed = true;
        }
    }

    void apply(const CommandContext& context, QString& name, QString& ext) override
    {
        if (m_pattern.isEmpty() || m_failed)
            return;
        const QString subject = m_withExtension ? name + ext : name;
        QString result;
        switch (m_regex.replaceAll(subject, result)) {
        case RegexSubstitution::Outcome::Done:
            if (!m_withExtension) {
                name = std::move(result);
            } else {
                NameParts parts = splitFileName(result, context.row.isFolder);
                name = std::move(parts.name);
                ext = std::move(parts.ext);
            }
            return;
        case RegexSubstitution::Outcome::BadReplacement:
            // Wrong for every row alike: the run stops using it.
            m_failed = true;
            if (m_problem.isEmpty()) {
                m_problem = tr("正则表达式的替换文本有误，所有名称保持不变：%1：%2")
                                .arg(m_regex.lastError(), m_replacement);
            }
            break;
        case RegexSubstitution::Outcome::FailedForSubject:
            if (m_problem.isEmpty())
                m_problem = tr("正则表达式无法用于“%1”，该名称保持不变：%2").arg(subject, m_regex.lastError());
            break;
        }
    }

    void finish(Session& session) override
    {
        if (!m_problem.isEmpty())
            session.messages().add(m_problem, MessageColour::Red);
    }

private:
    QString m_pattern;
    QString m_replacement;
    RegexSubstitution m_regex;
    bool m_withExtension;
    bool m_failed = false;
    QString m_problem;
};

// A3: the name's Chinese characters to pinyin; the extension is left alone.
class Pinyin : public CompiledCommand {
public:
    explicit Pinyin(chinese::PinyinOptions options) : m_converter(std::move(options)) {}
    void apply(const CommandContext&, QString& name, QString&) override { name = m_converter.convert(name); }

private:
    chinese::PinyinConverter m_converter;
};

chinese::PinyinOptions pinyinOptions(const CommandSection& s)
{
    chinese::PinyinOptions o;
    o.mode = s.code == u"A302" ? chinese::PinyinMode::ToneMarks
        : s.code == u"A303"    ? chinese::PinyinMode::FirstInitial
                               : chinese::PinyinMode::Letters;
    o.firstLetterOnly = s.readBool(key("A3_HZToPY1stLetter"), false);
    o.allReadings = s.readBool(key("A3_HZToPYPolyphone"), false);
    o.keepChinese = s.readBool(key("A3_HZToPYKeepHZ"), false);
    o.initialAsLetter = s.readBool(key("A3_HZToPYLetterStr"), true);
    o.unknownAsTilde = s.readBool(key("A3_HZToPYUnkown"), true);
    o.upperFirst = s.readBool(key("A3_HZToPY1stUpperCase"), false);
    o.leftAffix = s.readString(key("A3_HZToPYLeftStr"), QString());
    o.rightAffix = s.readString(key("A3_HZToPYRightStr"), QString());
    o.link = s.readString(key("A3_HZToPYLinkStr"), QStringLiteral("_"));
    return o;
}

// A4: one of the character tables over the name; the extension is left alone.
class TextTable : public CompiledCommand {
public:
    explicit TextTable(std::function<QString(QStringView)> convert) : m_convert(std::move(convert)) {}
    void apply(const CommandContext&, QString& name, QString&) override { name = m_convert(name); }

private:
    std::function<QString(QStringView)> m_convert;
};

std::unique_ptr<CompiledCommand> compileAdvancedCommand(const CommandSection& s)
{
    const QString& code = s.code;
    if (code == u"A101" || code == u"A102")
        return std::make_unique<RegexOnName>(s, code == u"A101");
    if (code == u"A301" || code == u"A302" || code == u"A303")
        return std::make_unique<Pinyin>(pinyinOptions(s));
    if (code == u"A401")
        return std::make_unique<TextTable>([](QStringView t) { return chinese::digitsToNumerals(t, false); });
    if (code == u"A402")
        return std::make_unique<TextTable>([](QStringView t) { return chinese::digitsToNumerals(t, true); });
    if (code == u"A403")
        return std::make_unique<TextTable>(chinese::numeralsToDigits);
    if (code == u"A404")
        return std::make_unique<TextTable>(chinese::replaceNumberSymbols);
    if (code == u"A1101")
        return renamelist::compile(s);
    return nullptr;
}

}  // namespace

QStringList advancedCommandCodes()
{
    return {"A101", "A102", "A301", "A302", "A303", "A401", "A402", "A403", "A404", "A1101"};
}

QString advancedCommandComment(const QString& code)
{
    static const QHash<QString, const char*> comments = {
        {"A101", "正则表达式更名（含扩展名）"},
        {"A102", "正则表达式更名（仅文件名）"},
        {"A301", "汉字转英文字母串拼音"},
        {"A302", "汉字转带声调的汉语拼音"},
        {"A303", "只插入第一个汉字声母"},
        {"A401", "数字转小写汉字数字"},
        {"A402", "数字转大写汉字数字"},
        {"A403", "汉字数字转阿拉伯数字"},
        {"A404", "特殊数字符号转普通数字"},
        {"A1101", "文件名对照列表更名"},
    };
    const char* text = comments.value(code, nullptr);
    return text ? tr(text) : QString();
}

void registerAdvancedCommands(CommandRegistry& registry)
{
    registry.registerFamily(advancedCommandCodes(), compileAdvancedCommand);
}

}  // namespace qp
