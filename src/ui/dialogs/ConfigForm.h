// "选项设置": the program's options on four tabs — the rename operation, duplicate numbering,
// general switches, and the parameters of the meta-variables ("元变量").
//
// The form reads every value from the settings when it is made and writes them back only
// when the user clicks "确定"; "取消" and closing the window write nothing. Each value is kept
// under the same section, key and default as the code that acts on it reads it.
#pragma once

#include <QDialog>
#include <QStringList>
#include <vector>

class QLabel;
class QPlainTextEdit;
class QTabWidget;
class QTableWidget;

namespace qp {
class SettingsStore;
}

namespace qp::ui {

class TConfigForm : public QDialog {
    Q_OBJECT
public:
    enum Tab { TabOperation, TabNumbering, TabGeneral, TabMetaVariables };
    // The columns of the grid "元变量名称及参数设置".
    enum MetaColumn { ColName, ColValue, ColDescription };

    explicit TConfigForm(SettingsStore& settings, QWidget* parent = nullptr);
    ~TConfigForm() override;

    // After "确定": whether a value that decides the new names changed (a meta-variable
    // parameter or an automatic-preview option), so the commands have to run again.
    bool newNamesAffected() const { return m_newNamesAffected; }

    QTabWidget* tabs() const { return m_tabs; }
    QTableWidget* metaVariableGrid() const { return m_metaGrid; }
    QPlainTextEdit* helpBox() const { return m_help; }

    void accept() override;

private:
    struct Option;
    QWidget* buildOperationTab();
    QWidget* buildNumberingTab();
    QWidget* buildGeneralTab();
    QWidget* buildMetaVariableTab();
    template <typename Widget>
    Widget* bind(Widget* widget, const QString& section, const QString& key, const QVariant& defaultValue,
                 bool affectsNames = false);
    void load();
    void resetCurrentTab();
    void showHelp();
    void showNumberingExample();

    SettingsStore& m_settings;
    QTabWidget* m_tabs = nullptr;
    QTableWidget* m_metaGrid = nullptr;
    QPlainTextEdit* m_help = nullptr;
    QLabel* m_numberingExample = nullptr;
    std::vector<Option> m_options;
    int m_buildingTab = 0;
    QStringList m_loadedParameters;  // per grid row, as shown when the form opened
    bool m_newNamesAffected = false;
};

}  // namespace qp::ui
