#include "ui/dialogs/WelcomeForm.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/CommandFile.h"
#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"
#include "core/UpdateInfo.h"

namespace qp::ui {

namespace {

const QString kShowWelcome = QStringLiteral("ShowWelcome");

}  // namespace

bool TWelcomeForm::showsAtStart(const SettingsStore& settings)
{
    return settings.readBool(keys::kInterface, kShowWelcome, true);
}

TWelcomeForm::TWelcomeForm(SettingsStore& settings, QWidget* parent)
    : QDialog(parent)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("TWelcomeForm"));
    setWindowTitle(tr("欢迎使用 Quillet Pro"));

    auto* tips = new QLabel(tr("<b>三步完成批量更名：</b><ol>"
                               "<li>把文件或文件夹拖到右边的列表，或用“文件”菜单添加；</li>"
                               "<li>在左边的功能页上设置更名方式，新文件名立即显示在列表中；</li>"
                               "<li>按 F9 应用更名。改错了？按 Ctrl+Z 撤销。</li></ol>"
                               "在文件管理器里选中文件后右键“用 Quillet Pro 批量更名”，也能直接打开它们"
                               "（先运行一次 <tt>QuilletPro -i</tt>）。"),
                            this);
    tips->setObjectName(QStringLiteral("LabelTips"));
    tips->setWordWrap(true);

    auto* recentBox = new QGroupBox(tr("最近的批处理命令文件（双击载入）"), this);
    m_recent = new QListWidget(recentBox);
    m_recent->setObjectName(QStringLiteral("ListRecent"));
    for (const RecentCommandFile& entry : recentCommandFileMenu(settings)) {
        auto* item = new QListWidgetItem(entry.caption, m_recent);
        item->setData(Qt::UserRole, entry.path);
    }
    if (m_recent->count() == 0)
        m_recent->addItem(tr("（还没有）"));
    connect(m_recent, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        m_chosen = item->data(Qt::UserRole).toString();
        if (!m_chosen.isEmpty())
            accept();
    });
    auto* recentLayout = new QVBoxLayout(recentBox);
    recentLayout->addWidget(m_recent);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tips);
    layout->addWidget(recentBox, 1);
    const UpdateSettings update = UpdateSettings::read(settings);
    if (!update.asked) {
        m_update = new QCheckBox(tr("每 %1 天检查一次是否有新版本（只读取一个很小的说明文件，从不自动下载）")
                                     .arg(update.intervalDays),
                                 this);
        m_update->setObjectName(QStringLiteral("CheckBoxUpdate"));
        layout->addWidget(m_update);
    }
    m_dontShow = new QCheckBox(tr("不再显示"), this);
    m_dontShow->setObjectName(QStringLiteral("CheckBoxDontShow"));
    m_dontShow->setChecked(!showsAtStart(settings));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(tr("开始使用"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(m_dontShow);
    layout->addWidget(buttons);
    resize(560, 460);
}

void TWelcomeForm::done(int result)
{
    m_settings.writeBool(keys::kInterface, kShowWelcome, !m_dontShow->isChecked());
    if (m_update) {
        UpdateSettings update = UpdateSettings::read(m_settings);
        update.asked = true;
        update.enabled = m_update->isChecked();
        update.write(m_settings);
    }
    QDialog::done(result);
}

}  // namespace qp::ui
