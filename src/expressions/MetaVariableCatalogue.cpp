#include "expressions/MetaVariableCatalogue.h"

#include <QCoreApplication>
#include <QHash>

#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"
#include "expressions/TagParts.h"
#include "metadata/FieldCatalogue.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("MetaVariableCatalogue", text); }

// The words of one tag's help; the default comes from the expander's own table.
struct TagText {
    const char* description;
    const char* parameter;  // one element per line; empty for tags without a parameter
    const char* remarks;    // may be empty
};

const char* const kPicture = QT_TRANSLATE_NOOP("MetaVariableCatalogue",
    "日期时间格式：yy 两位年份，yyyy 四位年份；m 月（1-12），mm 月（01-12），mmm 月份简称，mmmm 月份全称；\n"
    "d 日（1-31），dd 日（01-31），ddd 星期简称，dddd 星期全称，ddddd 短日期，dddddd 长日期；\n"
    "h 时（0-23），hh 时（00-23）；n 分（0-59），nn 分（00-59）；s 秒（0-59），ss 秒（00-59）；\n"
    "其它字符原样保留。");
const char* const kComposed = QT_TRANSLATE_NOOP("MetaVariableCatalogue",
    "由同组的元变量组成的文本，例如“<Y>年<M>月<D>日”；其中每个元变量按它自己的格式展开。");
const char* const kDepth = QT_TRANSLATE_NOOP("MetaVariableCatalogue",
    "层数：向下统计的文件夹层数，0 表示所有层，1 表示只统计文件夹本身的内容。");
const char* const kSizeParameter = QT_TRANSLATE_NOOP("MetaVariableCatalogue",
    "单位：AUTO（自动）、KB、MB、GB、TB 或 B（字节）；\n"
    "“,”：使用千位分隔符（AUTO 时无效）；\n"
    "(单位文本)：() 单位紧跟数字，( ) 数字与单位之间有一个空格，其它文本代替单位名称；不写括号则不显示单位。");
const char* const kFolderOnly = QT_TRANSLATE_NOOP("MetaVariableCatalogue",
    "只对文件夹有效；文件的值为空。需遍历文件夹，层数越多越慢。");

QString textOf(const char* text) { return text && *text ? tr(text) : QString(); }

TagText dateText(int member)
{
    static const char* const parts[] = {
        QT_TRANSLATE_NOOP("MetaVariableCatalogue", "年份"),   QT_TRANSLATE_NOOP("MetaVariableCatalogue", "月份"),
        QT_TRANSLATE_NOOP("MetaVariableCatalogue", "日"),     QT_TRANSLATE_NOOP("MetaVariableCatalogue", "星期"),
        QT_TRANSLATE_NOOP("MetaVariableCatalogue", "日期"),   QT_TRANSLATE_NOOP("MetaVariableCatalogue", "小时"),
        QT_TRANSLATE_NOOP("MetaVariableCatalogue", "分钟"),   QT_TRANSLATE_NOOP("MetaVariableCatalogue", "秒"),
        QT_TRANSLATE_NOOP("MetaVariableCatalogue", "时间"),
    };
    const bool composed = member == 4 || member == 8;
    return {parts[member], composed ? kComposed : kPicture, ""};
}

// The descriptions of the tags up to "<DIFNSUBSTR>", by name.
const QHash<QString, TagText>& plainTexts()
{
    static const QHash<QString, TagText> texts = {
        {"FILENAME", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "实际文件名（含扩展名）"), "", ""}},
        {"CFILENAME", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "当前新文件名（含扩展名）"), "",
                       QT_TRANSLATE_NOOP("MetaVariableCatalogue", "即命令列表中前面的命令处理后的结果。")}},
        {"NAME", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "实际文件名（不含扩展名）"), "", ""}},
        {"CNAME", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "当前新文件名（不含扩展名）"), "",
                   QT_TRANSLATE_NOOP("MetaVariableCatalogue", "即命令列表中前面的命令处理后的结果。")}},
        {".EXT", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "实际扩展名（含“.”）"), "", ""}},
        {".CEXT", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "当前新扩展名（含“.”）"), "", ""}},
        {"EXT", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "实际扩展名（不含“.”）"), "", ""}},
        {"CEXT", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "当前新扩展名（不含“.”）"), "", ""}},
        {"NCRC32", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件名字符串的 CRC32 校验值（8 位大写十六进制）"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                      "(FN) 含扩展名的文件名；(EE) 不含扩展名的文件名；(PN) 含路径的完整文件名；(OE) 只有扩展名"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "字符串按 UTF-8 编码计算；只取写在最前面的一个代码。")}},
        {"NMD5", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件名字符串的 MD5 校验值（32 位大写十六进制）"),
                  QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                    "(FN) 含扩展名的文件名；(EE) 不含扩展名的文件名；(PN) 含路径的完整文件名；(OE) 只有扩展名"),
                  QT_TRANSLATE_NOOP("MetaVariableCatalogue", "字符串按 UTF-8 编码计算；只取写在最前面的一个代码。")}},
        {"NSHA1", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件名字符串的 SHA1 校验值（40 位大写十六进制）"),
                   QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                     "(FN) 含扩展名的文件名；(EE) 不含扩展名的文件名；(PN) 含路径的完整文件名；(OE) 只有扩展名"),
                   QT_TRANSLATE_NOOP("MetaVariableCatalogue", "字符串按 UTF-8 编码计算；只取写在最前面的一个代码。")}},
        {"CRC32", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件内容的 CRC32 校验值（8 位大写十六进制）"), "",
                   QT_TRANSLATE_NOOP("MetaVariableCatalogue", "需读取整个文件，文件越大越慢；文件夹的值为空。")}},
        {"MD5", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件内容的 MD5 校验值（32 位大写十六进制）"), "",
                 QT_TRANSLATE_NOOP("MetaVariableCatalogue", "需读取整个文件，文件越大越慢；文件夹的值为空。")}},
        {"SHA1", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件内容的 SHA1 校验值（40 位大写十六进制）"), "",
                  QT_TRANSLATE_NOOP("MetaVariableCatalogue", "需读取整个文件，文件越大越慢；文件夹的值为空。")}},
        {"SIZE", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件大小"), kSizeParameter,
                  QT_TRANSLATE_NOOP("MetaVariableCatalogue", "例：AUTO( ) 为 1.50 KB，KB() 为 2KB，B,( Byte(s)) 为 7,654,321 Byte(s)。文件夹的值为空。")}},
        {"SPSIZE", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "对象所在文件夹中所有文件的大小之和"), kSizeParameter, ""}},
        {"DISIZE", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件夹内所有文件的大小之和"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "层数/：向下统计的文件夹层数，0 表示所有层；其后同 <SIZE> 的参数"),
                    kFolderOnly}},
        {"SAMPLENO", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "按行号生成的序号"),
                      QT_TRANSLATE_NOOP("MetaVariableCatalogue", "起始值/增量/位数：序号 = 起始值 + 行号 × 增量，不足位数时左边补 0"),
                      QT_TRANSLATE_NOOP("MetaVariableCatalogue", "例：3/2/3 依次为 003、005、007……")}},
        {"ATTRIB", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "对象的属性"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                      "a：字母（A、R、H、S，没有属性时为 N）；aa：英文单词；aaa：中文（存档、只读、隐藏、系统、正常）；\n"
                                      "(分隔符)：属性之间的分隔文本"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "例：aa(-) 为 Archive-ReadOnly。")}},
        {"DIR", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "上级文件夹的名称"),
                 QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                   "层：1 为所在文件夹，2 为再上一级……；0 为盘符；\n"
                                   "层(分隔符)层：取两层之间的所有文件夹名，以分隔符连接；\n"
                                   "->：从最上层的文件夹开始向下数"),
                 QT_TRANSLATE_NOOP("MetaVariableCatalogue", "超出的层数取最远的文件夹。")}},
        {"R", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "随机字符串"),
               QT_TRANSLATE_NOOP("MetaVariableCatalogue", "长度；(N) 数字，(UC) 大写字母，(LC) 小写字母，(UL) 下划线，可任意组合"),
               QT_TRANSLATE_NOOP("MetaVariableCatalogue", "同一文本中的多个 <R> 取同一个值。")}},
        {"SUBSTR", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "实际文件名（不含扩展名）的子字符串"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "起始位置/长度；(L) 从左边数起，(R) 从右边数起"),
                    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "例：对 ABCDEFGHIJK，1/1(L) 为 A，2/3 为 BCD，2/3(R) 为 HIJ。")}},
        {"CSUBSTR", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "当前新文件名（不含扩展名）的子字符串"),
                     QT_TRANSLATE_NOOP("MetaVariableCatalogue", "起始位置/长度；(L) 从左边数起，(R) 从右边数起"), ""}},
        {"SPALLNUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "对象所在文件夹中的文件和文件夹数"), "", ""}},
        {"SPFILENUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "对象所在文件夹中的文件数"), "", ""}},
        {"SPDIRNUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "对象所在文件夹中的文件夹数"), "", ""}},
        {"DIALLNUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件夹内的文件和子文件夹数"), kDepth, kFolderOnly}},
        {"DIFILENUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件夹内的文件数"), kDepth, kFolderOnly}},
        {"DIDIRNUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件夹内的子文件夹数"), kDepth, kFolderOnly}},
        {"LISTNUM", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "更名文件列表的总行数"), "", ""}},
        {"DIFNSUBSTR", {QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件夹内有名称含指定字符串的对象时为该字符串，否则为空"),
                        QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                          "层数；/DIR：文件夹名也参与查找；(字符串)：要查找的字符串"),
                        kFolderOnly}},
    };
    return texts;
}

QString userDescription(int n)
{
    return tr("用户自定义元变量：字符串列表 %1 中与对象行号相同的一行").arg(n);
}

const char* const kMoments[] = {
    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "当前"),
    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件修改"),
    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件创建"),
    QT_TRANSLATE_NOOP("MetaVariableCatalogue", "文件访问"),
};

TagText textFor(int tag, QString& description)
{
    const QString name = QString::fromLatin1(expr::tagName(tag));
    if (tag >= expr::TUser0 && tag <= expr::TUser9) {
        description = userDescription(tag - expr::TUser0);
        return {"", "", QT_TRANSLATE_NOOP("MetaVariableCatalogue", "在“设置”菜单的“用户自定义元变量”中定义；没有对应行时为空。")};
    }
    if (tag < expr::kFirstDateTag) {
        const TagText text = plainTexts().value(name);
        description = textOf(text.description);
        return text;
    }
    const int offset = tag - expr::kFirstDateTag;
    const TagText text = dateText(offset % 9);
    description = tr(kMoments[offset / 9]) + textOf(text.description);
    return text;
}

QString helpText(const QString& tag, const QString& description, const QString& defaultParameter, const TagText& text)
{
    QString help = tag + QLatin1String("\n\n") + tr("描述：") + description + u'\n';
    help += tr("缺省设置：") + (defaultParameter.isEmpty() ? tr("无") : defaultParameter) + u'\n';
    help += tr("参数：") + (text.parameter && *text.parameter ? u'\n' + tr(text.parameter) : tr("无")) + u'\n';
    if (text.remarks && *text.remarks)
        help += tr("说明：") + tr(text.remarks) + u'\n';
    return help;
}

// What a field tag's parameter means, by its kind.
const char* fieldParameterText(metadata::ParameterKind kind)
{
    using P = metadata::ParameterKind;
    switch (kind) {
    case P::Digits:
        return QT_TRANSLATE_NOOP("MetaVariableCatalogue", "最少位数：不足时左边补 0，例如 2 时 3 写为 03");
    case P::Picture:
        return QT_TRANSLATE_NOOP("MetaVariableCatalogue",
            "日期时间格式，同 <FDATE> 等：yyyy 年，mm 月，dd 日，hh 时，nn 分，ss 秒……；\n"
            "另有 zzz 毫秒（文件没有时为 000），oooo 与 UTC 的时差（如 +0800，文件没有时为空）。\n"
            "按文件记录的当地时间写出，不换算到本机时区。");
    case P::Flag:
        return QT_TRANSLATE_NOOP("MetaVariableCatalogue", "是的文字/否的文字，例如 [封面]/ 表示有封面时写 [封面]，没有时什么也不写");
    case P::Separator:
        return QT_TRANSLATE_NOOP("MetaVariableCatalogue",
            "代替值中“/”或“:”的文字（文件名不能含这两个字符）；值有多项时，为项与项之间的文字");
    case P::Decimals:
        return QT_TRANSLATE_NOOP("MetaVariableCatalogue", "小数位数");
    case P::Key:
        return QT_TRANSLATE_NOOP("MetaVariableCatalogue",
            "要读取的键名；命令行 quillet fields 文件名 列出文件的全部键，括号中的部分即为键名");
    case P::None:
        break;
    }
    return "";
}

MetaVariableInfo fieldInfo(const metadata::FamilyInfo& family, const metadata::FieldInfo& field)
{
    MetaVariableInfo info;
    info.tag = metadata::fieldTag(family.letter, field.name);
    info.defaultParameter = field.defaultParameter;
    info.takesParameter = field.parameter != metadata::ParameterKind::None;
    info.description = family.title + tr("：") + field.description;
    const TagText text{"", fieldParameterText(field.parameter),
                       QT_TRANSLATE_NOOP("MetaVariableCatalogue",
                                         "文件没有此字段时为空；在对应的功能页可改为对象保持不变或使用替代文字。")};
    info.help = helpText(info.tag, info.description, info.defaultParameter, text);
    return info;
}

}  // namespace

const std::vector<MetaVariableInfo>& metaVariableCatalogue()
{
    static const std::vector<MetaVariableInfo> catalogue = [] {
        std::vector<MetaVariableInfo> list;
        for (int tag = 0; tag < expr::TagCount; ++tag) {
            MetaVariableInfo info;
            info.tag = u'<' + QString::fromLatin1(expr::tagName(tag)) + u'>';
            info.defaultParameter = expr::tagDefault(tag);
            info.takesParameter = !info.defaultParameter.isEmpty();
            const TagText text = textFor(tag, info.description);
            info.help = helpText(info.tag, info.description, info.defaultParameter, text);
            list.push_back(std::move(info));
        }
        for (const metadata::FamilyInfo& family : metadata::fieldFamilies()) {
            for (const metadata::FieldInfo& field : family.fields)
                list.push_back(fieldInfo(family, field));
        }
        return list;
    }();
    return catalogue;
}

const MetaVariableInfo* metaVariableInfo(const QString& tag)
{
    static const QHash<QString, const MetaVariableInfo*> index = [] {
        QHash<QString, const MetaVariableInfo*> byTag;
        for (const MetaVariableInfo& info : metaVariableCatalogue())
            byTag.insert(info.tag, &info);
        return byTag;
    }();
    return index.value(tag.toUpper(), nullptr);
}

QString metaVariableParameter(const SettingsStore& settings, const MetaVariableInfo& info)
{
    if (!info.hasParameter())
        return {};
    return expr::decodeSpaces(settings.readString(keys::kUnitVariable, info.tag, info.defaultParameter));
}

void setMetaVariableParameter(SettingsStore& settings, const MetaVariableInfo& info, const QString& value)
{
    if (info.hasParameter())
        settings.writeString(keys::kUnitVariable, info.tag, encodeEdgeSpaces(value));
}

QString encodeEdgeSpaces(const QString& value)
{
    qsizetype first = 0;
    qsizetype end = value.size();
    while (first < end && value[first] == u' ')
        ++first;
    while (end > first && value[end - 1] == u' ')
        --end;
    const QString twenty = QStringLiteral("<20>");
    return twenty.repeated(first) + value.sliced(first, end - first) + twenty.repeated(value.size() - end);
}

}  // namespace qp
