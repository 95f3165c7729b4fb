#include "ui/dialogs/GoRenameOKForm.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/PathText.h"

namespace qp::ui {

TGoRenameOKForm::TGoRenameOKForm(const QString& summary, const QString& snapshotPath, bool systemDriveNote,
                                 bool alwaysShow, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TGoRenameOKForm"));
    setWindowTitle(tr("批量更名完成"));
    setMinimumWidth(520);
    auto* layout = new QVBoxLayout(this);
    auto* headline = new QLabel(tr("对象批量更名完成！"), this);
    QFont big = headline->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    headline->setFont(big);
    layout->addWidget(headline);
    layout->addWidget(new QLabel(summary, this));
    auto* where = new QLabel(tr("快照文件：") + nativeSeparators(snapshotPath), this);
    where->setObjectName(QStringLiteral("snapshot"));
    where->setWordWrap(true);
    where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(where);
    auto* note = new QLabel(tr("注：快照文件可以让你在关闭软件后仍可撤销此次更名操作。"), this);
    note->setWordWrap(true);
    layout->addWidget(note);
    if (systemDriveNote) {
        auto* uac = new QLabel(tr("注意：系统已开启用户帐户控制（UAC），系统盘中的对象可能因权限不足而更名失败。"
                                  "以管理员身份运行本程序即可解决。"),
                               this);
        uac->setObjectName(QStringLiteral("uac"));
        uac->setWordWrap(true);
        uac->setStyleSheet(QStringLiteral("color: #b00000;"));
        layout->addWidget(uac);
    }
    m_alwaysShow = new QCheckBox(tr("更名完毕后始终显示此对话框"), this);
    m_alwaysShow->setChecked(alwaysShow);
    layout->addWidget(m_alwaysShow);

    auto* save = new QPushButton(tr("保存本次更名快照(&S)"), this);
    save->setObjectName(QStringLiteral("save"));
    auto* close = new QPushButton(tr("关闭(&C)"), this);
    close->setObjectName(QStringLiteral("close"));
    close->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(save);
    buttons->addWidget(close);
    layout->addLayout(buttons);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(save, &QPushButton::clicked, this, [this] {
        if (m_save && m_save())
            accept();
    });
}

bool TGoRenameOKForm::alwaysShow() const { return m_alwaysShow->isChecked(); }

}  // namespace qp::ui
