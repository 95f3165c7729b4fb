// The function page of the extension family: seven sections, "1.E.1.添加替换扩展名" to
// "1.E.7.扩展名高级变更", in one scrollable frame. As on every function page, each section
// starts at "保持不变"; choosing another option or changing a control of the section records
// its command (E101 … E705) and runs it, so the new extensions follow as the user types.
#pragma once

#include "ui/pages/FunctionPage.h"

namespace qp::ui {

class TFrameFileRenameExt : public FunctionPage {
    Q_OBJECT
public:
    explicit TFrameFileRenameExt(Session& session, QWidget* parent = nullptr);
    ~TFrameFileRenameExt() override;

protected:
    QString commentOf(const QString& subCode) const override;

private:
    void buildE1(PageSection& g);
    void buildE2(PageSection& g);
    void buildE3(PageSection& g);
    void buildE4(PageSection& g);
    void buildE5(PageSection& g);
    void buildE6(PageSection& g);
    void buildE7(PageSection& g);
};

}  // namespace qp::ui
