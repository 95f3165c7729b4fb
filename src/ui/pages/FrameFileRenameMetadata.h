// The function page of one metadata field family ("1.M.音乐标签更名", "1.D.照片信息更名",
// "1.C.媒体信息更名" …): a template of field tags, where its result goes, what to do with
// a file that lacks a field, and a picker that lists the fields of the file in the current
// row of the rename list with their values. The same page serves every family; only the
// photo family adds the sources of "<D.DATETAKEN>".
#pragma once

#include "ui/pages/FunctionPage.h"

class QTreeWidget;
class QTreeWidgetItem;

namespace qp::ui {

class TFrameFileRenameMetadata : public FunctionPage {
    Q_OBJECT
public:
    TFrameFileRenameMetadata(Session& session, QChar family, QWidget* parent = nullptr);
    ~TFrameFileRenameMetadata() override;

    QChar family() const { return m_family; }
    // Lists the fields of the file in this row of the rename list (-1: none) in the picker;
    // a hidden page reads the file when it is next shown.
    void showFieldsOf(qsizetype row);
    QTreeWidget* fieldPicker() const { return m_picker; }

protected:
    QString commentOf(const QString& subCode) const override;
    void showEvent(QShowEvent* event) override;

private:
    void build(PageSection& g);
    void buildDateSources(PageSection& g);
    void fillPicker();
    void insertField(QTreeWidgetItem* item);

    QChar m_family;
    HistoryComboBox* m_template = nullptr;
    QTreeWidget* m_picker = nullptr;
    QLabel* m_pickerFile = nullptr;
    qsizetype m_row = -1;
    bool m_pickerStale = true;
};

}  // namespace qp::ui
