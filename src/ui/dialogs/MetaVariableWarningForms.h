// The two warnings shown before a costly meta-variable is inserted into a command text:
// content hashes read every file whole, folder tags walk folder trees, and both do so for
// every row at every preview. Each can be switched off for good with "忽略此提示对话框".
#pragma once

#include <QDialog>

class QCheckBox;
class QLayout;
class QTableWidget;

namespace qp::ui {

class TUnitVariableWarningForm : public QDialog {
    Q_OBJECT
public:
    // Whether "忽略此提示对话框" is ticked.
    bool ignoreFromNowOn() const;
    void setIgnoreFromNowOn(bool ignore);

protected:
    TUnitVariableWarningForm(const QString& text, QWidget* details, QWidget* parent);

private:
    QCheckBox* m_ignore = nullptr;
};

// For "<CRC32>", "<MD5>" and "<SHA1>": shows how long hashing takes on this computer for a
// few file sizes.
class TUseHashUnitVariableWarningForm : public TUnitVariableWarningForm {
    Q_OBJECT
public:
    explicit TUseHashUnitVariableWarningForm(QWidget* parent = nullptr);
};

// For the tags that walk a folder ("<DIALLNUM>", "<DIFILENUM>", "<DIDIRNUM>",
// "<DIFNSUBSTR>") at the depth their parameter sets (0: every level).
class TUseFindFolderUnitVariableWarningForm : public TUnitVariableWarningForm {
    Q_OBJECT
public:
    TUseFindFolderUnitVariableWarningForm(const QString& tag, qint64 depth, QWidget* parent = nullptr);
};

// Hashing speed of this computer in bytes per second, measured once on data in memory.
struct HashSpeeds {
    double crc32 = 0;
    double md5 = 0;
    double sha1 = 0;
};
HashSpeeds measuredHashSpeeds();
// "850 毫秒", "12.5 秒", "3 分 20 秒".
QString durationText(double seconds);

}  // namespace qp::ui
