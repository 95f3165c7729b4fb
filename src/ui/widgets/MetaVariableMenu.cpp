#include "ui/widgets/MetaVariableMenu.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QMenu>

#include <memory>

#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "expressions/TagParts.h"
#include "ui/dialogs/MetaVariableWarningForms.h"

namespace qp::ui {

namespace {

const QString kIgnoreHashWarning = QStringLiteral("IgnoreUseHashUnitVariableWarning");
const QString kIgnoreFolderWarning = QStringLiteral("IgnoreUseFindFolderUnitVariableWarning");

QString trMenu(const char* text) { return QCoreApplication::translate("MetaVariableMenu", text); }

QString bracketed(int tag) { return QLatin1Char('<') + QLatin1String(expr::tagName(tag)) + QLatin1Char('>'); }

int tagIndex(const QString& tag)
{
    if (tag.size() < 3 || !tag.startsWith(u'<') || !tag.endsWith(u'>'))
        return -1;
    const QByteArray name = tag.mid(1, tag.size() - 2).toUpper().toLatin1();
    return expr::findTag(name.constData(), int(name.size()));
}

bool isHashTag(int tag) { return tag == expr::TCrc32 || tag == expr::TMd5 || tag == expr::TSha1; }

bool isFolderTag(int tag)
{
    return tag == expr::TDiAllNum || tag == expr::TDiFileNum || tag == expr::TDiDirNum || tag == expr::TDifnSubStr;
}

// What each tag up to "<DIFNSUBSTR>" stands for, in menu order.
QString describe(int tag)
{
    using namespace expr;
    if (tag >= TUser0 && tag <= TUser9)
        return trMenu("用户自定义列表 %1 中本行的内容").arg(tag - TUser0);
    switch (tag) {
    case TFileName: return trMenu("实际文件名（含扩展名）");
    case TCFileName: return trMenu("当前新文件名（含扩展名）");
    case TName: return trMenu("实际文件名（不含扩展名）");
    case TCName: return trMenu("当前新文件名（不含扩展名）");
    case TDotExt: return trMenu("实际扩展名（含“.”）");
    case TDotCExt: return trMenu("当前新扩展名（含“.”）");
    case TExt: return trMenu("实际扩展名（不含“.”）");
    case TCExt: return trMenu("当前新扩展名（不含“.”）");
    case TNCrc32: return trMenu("文件名字符串的 CRC32 值");
    case TNMd5: return trMenu("文件名字符串的 MD5 值");
    case TNSha1: return trMenu("文件名字符串的 SHA1 值");
    case TCrc32: return trMenu("文件内容的 CRC32 值");
    case TMd5: return trMenu("文件内容的 MD5 值");
    case TSha1: return trMenu("文件内容的 SHA1 值");
    case TSize: return trMenu("文件大小");
    case TSpSize: return trMenu("所在文件夹中文件的总大小");
    case TDiSize: return trMenu("文件夹内文件的总大小");
    case TSampleNo: return trMenu("按行号排列的序号");
    case TAttrib: return trMenu("文件属性");
    case TDir: return trMenu("上级文件夹名");
    case TR: return trMenu("随机字符串");
    case TSubStr: return trMenu("实际文件名的子字符串");
    case TCSubStr: return trMenu("当前新文件名的子字符串");
    case TSpAllNum: return trMenu("所在文件夹中的对象数");
    case TSpFileNum: return trMenu("所在文件夹中的文件数");
    case TSpDirNum: return trMenu("所在文件夹中的文件夹数");
    case TDiAllNum: return trMenu("文件夹内的对象数");
    case TDiFileNum: return trMenu("文件夹内的文件数");
    case TDiDirNum: return trMenu("文件夹内的子文件夹数");
    case TListNum: return trMenu("更名文件列表的行数");
    case TDifnSubStr: return trMenu("文件夹内有文件名包含指定字符串时为该字符串");
    default: return {};
    }
}

}  // namespace

qint64 folderTagDepth(const SettingsStore& settings, const QString& tag)
{
    const int index = tagIndex(tag);
    const QString parameter = settings.readString(keys::kUnitVariable, bracketed(index), expr::tagDefault(index));
    return expr::firstNumber(parameter, 0);
}

TagWarning tagWarning(const SettingsStore& settings, const QString& tag)
{
    const int index = tagIndex(tag);
    if (isHashTag(index))
        return settings.readBool(keys::kInterface, kIgnoreHashWarning, false) ? TagWarning::None : TagWarning::Hash;
    if (isFolderTag(index)) {
        if (settings.readBool(keys::kInterface, kIgnoreFolderWarning, false))
            return TagWarning::None;
        // Depth 1 looks at the folder's own entries only, which costs one listing.
        return folderTagDepth(settings, tag) == 1 ? TagWarning::None : TagWarning::FolderTraversal;
    }
    return TagWarning::None;
}

MetaVariableInserter::MetaVariableInserter(Session& session, QWidget* dialogParent)
    : QObject(dialogParent)
    , m_session(session)
    , m_dialogParent(dialogParent)
{
}

QMenu* MetaVariableInserter::createMenu(QLineEdit* target, QWidget* parent)
{
    using namespace expr;
    auto* menu = new QMenu(parent);
    auto addTags = [&](QMenu* into, int first, int last, auto text) {
        for (int tag = first; tag <= last; ++tag) {
            QAction* action = into->addAction(text(tag));
            action->setData(bracketed(tag));
            connect(action, &QAction::triggered, this, [this, target, tag] { insert(target, bracketed(tag)); });
        }
    };
    auto described = [](int tag) { return bracketed(tag) + QStringLiteral("  ") + describe(tag); };

    const struct {
        const char* title;
        int first;
        int last;
    } plain[] = {
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "文件名与扩展名"), TFileName, TCExt},
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "用户自定义元变量"), TUser0, TUser9},
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "文件名校验值"), TNCrc32, TNSha1},
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "文件内容校验值"), TCrc32, TSha1},
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "大小"), TSize, TDiSize},
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "序号、属性、文件夹与子串"), TSampleNo, TCSubStr},
        {QT_TRANSLATE_NOOP("MetaVariableMenu", "数量与查找"), TSpAllNum, TDifnSubStr},
    };
    for (const auto& group : plain)
        addTags(menu->addMenu(trMenu(group.title)), group.first, group.last, described);

    // The date and time tags: eight groups of the same shape.
    static const char* const dateTitles[] = {
        QT_TRANSLATE_NOOP("MetaVariableMenu", "当前日期"), QT_TRANSLATE_NOOP("MetaVariableMenu", "当前时间"),
        QT_TRANSLATE_NOOP("MetaVariableMenu", "修改日期"), QT_TRANSLATE_NOOP("MetaVariableMenu", "修改时间"),
        QT_TRANSLATE_NOOP("MetaVariableMenu", "创建日期"), QT_TRANSLATE_NOOP("MetaVariableMenu", "创建时间"),
        QT_TRANSLATE_NOOP("MetaVariableMenu", "访问日期"), QT_TRANSLATE_NOOP("MetaVariableMenu", "访问时间")};
    static const char* const dateParts[] = {
        QT_TRANSLATE_NOOP("MetaVariableMenu", "年"), QT_TRANSLATE_NOOP("MetaVariableMenu", "月"),
        QT_TRANSLATE_NOOP("MetaVariableMenu", "日"), QT_TRANSLATE_NOOP("MetaVariableMenu", "星期"),
        QT_TRANSLATE_NOOP("MetaVariableMenu", "日期")};
    static const char* const timeParts[] = {
        QT_TRANSLATE_NOOP("MetaVariableMenu", "时"), QT_TRANSLATE_NOOP("MetaVariableMenu", "分"),
        QT_TRANSLATE_NOOP("MetaVariableMenu", "秒"), QT_TRANSLATE_NOOP("MetaVariableMenu", "时间")};
    menu->addSeparator();
    int tag = kFirstDateTag;
    for (int group = 0; group < kDateGroupCount; ++group) {
        const bool date = group % 2 == 0;
        const int members = date ? 5 : 4;
        QMenu* sub = menu->addMenu(trMenu(dateTitles[group]));
        const int first = tag;
        addTags(sub, first, first + members - 1, [&](int t) {
            return bracketed(t) + QStringLiteral("  ") + trMenu(date ? dateParts[t - first] : timeParts[t - first]);
        });
        tag += members;
    }
    return menu;
}

bool MetaVariableInserter::confirm(const QString& tag)
{
    SettingsStore& settings = m_session.settings();
    const TagWarning warning = tagWarning(settings, tag);
    if (warning == TagWarning::None)
        return true;

    std::unique_ptr<TUnitVariableWarningForm> form;
    if (warning == TagWarning::Hash)
        form = std::make_unique<TUseHashUnitVariableWarningForm>(m_dialogParent);
    else
        form = std::make_unique<TUseFindFolderUnitVariableWarningForm>(tag, folderTagDepth(settings, tag), m_dialogParent);
    const bool go = m_runner(*form) == QDialog::Accepted;
    if (form->ignoreFromNowOn()) {
        settings.writeBool(keys::kInterface, warning == TagWarning::Hash ? kIgnoreHashWarning : kIgnoreFolderWarning, true);
        m_session.saveSettings();
    }
    return go;
}

bool MetaVariableInserter::insert(QLineEdit* target, const QString& tag)
{
    if (target == nullptr || !confirm(tag))
        return false;
    target->insert(tag);
    target->setFocus();
    return true;
}

}  // namespace qp::ui
