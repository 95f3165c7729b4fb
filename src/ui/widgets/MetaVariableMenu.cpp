#include "ui/widgets/MetaVariableMenu.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QMenu>

#include <memory>

#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "expressions/MetaVariableCatalogue.h"
#include "expressions/TagParts.h"
#include "metadata/FieldCatalogue.h"
#include "ui/dialogs/MetaVariableWarningForms.h"

namespace qp::ui {

namespace {

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

const MetaVariableInfo& infoOf(int tag) { return metaVariableCatalogue()[size_t(tag)]; }

}  // namespace

qint64 folderTagDepth(const SettingsStore& settings, const QString& tag)
{
    const int index = tagIndex(tag);
    if (index < 0)
        return 0;
    return expr::firstNumber(metaVariableParameter(settings, infoOf(index)), 0);
}

TagWarning tagWarning(const SettingsStore& settings, const QString& tag)
{
    const int index = tagIndex(tag);
    if (isHashTag(index))
        return settings.readBool(keys::kInterface, keys::kIgnoreHashWarning, false) ? TagWarning::None : TagWarning::Hash;
    if (isFolderTag(index)) {
        if (settings.readBool(keys::kInterface, keys::kIgnoreFolderWarning, false))
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
        into->setToolTipsVisible(true);
        for (int tag = first; tag <= last; ++tag) {
            QAction* action = into->addAction(text(tag));
            action->setData(bracketed(tag));
            action->setToolTip(infoOf(tag).help);
            connect(action, &QAction::triggered, this, [this, target, tag] { insert(target, bracketed(tag)); });
        }
    };
    auto described = [](int tag) { return bracketed(tag) + QStringLiteral("  ") + infoOf(tag).description; };

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
    menu->addSeparator();
    int tag = kFirstDateTag;
    for (int group = 0; group < kDateGroupCount; ++group) {
        const bool date = group % 2 == 0;
        const int members = date ? 5 : 4;
        addTags(menu->addMenu(trMenu(dateTitles[group])), tag, tag + members - 1, described);
        tag += members;
    }

    // The metadata field tags, one menu per family.
    menu->addSeparator();
    for (const metadata::FamilyInfo& family : metadata::fieldFamilies()) {
        QMenu* fields = menu->addMenu(QStringLiteral("%1 (%2)").arg(family.title, family.letter));
        fields->setToolTipsVisible(true);
        for (const metadata::FieldInfo& field : family.fields) {
            const QString fieldTag = metadata::fieldTag(family.letter, field.name);
            QAction* action = fields->addAction(fieldTag + QStringLiteral("  ") + field.description);
            action->setData(fieldTag);
            if (const MetaVariableInfo* info = metaVariableInfo(fieldTag))
                action->setToolTip(info->help);
            connect(action, &QAction::triggered, this, [this, target, fieldTag] { insert(target, fieldTag); });
        }
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
        const QString& key = warning == TagWarning::Hash ? keys::kIgnoreHashWarning : keys::kIgnoreFolderWarning;
        settings.writeBool(keys::kInterface, key, true);
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
