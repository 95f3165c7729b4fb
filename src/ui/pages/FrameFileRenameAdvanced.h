// The page of the advanced commands that exist so far: "1.A.1.正则表达式",
// "1.A.3.汉字转拼音", "1.A.4.数字与汉字的转换", "1.A.11.文件名对照列表更名" and the two
// script sections "1.A.12" and "1.A.13" (ScriptSections.h). Like every
// function page, each section starts at "保持不变" and records its command as the user
// chooses an option or changes a control.
#pragma once

#include "ui/pages/FunctionPage.h"

class QLabel;
class QPlainTextEdit;

namespace qp::ui {

class TFrameFileRenameAdvanced : public FunctionPage {
    Q_OBJECT
public:
    explicit TFrameFileRenameAdvanced(Session& session, QWidget* parent = nullptr);
    ~TFrameFileRenameAdvanced() override;

    // The old/new list as it stands in the editor, one line per entry.
    QStringList nameListLines() const;

protected:
    QString commentOf(const QString& subCode) const override;

private:
    void buildA1(PageSection& g);
    void buildA3(PageSection& g);
    void buildA4(PageSection& g);
    void buildA11(PageSection& g);

    void loadNameList();
    void fillNameListFromRows();
    // Replaces the editor's text as one undoable edit and turns the list command on.
    void putNameList(const QString& text);
    void updatePairCount();

    PageSection* m_listSection = nullptr;
    QPlainTextEdit* m_nameList = nullptr;
    QLabel* m_pairCount = nullptr;
};

}  // namespace qp::ui
