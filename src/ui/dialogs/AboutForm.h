// "关于 Quillet Pro": the version, the build date, the Qt version, and every third-party
// library and data set with its version and licence, read from the notice file that ships
// with the program (see core/ThirdPartyNotices.h); its whole text is on the second tab.
#pragma once

#include <QDialog>

class QPlainTextEdit;
class QTableWidget;

namespace qp::ui {

class TAboutForm : public QDialog {
    Q_OBJECT
public:
    // `noticeFile` empty: the form says that the file is missing.
    explicit TAboutForm(const QString& noticeFile, QWidget* parent = nullptr);

    QTableWidget* libraryGrid() const { return m_libraries; }
    QPlainTextEdit* details() const { return m_details; }

private:
    QWidget* buildLibraryTab(const QString& noticeText);
    void showDetails(int row);

    QTableWidget* m_libraries = nullptr;
    QPlainTextEdit* m_details = nullptr;
    QStringList m_detailTexts;
};

// The running version of a library the program links, by its name in the notice file;
// empty for names it does not know.
QString runningLibraryVersion(const QString& name);

}  // namespace qp::ui
