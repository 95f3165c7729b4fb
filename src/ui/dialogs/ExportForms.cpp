#include "ui/dialogs/ExportForms.h"

#include <QAbstractTableModel>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>

#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "execution/FileOperations.h"
#include "execution/RenameRunner.h"
#include "ui/GuiInteraction.h"
#include "ui/dialogs/FileDialogs.h"

namespace qp::ui {

namespace {

const QString kHintTitle = QStringLiteral("温馨提示");
const QString kSnapshotFolderKey = QStringLiteral("OpenDialogInitialDirMMenuGoExportSnapshot");
const QString kContrastFolderKey = QStringLiteral("OpenDialogInitialDirMMenuFileExportContrast");

QPushButton* dialogButton(QWidget* parent, const QString& name, const QString& caption)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QLabel* wrappingLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// The snapshot viewer

// The lines of one snapshot, with whether each object is where the snapshot says.
class SnapshotRowsModel : public QAbstractTableModel {
public:
    enum Column { ColNumber, ColExists, ColNewPath, ColOldName, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setRows(std::vector<SnapshotLine> lines, std::vector<bool> exists)
    {
        beginResetModel();
        m_lines = std::move(lines);
        m_exists = std::move(exists);
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(m_lines.size()); }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : ColumnCount; }

    QVariant data(const QModelIndex& index, int role) const override
    {
        const size_t row = size_t(index.row());
        if (role == Qt::CheckStateRole && index.column() == ColExists)
            return m_exists[row] ? Qt::Checked : Qt::Unchecked;
        if (role != Qt::DisplayRole)
            return {};
        switch (index.column()) {
        case ColNumber: return index.row() + 1;
        case ColNewPath: return nativeSeparators(m_lines[row].path);
        case ColOldName: return m_lines[row].name;
        default: return {};
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return QAbstractTableModel::headerData(section, orientation, role);
        static const char* const captions[] = {"序号", "存在", "批量更名操作后的新文件名（含路径）", "批量更名操作前的旧文件名"};
        return QString::fromUtf8(captions[section]);
    }

private:
    std::vector<SnapshotLine> m_lines;
    std::vector<bool> m_exists;
};

TExportSnapshotForm::TExportSnapshotForm(Session& session, GuiInteraction& ui, FileOperations& disk, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_ui(ui)
    , m_disk(disk)
{
    setObjectName(QStringLiteral("TExportSnapshotForm"));
    setWindowTitle(tr("查看和导出快照文件"));
    resize(860, 520);
    const int applies = session.applyCounter();

    auto* layout = new QVBoxLayout(this);
    auto* headline = new QLabel(tr("程序本次运行过程中已进行了 %1 次批量更名操作。").arg(applies), this);
    headline->setObjectName(QStringLiteral("headline"));
    layout->addWidget(headline);

    auto* chooser = new QHBoxLayout;
    chooser->addWidget(new QLabel(tr("将第"), this));
    m_number = new QSpinBox(this);
    m_number->setObjectName(QStringLiteral("SpinEditApplyNumber"));
    m_number->setRange(applies > 0 ? 1 : 0, applies);
    m_number->setEnabled(applies > 0);
    chooser->addWidget(m_number);
    chooser->addWidget(new QLabel(tr("次批量更名操作导出为快照文件，此次批量更名操作情况如下表："), this));
    chooser->addStretch(1);
    layout->addLayout(chooser);

    m_model = new SnapshotRowsModel(this);
    m_grid = new QTableView(this);
    m_grid->setObjectName(QStringLiteral("NextGridAutoSnapshot"));
    m_grid->setModel(m_model);
    m_grid->verticalHeader()->hide();
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 6);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setColumnWidth(SnapshotRowsModel::ColNumber, 56);
    m_grid->setColumnWidth(SnapshotRowsModel::ColExists, 48);
    m_grid->setColumnWidth(SnapshotRowsModel::ColNewPath, 460);
    layout->addWidget(m_grid, 1);

    auto* note = wrappingLabel(tr("说明：每次批量更名操作后都会自动保存一个快照文件，保存一份快照文件后，即使关闭了本程序，"
                                  "也可以通过“导入更名方案或快照文件”载入它来撤销那次更名。"
                                  "导出快照文件应该从最后一次更名操作开始，否则可能会导致对象不存在的错误。"),
                               this);
    note->setObjectName(QStringLiteral("notes"));
    layout->addWidget(note);

    m_save = dialogButton(this, QStringLiteral("save"), tr("保存本次更名快照(&S)"));
    auto* fit = dialogButton(this, QStringLiteral("fit"), tr("自动列宽(&A)"));
    auto* close = dialogButton(this, QStringLiteral("close"), tr("退出(&X)"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(fit);
    buttons->addStretch(1);
    buttons->addWidget(m_save);
    buttons->addWidget(close);
    layout->addLayout(buttons);

    connect(m_save, &QPushButton::clicked, this, &TExportSnapshotForm::save);
    connect(fit, &QPushButton::clicked, this, &TExportSnapshotForm::fitColumns);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_number, &QSpinBox::valueChanged, this, &TExportSnapshotForm::showApply);

    // The newest apply is the one to export first.
    m_number->setValue(applies);
    showApply(applies);
}

TExportSnapshotForm::~TExportSnapshotForm() = default;

int TExportSnapshotForm::shownApply() const { return m_number->value(); }

QString TExportSnapshotForm::snapshotFile() const
{
    const int number = shownApply();
    const std::vector<int>& stack = m_session.undoStack();
    return number > 0 && size_t(number) <= stack.size()
               ? snapshotPath(settingsFolderOf(m_session), m_session.runStamp(), stack[size_t(number - 1)])
               : QString();
}

void TExportSnapshotForm::showApply(int number)
{
    if (number != m_number->value()) {
        m_number->setValue(number);  // comes back here through valueChanged
        return;
    }
    std::vector<SnapshotLine> lines;
    if (const auto data = number > 0 ? readSnapshot(snapshotFile(), m_disk) : std::nullopt) {
        // A journal left by an interrupted apply is shown with where its objects are now.
        lines = data->unfinished ? resolveJournal(*data, m_disk) : data->lines;
    }
    std::vector<bool> exists;
    exists.reserve(lines.size());
    for (const SnapshotLine& line : lines)
        exists.push_back(m_disk.stat(line.path).has_value());
    m_model->setRows(std::move(lines), std::move(exists));
    // Only a snapshot that could be read is offered for saving.
    m_save->setEnabled(m_model->rowCount() > 0);
}

void TExportSnapshotForm::fitColumns()
{
    m_grid->horizontalHeader()->setStretchLastSection(false);
    m_grid->resizeColumnsToContents();
    m_grid->horizontalHeader()->setStretchLastSection(true);
}

void TExportSnapshotForm::save()
{
    const QString source = snapshotFile();
    const QString target = chooseFile(
        m_ui, this, m_session,
        FileDialogOptions{tr("保存快照文件"), tr("快照文件 (*.txt)"), QStringLiteral("txt"), kSnapshotFolderKey, true});
    if (target.isEmpty())
        return;
    // The snapshot is already UTF-8 and is copied byte for byte, so the copy undoes exactly
    // what the original would.
    const auto bytes = m_disk.readFile(source);
    QString error;
    if (!bytes || !m_disk.writeFileAtomically(target, *bytes, &error)) {
        m_ui.notify(Notice{QStringLiteral("snapshot.copyFailed"), kHintTitle,
                           tr("快照文件导出失败：%1").arg(nativeSeparators(bytes ? target : source)), Icon::Warning});
        return;
    }
    m_ui.notify(Notice{QStringLiteral("snapshot.copied"), kHintTitle, tr("快照文件导出成功！"), Icon::Information});
    accept();
}

// ---------------------------------------------------------------------------------------
// The contrast list

QString contrastSaveFilter(const ContrastOptions& options)
{
    QStringList patterns;
    if (options.text)
        patterns.append(QStringLiteral("*.txt"));
    if (options.spreadsheet)
        patterns.append(options.format == SpreadsheetFormat::Xlsx ? QStringLiteral("*.xlsx") : QStringLiteral("*.xls"));
    return QObject::tr("导出的文件类型") + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
}

TExportContrastFileForm::TExportContrastFileForm(Session& session, GuiInteraction& ui, FileOperations& disk,
                                                 QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_ui(ui)
    , m_disk(disk)
{
    setObjectName(QStringLiteral("TExportContrastFileForm"));
    setWindowTitle(tr("导出更名对照列表文件"));
    build();
    updateEnabled();
}

void TExportContrastFileForm::build()
{
    // The form opens at the engine's defaults, the same that `quillet export --contrast` uses.
    const ContrastOptions start;
    auto* layout = new QVBoxLayout(this);
    auto* rows = new QLabel(tr("更名文件列表当前行数：%1行").arg(m_session.renameList().size()), this);
    rows->setObjectName(QStringLiteral("rowCount"));
    layout->addWidget(rows);

    // The spreadsheet.
    m_spreadsheet = new QCheckBox(tr("导出为 MS Excel 文件（无需Excel软件支持）"), this);
    m_spreadsheet->setObjectName(QStringLiteral("CheckBoxExcel"));
    m_spreadsheet->setChecked(start.spreadsheet);
    layout->addWidget(m_spreadsheet);
    auto* sheet = new QGroupBox(this);
    auto* sheetGrid = new QGridLayout(sheet);
    m_xlsx = new QRadioButton(tr("MS Excel 2007/2010格式(*.xlsx)"), sheet);
    m_xlsx->setObjectName(QStringLiteral("RadioButtonXlsx"));
    m_xls = new QRadioButton(tr("MS Excel 97,2000,XP,2003格式(*.xls)"), sheet);
    m_xls->setObjectName(QStringLiteral("RadioButtonXls"));
    (start.format == SpreadsheetFormat::Xlsx ? m_xlsx : m_xls)->setChecked(true);
    m_sheetName = new QLineEdit(sheet);
    m_sheetName->setObjectName(QStringLiteral("EditSheetName"));
    m_sheetName->setPlaceholderText(tr("更名对照列表"));
    m_oldColumn = new QSpinBox(sheet);
    m_oldColumn->setObjectName(QStringLiteral("SpinEditOldColumn"));
    m_oldColumn->setRange(1, 256);
    m_oldColumn->setValue(start.oldColumn);
    m_newColumn = new QSpinBox(sheet);
    m_newColumn->setObjectName(QStringLiteral("SpinEditNewColumn"));
    m_newColumn->setRange(1, 256);
    m_newColumn->setValue(start.newColumn);
    sheetGrid->addWidget(m_xlsx, 0, 0, 1, 4);
    sheetGrid->addWidget(m_xls, 1, 0, 1, 4);
    sheetGrid->addWidget(new QLabel(tr("设置工作表名称"), sheet), 2, 0);
    sheetGrid->addWidget(m_sheetName, 2, 1, 1, 3);
    sheetGrid->addWidget(new QLabel(tr("原文件名列："), sheet), 3, 0);
    sheetGrid->addWidget(m_oldColumn, 3, 1);
    sheetGrid->addWidget(new QLabel(tr("新文件名列："), sheet), 3, 2);
    sheetGrid->addWidget(m_newColumn, 3, 3);
    layout->addWidget(sheet);

    // The text file.
    m_text = new QCheckBox(tr("导出为文本文件 (*.txt)"), this);
    m_text->setObjectName(QStringLiteral("CheckBoxText"));
    m_text->setChecked(start.text);
    layout->addWidget(m_text);
    auto* text = new QGroupBox(this);
    auto* textGrid = new QGridLayout(text);
    textGrid->addWidget(new QLabel(tr("保存编码："), text), 0, 0);
    m_encoding = new QButtonGroup(this);
    const std::pair<ContrastEncoding, const char*> encodings[] = {{ContrastEncoding::Ansi, "ANSI"},
                                                                  {ContrastEncoding::Unicode, "Unicode"},
                                                                  {ContrastEncoding::UnicodeBigEndian, "Unicode Big Endian"},
                                                                  {ContrastEncoding::Utf8, "UTF-8"}};
    auto* encodingRow = new QHBoxLayout;
    for (const auto& [encoding, caption] : encodings) {
        auto* radio = new QRadioButton(QString::fromLatin1(caption), text);
        radio->setObjectName(QStringLiteral("RadioButtonEncoding") + QString::fromLatin1(caption).remove(QLatin1Char(' ')));
        radio->setChecked(encoding == start.encoding);
        m_encoding->addButton(radio, int(encoding));
        encodingRow->addWidget(radio);
    }
    encodingRow->addStretch(1);
    textGrid->addLayout(encodingRow, 0, 1);
    textGrid->addWidget(new QLabel(tr("保存格式："), text), 1, 0);
    m_aligned = new QRadioButton(tr("新旧两列文件名自身尽量对齐（填充字符为英文空格）"), text);
    m_aligned->setObjectName(QStringLiteral("RadioButtonAligned"));
    textGrid->addWidget(m_aligned, 1, 1);
    m_separated = new QRadioButton(tr("新旧文件名之间使用分隔字符"), text);
    m_separated->setObjectName(QStringLiteral("RadioButtonSeparator"));
    (start.aligned ? m_aligned : m_separated)->setChecked(true);
    m_separator = new QLineEdit(start.separator, text);
    m_separator->setObjectName(QStringLiteral("EditSeparator"));
    m_separator->setMaximumWidth(m_separator->fontMetrics().horizontalAdvance(QStringLiteral("00000000")) + 12);
    auto* separatorRow = new QHBoxLayout;
    separatorRow->addWidget(m_separated);
    separatorRow->addWidget(new QLabel(tr("分隔字符"), text));
    separatorRow->addWidget(m_separator);
    separatorRow->addStretch(1);
    textGrid->addLayout(separatorRow, 2, 1);
    layout->addWidget(text);

    m_withExtension = new QCheckBox(tr("含扩展名一起处理"), this);
    m_withExtension->setObjectName(QStringLiteral("CheckBoxWithExt"));
    m_withExtension->setChecked(start.withExtension);
    layout->addWidget(m_withExtension);

    m_save = dialogButton(this, QStringLiteral("save"), tr("保存至...(&S)"));
    m_save->setDefault(true);
    auto* close = dialogButton(this, QStringLiteral("close"), tr("退出(&X)"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_save);
    buttons->addWidget(close);
    layout->addLayout(buttons);

    for (QCheckBox* box : {m_spreadsheet, m_text})
        connect(box, &QCheckBox::toggled, this, &TExportContrastFileForm::updateEnabled);
    connect(m_separated, &QRadioButton::toggled, this, &TExportContrastFileForm::updateEnabled);
    connect(m_save, &QPushButton::clicked, this, &TExportContrastFileForm::save);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    m_sheetOptions = sheet;
    m_textOptions = text;
}

void TExportContrastFileForm::updateEnabled()
{
    m_sheetOptions->setEnabled(m_spreadsheet->isChecked());
    m_textOptions->setEnabled(m_text->isChecked());
    m_separator->setEnabled(m_separated->isChecked());
    // Nothing to write, nothing to save; an empty list makes empty files, which helps nobody.
    m_save->setEnabled((m_spreadsheet->isChecked() || m_text->isChecked()) && !m_session.renameList().isEmpty());
}

ContrastOptions TExportContrastFileForm::options() const
{
    ContrastOptions o;
    o.withExtension = m_withExtension->isChecked();
    o.text = m_text->isChecked();
    o.encoding = ContrastEncoding(m_encoding->checkedId());
    o.aligned = m_aligned->isChecked();
    o.separator = m_separator->text();
    o.spreadsheet = m_spreadsheet->isChecked();
    o.format = m_xlsx->isChecked() ? SpreadsheetFormat::Xlsx : SpreadsheetFormat::Xls;
    o.sheetName = m_sheetName->text().trimmed();
    o.oldColumn = m_oldColumn->value();
    o.newColumn = m_newColumn->value();
    return o;
}

void TExportContrastFileForm::save()
{
    const ContrastOptions o = options();
    const QString sheetExtension = o.format == SpreadsheetFormat::Xlsx ? QStringLiteral("xlsx") : QStringLiteral("xls");
    const QString chosen = chooseFile(m_ui, this, m_session,
                                      FileDialogOptions{tr("保存更名对照列表文件"), contrastSaveFilter(o),
                                                        o.text ? QStringLiteral("txt") : sheetExtension,
                                                        kContrastFolderKey, true});
    if (chosen.isEmpty())
        return;
    const QString textPath = o.text ? contrastOutputPath(chosen, QStringLiteral(".txt")) : QString();
    const QString sheetPath = o.spreadsheet ? contrastOutputPath(chosen, QLatin1Char('.') + sheetExtension) : QString();

    const QString caption = m_save->text();
    m_save->setText(tr("请稍候..."));
    m_save->setEnabled(false);
    m_save->repaint();
    const ContrastExportResult result = exportContrastList(m_session.renameList(), o, textPath, sheetPath, m_disk);
    m_save->setText(caption);
    updateEnabled();

    if (!result.error.isEmpty()) {
        m_ui.notify(Notice{QStringLiteral("contrast.failed"), kHintTitle, result.error, Icon::Warning});
        return;
    }
    QStringList shown;
    for (const QString& file : result.written)
        shown.append(nativeSeparators(file));
    QString text = tr("更名对照列表文件导出成功！") + QStringLiteral("\n\n") + shown.join(QLatin1Char('\n'));
    if (result.lossy)
        text += QStringLiteral("\n\n") + tr("注意：有些字符无法用所选编码保存，已写为“?”。请改用 Unicode 或 UTF-8 编码。");
    m_ui.notify(Notice{QStringLiteral("contrast.saved"), kHintTitle, text,
                       result.lossy ? Icon::Warning : Icon::Information});
    accept();
}

}  // namespace qp::ui
