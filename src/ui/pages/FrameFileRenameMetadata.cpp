#include "ui/pages/FrameFileRenameMetadata.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "commands/MetadataCommands.h"
#include "core/Session.h"
#include "expressions/FieldTags.h"
#include "metadata/FieldCatalogue.h"
#include "ui/widgets/HistoryComboBox.h"
#include "ui/widgets/MetaVariableMenu.h"

namespace qp::ui {

namespace {

// The tag a picker line inserts: a library key line ("<D.KEY>(Exif.Image.Make)") inserts
// its tag, whose parameter names the key.
QString tagOfLine(const QString& text)
{
    const qsizetype close = text.indexOf(u'>');
    return close < 0 ? text : text.left(close + 1);
}

}  // namespace

TFrameFileRenameMetadata::TFrameFileRenameMetadata(Session& session, QChar family, QWidget* parent)
    : FunctionPage(session, QStringLiteral("TFrameFileRenameMetadata") + family, QStringLiteral("ScrollBoxMetadata") + family,
                   parent)
    , m_family(family)
{
    const metadata::FamilyInfo* info = metadata::familyOf(family);
    const QString title = info ? info->title : QString(family);
    build(addSection(family + QStringLiteral("1"), QStringLiteral("1.%1.1.%2").arg(family).arg(tr("按%1更名").arg(title))));
    finishSections();
}

TFrameFileRenameMetadata::~TFrameFileRenameMetadata() = default;

QString TFrameFileRenameMetadata::commentOf(const QString& subCode) const { return metadataCommandComment(subCode); }

void TFrameFileRenameMetadata::build(PageSection& g)
{
    const QString f = m_family;
    auto name = [&](const char* kind, const char* what) { return QLatin1String(kind) + f + u'1' + QLatin1String(what); };
    auto key = [&](const char* meaning) { return f + QStringLiteral("1_") + QLatin1String(meaning); };
    const QStringList codes = metadataCommandCodes(m_family);

    g.keepRow();
    g.row({g.option(name("RadioButton", "Whole"), tr("整个文件名"), codes[0], key("Whole")),
           g.option(name("RadioButton", "Before"), tr("文件名之前"), codes[1], key("Before")),
           g.option(name("RadioButton", "After"), tr("文件名之后"), codes[2], key("After"))});
    g.row({g.option(name("RadioButton", "Insert"), tr("插入位置"), codes[3], key("Insert")),
           g.spin(name("SpinBox", "InsertPos"), key("InsertPos"), 0, 255, 0),
           g.check(name("CheckBox", "InsertPosFromRight"), tr("从后计算"), key("InsertPosFromRight"), false)});

    const metadata::FamilyInfo* info = metadata::familyOf(m_family);
    m_template = g.text(name("ComboBox", "Template"), key("Template"), info ? info->exampleTemplate : QString(), 12);
    PageSection::widen(g.row({g.label(tr("模板")), m_template, g.metaButton(m_template)}, true), m_template);

    QComboBox* missing = g.list(name("ComboBox", "Missing"), key("Missing"),
                                {tr("该对象保持不变"), tr("该字段留空"), tr("使用替代文字")}, 0);
    g.row({g.label(tr("缺少字段时")), missing}, true);
    g.row({g.label(tr("替代文字")), g.line(name("Edit", "MissingText"), key("MissingText"), tr("未知"), 8)}, 2);
    if (m_family == u'D')
        buildDateSources(g);

    m_pickerFile = g.hint(tr("选中更名列表中的文件，这里列出它的字段；双击插入到模板"));
    m_pickerFile->setObjectName(name("Label", "PickerFile"));
    m_pickerFile->setWordWrap(true);
    g.row({m_pickerFile}, true);
    m_picker = new QTreeWidget(g.box);
    m_picker->setObjectName(name("TreeWidget", "Fields"));
    m_picker->setColumnCount(2);
    m_picker->setHeaderLabels({tr("元变量"), tr("值")});
    m_picker->setRootIsDecorated(false);
    m_picker->setUniformRowHeights(true);
    m_picker->setMinimumHeight(260);
    m_picker->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    connect(m_picker, &QTreeWidget::itemDoubleClicked, this, &TFrameFileRenameMetadata::insertField);
    g.rows->addWidget(m_picker, 1);
}

void TFrameFileRenameMetadata::buildDateSources(PageSection& g)
{
    g.row({g.label(tr("拍摄时间：EXIF 原始时间，其次"))}, true);
    g.row({g.check(QStringLiteral("CheckBoxD1DateDigitized"), tr("数字化时间"), QStringLiteral("D1_DateDigitized"), true),
           g.check(QStringLiteral("CheckBoxD1DateXmp"), tr("XMP 创建时间"), QStringLiteral("D1_DateXmp"), true)},
          2);
    g.row({g.check(QStringLiteral("CheckBoxD1DateFileTime"), tr("文件修改时间"), QStringLiteral("D1_DateFileTime"), false)}, 2);
}

void TFrameFileRenameMetadata::showFieldsOf(qsizetype row)
{
    m_row = row;
    m_pickerStale = true;
    if (isVisible())
        fillPicker();
}

void TFrameFileRenameMetadata::showEvent(QShowEvent* event)
{
    FunctionPage::showEvent(event);
    if (m_pickerStale)
        fillPicker();
}

void TFrameFileRenameMetadata::fillPicker()
{
    m_pickerStale = false;
    m_picker->clear();
    const RenameList& list = m_session.renameList();
    if (m_row < 0 || m_row >= list.size() || list.at(m_row).isFolder) {
        m_pickerFile->setText(tr("选中更名列表中的文件，这里列出它的字段；双击插入到模板"));
        return;
    }
    const FileEntry& row = list.at(m_row);
    const auto read = fieldCacheOf(m_session).readEverything(row.fullPath(), legacyEncodingOf(m_session.settings()),
                                                             QString(m_family));
    for (const auto& [family, fields] : read) {
        for (const FieldLine& line : fieldLines(family, fields)) {
            auto* item = new QTreeWidgetItem(m_picker, {line.tag, QString(line.value).simplified()});
            item->setToolTip(1, line.value);
        }
    }
    m_pickerFile->setText(m_picker->topLevelItemCount() > 0 ? tr("%1 的字段（双击插入到模板）：").arg(row.fileName())
                                                            : tr("%1 没有可读取的字段。").arg(row.fileName()));
}

void TFrameFileRenameMetadata::insertField(QTreeWidgetItem* item)
{
    if (item)
        inserter()->insert(m_template->lineEdit(), tagOfLine(item->text(0)));
}

}  // namespace qp::ui
