// Saves PNGs of the function pages (normal, extension, advanced and metadata families), their sections and the normal
// family's forms, for the README and the screenshot script: page_shots OUTDIR (run with QT_QPA_PLATFORM=offscreen
// where there is no screen).
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextStream>
#include <QToolButton>

#include <cstdio>

#include "commands/CommandFamilies.h"
#include "core/Session.h"
#include "ui/dialogs/MetaVariableWarningForms.h"
#include "ui/dialogs/N3EditorForms.h"
#include "ui/dialogs/ReplaceEditForm.h"
#include "ui/pages/FrameFileRenameAdvanced.h"
#include "metadata/FieldCatalogue.h"
#include "ui/pages/FrameFileRenameExt.h"
#include "ui/pages/FrameFileRenameMetadata.h"
#include "ui/pages/FrameFileRenameNormal.h"
#include "ui/widgets/CheckListComboBox.h"

using namespace qp;
using namespace qp::ui;

namespace {

bool save(QWidget& widget, const QDir& dir, const QString& file)
{
    widget.show();
    QCoreApplication::processEvents();
    const bool ok = widget.grab().save(dir.filePath(file));
    if (!ok)
        std::fprintf(stderr, "page_shots: cannot write %s\n", qPrintable(dir.filePath(file)));
    return ok;
}

}  // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: page_shots OUTDIR\n");
        return 2;
    }
    QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "page_shots: cannot create %s\n", argv[1]);
        return 1;
    }

    ScriptedInteraction interaction;
    Session session(SettingsStore(), interaction, QStringLiteral("[20240305140709123]"));
    registerCommandFamilies(session.pipeline().registry());
    for (const char* name : {"IMG_0001", "IMG_0002", "旅行照片 001", "report final"}) {
        FileEntry row;
        row.path = QStringLiteral("/home/user/photos/");
        row.name = row.newName = QString::fromUtf8(name);
        row.ext = row.newExt = QStringLiteral(".jpg");
        session.renameList().append(row);
    }

    TFrameFileRenameNormal frame(session);
    frame.resize(340, 900);  // the width of the window's panel, as for the other pages
    // A replace as a user would have set it up, so that the page does not look blank.
    frame.findChild<QRadioButton*>(QStringLiteral("RadioButtonN2Search"))->click();
    frame.findChild<QComboBox*>(QStringLiteral("ComboBoxN2Search"))->setEditText(QStringLiteral("IMG_"));
    frame.findChild<QComboBox*>(QStringLiteral("ComboBoxN2Replace"))->setEditText(QStringLiteral("照片_"));

    bool ok = save(frame, dir, QStringLiteral("normal-page.png"));
    for (const char* code : {"N1", "N2", "N3", "N4", "N5", "N6"})
        ok = frame.section(QString::fromLatin1(code))->grab().save(dir.filePath(QStringLiteral("normal-%1.png").arg(code))) && ok;

    // The advanced page at the width of the window's panel, with pinyin and a short list set up.
    TFrameFileRenameAdvanced advanced(session);
    advanced.resize(340, 900);
    advanced.findChild<QRadioButton*>(QStringLiteral("RadioButtonA3HZToPYTone"))->click();
    advanced.findChild<QPlainTextEdit*>(QStringLiteral("PlainTextEditA11NameList"))
        ->setPlainText(QStringLiteral("IMG_0001.jpg=海边日出.jpg\nIMG_0002.jpg=海边日落.jpg"));
    ok = save(advanced, dir, QStringLiteral("advanced-page.png")) && ok;
    // The script sections with an example each, the Pascal one tested on a row.
    for (const char* code : {"A12", "A13"}) {
        auto* examples = advanced.findChild<QPushButton*>(QStringLiteral("PushButton%1Examples").arg(QLatin1String(code)));
        examples->menu()->actions().constFirst()->trigger();
    }
    advanced.findChild<QPushButton*>(QStringLiteral("PushButtonA12Test"))->click();
    QApplication::processEvents();
    for (const char* code : {"A1", "A3", "A4", "A11", "A12", "A13"})
        ok = advanced.section(QString::fromLatin1(code))->grab().save(dir.filePath(QStringLiteral("advanced-%1.png").arg(code))) && ok;
    advanced.hide();

    QMenu* menu = frame.findChild<QToolButton*>(QStringLiteral("ToolButtonN1AddStrMeta"))->menu();
    menu->popup(QPoint(0, 0));
    QCoreApplication::processEvents();
    ok = menu->grab().save(dir.filePath(QStringLiteral("meta-variable-menu.png"))) && ok;
    menu->hide();

    auto* presets = frame.findChild<CheckListComboBox*>(QStringLiteral("ComboBoxN3FixedCharset"));
    presets->toggleItem(0);
    presets->toggleItem(3);
    frame.showSection(QStringLiteral("N3"));
    presets->showPopup();
    QCoreApplication::processEvents();
    ok = presets->view()->window()->grab().save(dir.filePath(QStringLiteral("n3-preset-list.png"))) && ok;
    presets->hidePopup();

    TFrameFileRenameExt ext(session);
    ext.resize(340, 900);  // about the width of the panel beside the rename list
    ext.findChild<QRadioButton*>(QStringLiteral("RadioButtonE1AddRight"))->click();
    ext.findChild<QComboBox*>(QStringLiteral("ComboBoxE1Content"))->setEditText(QStringLiteral("_old"));
    ok = save(ext, dir, QStringLiteral("ext-page.png")) && ok;
    for (const char* code : {"E1", "E2", "E3", "E4", "E5", "E6", "E7"})
        ok = ext.section(QString::fromLatin1(code))->grab().save(dir.filePath(QStringLiteral("ext-%1.png").arg(code))) && ok;

    // One page per metadata field family, each with its template recorded.
    for (const metadata::FamilyInfo& family : metadata::fieldFamilies()) {
        TFrameFileRenameMetadata fields(session, family.letter);
        fields.resize(340, 720);
        fields.findChild<QRadioButton*>(QStringLiteral("RadioButton") + family.letter + QStringLiteral("1Whole"))->click();
        ok = save(fields, dir, QStringLiteral("metadata-%1-page.png").arg(family.letter)) && ok;
    }

    TReplaceEditForm replace(QStringLiteral("IMG_|DSC_|副本"), QStringLiteral("照片_|相机_|"));
    ok = save(replace, dir, QStringLiteral("replace-editor.png")) && ok;
    TN3DelWordEditorForm words(QStringLiteral("副本|copy| - 复制"));
    ok = save(words, dir, QStringLiteral("n3-words-editor.png")) && ok;
    TN3UserCharsetEditorForm charset(QStringLiteral("#@!～【】"));
    ok = save(charset, dir, QStringLiteral("n3-charset-editor.png")) && ok;
    TUseHashUnitVariableWarningForm hash;
    ok = save(hash, dir, QStringLiteral("hash-warning.png")) && ok;
    TUseFindFolderUnitVariableWarningForm folder(QStringLiteral("<DIALLNUM>"), 0);
    ok = save(folder, dir, QStringLiteral("folder-warning.png")) && ok;
    return ok ? 0 : 1;
}
