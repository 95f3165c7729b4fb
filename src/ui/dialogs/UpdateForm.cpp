#include "ui/dialogs/UpdateForm.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace qp::ui {

TUpdateForm::TUpdateForm(const UpdateInfo& info, const QString& current, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TUpdateForm"));
    setWindowTitle(tr("发现新版本"));
    QString facts = tr("Quillet Pro %1 已经发布（当前版本 %2）。").arg(info.version, current);
    if (info.date.isValid())
        facts += u'\n' + tr("发布日期：%1").arg(info.date.toString(Qt::ISODate));
    facts += u'\n' + tr("下载页面：%1").arg(info.url.toDisplayString());
    if (!info.sha256.isEmpty())
        facts += u'\n' + tr("SHA-256：%1").arg(info.sha256);
    auto* label = new QLabel(facts, this);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* notes = new QPlainTextEdit(info.notes, this);
    notes->setReadOnly(true);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* open = buttons->addButton(tr("打开下载页面"), QDialogButtonBox::AcceptRole);
    QPushButton* skip = buttons->addButton(tr("跳过此版本"), QDialogButtonBox::DestructiveRole);
    QPushButton* later = buttons->addButton(tr("以后再说"), QDialogButtonBox::RejectRole);
    open->setDefault(true);
    connect(open, &QPushButton::clicked, this, [this] {
        m_choice = OpenPage;
        accept();
    });
    connect(skip, &QPushButton::clicked, this, [this] {
        m_choice = Skip;
        accept();
    });
    connect(later, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(notes, 1);
    layout->addWidget(buttons);
    resize(520, 360);
}

}  // namespace qp::ui
