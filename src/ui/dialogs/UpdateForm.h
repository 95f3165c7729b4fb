// "发现新版本": what a newer release brings, with "打开下载页面" (opens the page in the
// browser; nothing is downloaded here), "跳过此版本" and "以后再说".
#pragma once

#include <QDialog>

#include "core/UpdateInfo.h"

namespace qp::ui {

class TUpdateForm : public QDialog {
    Q_OBJECT
public:
    enum Choice { Later, OpenPage, Skip };

    TUpdateForm(const UpdateInfo& info, const QString& current, QWidget* parent = nullptr);
    Choice choice() const { return m_choice; }

private:
    Choice m_choice = Later;
};

}  // namespace qp::ui
