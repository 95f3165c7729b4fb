#include "ui/pages/FrameFileRenameExt.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <climits>

#include "commands/ExtensionCommands.h"
#include "core/Session.h"
#include "ui/widgets/HistoryComboBox.h"

namespace qp::ui {

TFrameFileRenameExt::TFrameFileRenameExt(Session& session, QWidget* parent)
    : FunctionPage(session, QStringLiteral("TFrameFileRenameExt"), QStringLiteral("ScrollBoxExt"), parent)
{
    // Every control of a section records the section directly: no section needs more than
    // the shared recording.
    buildE1(addSection(QStringLiteral("E1"), tr("1.E.1.添加替换扩展名")));
    buildE2(addSection(QStringLiteral("E2"), tr("1.E.2.删除扩展名")));
    buildE3(addSection(QStringLiteral("E3"), tr("1.E.3.扩展名自动编号")));
    buildE4(addSection(QStringLiteral("E4"), tr("1.E.4.扩展名字母大小写")));
    buildE5(addSection(QStringLiteral("E5"), tr("1.E.5.扩展名正则表达式")));
    buildE6(addSection(QStringLiteral("E6"), tr("1.E.6.扩展名固定")));
    buildE7(addSection(QStringLiteral("E7"), tr("1.E.7.扩展名高级变更")));
    finishSections();
}

TFrameFileRenameExt::~TFrameFileRenameExt() = default;

QString TFrameFileRenameExt::commentOf(const QString& subCode) const { return extensionCommandComment(subCode); }

// ---------------------------------------------------------------------------------------
// The sections

// The panel beside the rename list is narrow, so every section starts with "保持不变" and
// "Ok" on a line of their own and keeps its other lines short.

void TFrameFileRenameExt::buildE1(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonE1AddLeft"), tr("扩展名之前添加"), QStringLiteral("E101"), QStringLiteral("E1_AddLeft")),
           g.option(QStringLiteral("RadioButtonE1AddRight"), tr("扩展名之后添加"), QStringLiteral("E102"), QStringLiteral("E1_AddRight"))});
    g.row({g.option(QStringLiteral("RadioButtonE1Search"), tr("查找替换"), QStringLiteral("E103"), QStringLiteral("E1_Search"))});
    // One text serves all three: what is added, or what the found text becomes.
    g.row({g.label(tr("内容")), g.text(QStringLiteral("ComboBoxE1Content"), QStringLiteral("E1_Content"), {}, 12)}, true);
    g.row({g.label(tr("查找")), g.text(QStringLiteral("ComboBoxE1Search"), QStringLiteral("E1_SearchStr"), {}, 12),
           g.check(QStringLiteral("CheckBoxE1CaseFlag"), tr("区分大小写"), QStringLiteral("E1_CaseFlag"), false)},
          true);
    g.row({g.hint(tr("查找替换时，找到的文字换成“内容”"))}, true);
}

void TFrameFileRenameExt::buildE2(PageSection& g)
{
    g.keepRow();
    // Emptying and dropping the extension share one stored selector; the sub-code tells
    // them apart.
    QRadioButton* clear = g.option(QStringLiteral("RadioButtonE2ClearExt"), tr("清空整个扩展名"), QStringLiteral("E201"), {});
    QRadioButton* drop = g.option(QStringLiteral("RadioButtonE2DelExt"), tr("删除整个扩展名"), QStringLiteral("E202"), {});
    g.addWriter([clear, drop](SettingsStore& s, const QString& section) {
        s.writeBool(section, QStringLiteral("E2_DelExt"), clear->isChecked() || drop->isChecked());
    });
    g.row({clear, drop});
    g.row({g.hint(tr("删除后，名称的最后一段成为扩展名"))}, true);

    g.row({g.option(QStringLiteral("RadioButtonE2DelExtChar"), tr("从位置"), QStringLiteral("E203"), QStringLiteral("E2_DelExtChar")),
           g.spin(QStringLiteral("SpinBoxE2DelExtCharFrom"), QStringLiteral("E2_DelExtCharFrom"), 1, 256, 1),
           g.list(QStringLiteral("ComboBoxE2DelOrKeep"), QStringLiteral("E2_DelOrKeep"), {tr("删除"), tr("保留")}, 0),
           g.spin(QStringLiteral("SpinBoxE2DelExtCharTo"), QStringLiteral("E2_DelExtCharTo"), 1, 256, 1), g.label(tr("个字符"))});
    g.row({g.check(QStringLiteral("CheckBoxE2DelExtCharFromRight"), tr("从后计算"), QStringLiteral("E2_DelExtCharFromRight"), false)}, true);
}

void TFrameFileRenameExt::buildE3(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonE3AutoNumPos"), tr("插入位置"), QStringLiteral("E301"), QStringLiteral("E3_AutoNumPos")),
           g.spin(QStringLiteral("SpinBoxE3InsertPos"), QStringLiteral("E3_InsertPos"), 0, 255, 0), g.hint(tr("0 为最前"))});
    g.row({g.label(tr("始于")), g.spin(QStringLiteral("SpinBoxE3Start"), QStringLiteral("E3_Start"), INT_MIN, INT_MAX, 1),
           g.label(tr("增量")), g.spin(QStringLiteral("SpinBoxE3Increment"), QStringLiteral("E3_Increment"), INT_MIN, INT_MAX, 1)},
          true);

    QButtonGroup* form = g.newChoiceSet();
    g.row({g.label(tr("编号")),
           g.choice(form, QStringLiteral("RadioButtonE3Digit"), tr("数字"), QStringLiteral("E3_Digit"), true),
           g.choice(form, QStringLiteral("RadioButtonE3LowerCase"), tr("小写字母"), QStringLiteral("E3_LowerCase"), false),
           g.choice(form, QStringLiteral("RadioButtonE3UpperCase"), tr("大写字母"), QStringLiteral("E3_UpperCase"), false)},
          true);
    QButtonGroup* fill = g.newChoiceSet();
    g.row({g.label(tr("位数")), g.spin(QStringLiteral("SpinBoxE3DigitUnits"), QStringLiteral("E3_DigitUnits"), 1, 255, 1),
           g.label(tr("补位符")),
           g.choice(fill, QStringLiteral("RadioButtonE3AutoSupplement"), tr("自动"), QStringLiteral("E3_AutoSupplement"), true),
           g.choice(fill, QStringLiteral("RadioButtonE3ManualSupplement"), tr("自定义"), QStringLiteral("E3_ManualSupplement"), false),
           g.line(QStringLiteral("EditE3SupplementText"), QStringLiteral("E3_SupplementText"), QStringLiteral("0"), 3)},
          true);
}

void TFrameFileRenameExt::buildE4(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonE4AllCaseUpper"), tr("全部大写"), QStringLiteral("E401"), QStringLiteral("E4_AllCaseUpper")),
           g.option(QStringLiteral("RadioButtonE4AllCaseLower"), tr("全部小写"), QStringLiteral("E402"), QStringLiteral("E4_AllCaseLower"))});
}

void TFrameFileRenameExt::buildE5(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonE5Regex"), tr("表达式"), QStringLiteral("E501"), QStringLiteral("E5_Regex")),
           g.text(QStringLiteral("ComboBoxE5Regex"), QStringLiteral("E5_RegexText"), {}, 14)});
    g.row({g.label(tr("替换为")), g.text(QStringLiteral("ComboBoxE5RegexReplace"), QStringLiteral("E5_RegexReplaceText"), {}, 14)}, true);
    g.row({g.hint(tr("作用于去掉“.”的扩展名，可用 $1 引用分组"))}, true);
}

void TFrameFileRenameExt::buildE6(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonE6FixExt"), tr("固定为"), QStringLiteral("E601"), QStringLiteral("E6_FixExt")),
           g.text(QStringLiteral("ComboBoxE6FixExt"), QStringLiteral("E6_FixExtName"), {}, 10)});
    g.row({g.hint(tr("不含开头的“.”，例如 txt"))}, true);
}

void TFrameFileRenameExt::buildE7(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonE7AddNewExt"), tr("添加新扩展名"), QStringLiteral("E701"), QStringLiteral("E7_AddNewExt")),
           g.text(QStringLiteral("ComboBoxE7NewExt"), QStringLiteral("E7_AddNewExtStr"), {}, 8)});
    g.row({g.hint(tr("原扩展名并入文件名"))}, true);
    g.row({g.option(QStringLiteral("RadioButtonE7ReplaceDot"), tr("替换分界符“.”为"), QStringLiteral("E702"), QStringLiteral("E7_ReplaceDot")),
           g.text(QStringLiteral("ComboBoxE7ReplaceDotStr"), QStringLiteral("E7_ReplaceDotStr"), {}, 8)});
    g.row({g.option(QStringLiteral("RadioButtonE7ReplaceStr"), tr("查找"), QStringLiteral("E703"), QStringLiteral("E7_ReplaceStr")),
           g.text(QStringLiteral("ComboBoxE7ReplaceStr"), QStringLiteral("E7_ReplaceStrStr"), {}, 8), g.label(tr("并用“.”替换"))});
    g.row({g.hint(tr("整体文件名从右往左查找第一个匹配字符（串）"))}, true);
    g.row({g.option(QStringLiteral("RadioButtonE7MoveDot"), tr("移动分界符“.”"), QStringLiteral("E704"), QStringLiteral("E7_MoveDot")),
           g.list(QStringLiteral("ComboBoxE7MoveDotLeftRight"), QStringLiteral("E7_MoveDotLeftRight"), {tr("向左"), tr("向右")}, 0),
           g.spin(QStringLiteral("SpinBoxE7MoveDotNum"), QStringLiteral("E7_MoveDotNum"), 1, 255, 1), g.label(tr("个字符"))});

    g.row({g.option(QStringLiteral("RadioButtonE7SmartIDExt"), tr("智能分析文件获取扩展名"), QStringLiteral("E705"), QStringLiteral("E7_SmartIDExt"))});
    // The type is identified from the file's content by the built-in identifier alone, so
    // there is no identifier or definitions file to choose; index 0 stands for it.
    g.addWriter([](SettingsStore& s, const QString& section) { s.writeInt(section, QStringLiteral("E7_SmartIDExtIndex"), 0); });
    g.row({g.hint(tr("按文件内容识别（内置）；无法识别的保持不变"))}, true);
}

}  // namespace qp::ui
