// Writes PNGs of the main window with a sample list and command list, of each function page
// and of the main dialogs, for the README and for looking at the window without a screen:
//
//     quilletpro-screenshots OUTDIR
//
// The sample files live in a temporary folder that is removed afterwards; the settings file
// is a temporary one too, so nothing of the user's is read or changed.
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <cstdio>

#include "commands/CommandFamilies.h"
#include "commands/ExtensionCommands.h"
#include "core/CommandList.h"
#include "core/SettingsKeys.h"
#include "execution/Preview.h"
#include "expressions/MetaVariables.h"
#include "core/Translation.h"
#include "ui/dialogs/AboutForm.h"
#include "ui/dialogs/ApplyForms.h"
#include "ui/dialogs/FilterForm.h"
#include "ui/dialogs/WelcomeForm.h"
#include "ui/dialogs/ConfigForm.h"
#include "ui/dialogs/UserMetaVariableForms.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/window/FunctionPanel.h"
#include "ui/window/LoadBar.h"
#include "ui/window/MainWindow.h"

namespace {

using namespace qp;
using namespace qp::ui;

QString g_out;
int g_written = 0;

void save(QWidget& widget, const QString& name)
{
    widget.show();
    QApplication::processEvents();
    const QString file = g_out + QLatin1Char('/') + name + QStringLiteral(".png");
    if (widget.grab().save(file)) {
        ++g_written;
        std::printf("%s\n", qPrintable(QDir::toNativeSeparators(file)));
    } else {
        std::fprintf(stderr, "quilletpro-screenshots: cannot write %s\n", qPrintable(file));
    }
}

void makeSamples(const QString& root)
{
    const QStringList files = {
        QStringLiteral("照片/IMG_0001.JPG"), QStringLiteral("照片/IMG_0002.JPG"), QStringLiteral("照片/IMG_0003.JPG"),
        QStringLiteral("照片/IMG_0010.JPG"), QStringLiteral("照片/IMG_0011.JPG"), QStringLiteral("报告 2024.DOCX"),
        QStringLiteral("旅行笔记.TXT"),      QStringLiteral("音乐/01 晨曦.MP3"),  QStringLiteral("音乐/02 远方.MP3"),
        QStringLiteral("README.md"),
    };
    int size = 700;
    for (const QString& name : files) {
        const QString path = root + QLatin1Char('/') + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(size, 'x'));
        size = size * 3 + 17;
    }
}

void recordExtension(MainWindow& window, const QString& code, const QList<std::pair<QString, QString>>& params)
{
    Session& session = window.session();
    const RecordAnswer answer = recordCommand(session, code.left(2), false);
    if (!answer.write)
        return;
    session.commandList().describe(answer.section, code, extensionCommandComment(code));
    for (const auto& [key, value] : params)
        session.settings().writeString(answer.section, key, value);
    session.pipeline().runOne(answer.section);
    session.commandList().endCurrent();
    window.refreshAfterCommandChange();
}

// Grabs every dialog the window opens and answers it as a user going ahead would.
int grabAndAnswer(QDialog& dialog)
{
    save(dialog, QStringLiteral("dialog-") + dialog.objectName());
    if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
        for (QAbstractButton* button : box->buttons()) {
            const auto role = box->buttonRole(button);
            if (role == QMessageBox::AcceptRole || role == QMessageBox::YesRole) {
                button->click();
                break;
            }
        }
    } else {
        dialog.accept();
    }
    dialog.hide();
    return dialog.result();
}

}  // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fputs("usage: quilletpro-screenshots OUTDIR\n", stderr);
        return 2;
    }
    g_out = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    QDir().mkpath(g_out);
    QTemporaryDir temp;
    const QString samples = temp.path() + QStringLiteral("/样例");
    makeSamples(samples);

    SettingsStore store;
    store.setFileName(temp.path() + QStringLiteral("/cfg/QuilletPro.ini"));
    store.writeBool(keys::kOperation, keys::kFlagFindDeepin, true);
    MainWindow window(std::move(store), QStringLiteral("[20240305140709123]"));
    registerCommandFamilies(window.session().pipeline().registry());
    window.resize(1280, 800);
    window.show();
    window.loadBar()->pathBox()->setEditText(QDir::toNativeSeparators(samples));
    window.loadPaths({samples});
    recordExtension(window, QStringLiteral("E402"), {});
    recordExtension(window, QStringLiteral("E103"),
                    {{QStringLiteral("E1_SearchStr"), QStringLiteral("jpg")},
                     {QStringLiteral("E1_Content"), QStringLiteral("jpeg")}});
    window.session().interaction().status(QStringLiteral("命令执行完毕。"));
    save(window, QStringLiteral("main-window"));

    FunctionPanel* panel = window.functionPanel();
    for (int i = 0; i < panel->pageCount(); ++i) {
        panel->setCurrentPage(i);
        save(*panel->page(i), QStringLiteral("page-%1").arg(i + 1));
    }

    // Forms that need a long list, a conflict or an odd object to appear.
    TSimpleRenameSelectForm mode(25000, &window);
    save(mode, QStringLiteral("dialog-TSimpleRenameSelectForm"));
    PreviewResult preview;
    preview.foundExist = preview.foundExistAndExchange = true;
    preview.conflictRows = {0, 1};
    TRenameWarningForm conflict(window.session().renameList(), preview, &window);
    save(conflict, QStringLiteral("dialog-TRenameWarningForm"));
    TFileNameAttribWarningForm readOnly(false, samples + QStringLiteral("/旅行笔记.TXT"), 1, &window);
    save(readOnly, QStringLiteral("dialog-TFileNameAttribRWarningForm"));
    TFileNameTooLongWarningForm tooLong(
        samples + QStringLiteral("/报告 2024.DOCX"), QString(120, QChar(u'长')) + QStringLiteral(".docx"),
        [](int choice) { return QString(60 + choice, QChar(u'长')) + QStringLiteral(".docx"); }, 1, &window);
    save(tooLong, QStringLiteral("dialog-TFileNameTooLongWarningForm"));
    TSelectFoldersForm folders(samples, &window);
    folders.selectFolders({samples + QStringLiteral("/照片"), samples + QStringLiteral("/音乐")});
    save(folders, QStringLiteral("dialog-TSelectFoldersForm"));

    // The settings form on each of its tabs, and the user meta-variable forms with two lists.
    {
        TConfigForm config(window.session().settings(), &window);
        const char* const tabs[] = {"operation", "numbering", "general", "meta-variables"};
        const auto substr = config.metaVariableGrid()->findItems(QStringLiteral("<SUBSTR>"), Qt::MatchExactly);
        if (!substr.isEmpty())
            config.metaVariableGrid()->setCurrentCell(substr.first()->row(), TConfigForm::ColValue);
        for (int tab = 0; tab < config.tabs()->count(); ++tab) {
            config.tabs()->setCurrentIndex(tab);
            save(config, QStringLiteral("dialog-TConfigForm-%1").arg(QLatin1String(tabs[tab])));
        }
    }
    defineUserList(window.session(), 0);
    defineUserList(window.session(), 3);
    TUVUSERSelectForm userLists(window.session(), {}, &window);
    save(userLists, QStringLiteral("dialog-TUVUSERSelectForm"));
    TViewUVUSERForm viewer(window.session(), &window);
    save(viewer, QStringLiteral("dialog-TViewUVUSERForm"));

    // The application shell: the filter tool (with a pattern typed), the welcome page and
    // the about box.
    {
        TFilterForm filter(window.session(), &window);
        filter.patternBox()->setText(QStringLiteral("IMG_*.jpg"));
        filter.countNow();
        save(filter, QStringLiteral("dialog-TFilterForm"));
        TWelcomeForm welcome(window.session().settings(), &window);
        save(welcome, QStringLiteral("dialog-TWelcomeForm"));
        TAboutForm about(QStringLiteral(QP_NOTICE_FILE), &window);
        save(about, QStringLiteral("dialog-TAboutForm"));
    }

    // The dialogs of a real apply and undo, in the order they come.
    window.setModalRunner(grabAndAnswer);
    window.action(QStringLiteral("MMenuGoRename"))->trigger();
    save(window, QStringLiteral("main-window-applied"));
    window.action(QStringLiteral("MMenuGoExportSnapshot"))->trigger();
    window.action(QStringLiteral("MMenuFileExportContrast"))->trigger();
    window.action(QStringLiteral("MMenuGoBack"))->trigger();

    // The same window in English.
    {
        const std::unique_ptr<QTranslator> english = installLanguage(Language::English);
        SettingsStore englishStore;
        englishStore.setFileName(temp.path() + QStringLiteral("/cfg-en/QuilletPro.ini"));
        englishStore.writeBool(keys::kOperation, keys::kFlagFindDeepin, true);
        MainWindow englishWindow(std::move(englishStore), QStringLiteral("[20240305140709124]"));
        registerCommandFamilies(englishWindow.session().pipeline().registry());
        englishWindow.resize(1280, 800);
        englishWindow.show();
        englishWindow.loadBar()->pathBox()->setEditText(QDir::toNativeSeparators(samples));
        englishWindow.loadPaths({samples});
        recordExtension(englishWindow, QStringLiteral("E402"), {});
        englishWindow.session().interaction().status(QCoreApplication::translate("Pipeline", "命令执行完毕。"));
        save(englishWindow, QStringLiteral("main-window-en"));
    }

    return g_written > 0 ? 0 : 1;
}
