#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include "core/DesktopIntegration.h"
#include "../support/QStringPrinter.h"
#include "../support/TempTree.h"

namespace qp {
namespace {

#ifndef _WIN32

QString read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

const QString kProgram = QStringLiteral("/opt/Quillet Pro/bin/QuilletPro");

// Someone else's action, which installing and removing ours must leave as it stands.
const char* const kOtherAction = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<actions>\n"
                                 "<action>\n"
                                 "\t<icon>utilities-terminal</icon>\n"
                                 "\t<name>Open Terminal Here</name>\n"
                                 "\t<unique-id>1700000000000000-1</unique-id>\n"
                                 "\t<command>exo-open --working-directory %f --launch TerminalEmulator</command>\n"
                                 "\t<patterns>*</patterns>\n"
                                 "\t<directories/>\n"
                                 "</action>\n"
                                 "</actions>\n";

class DesktopIntegrationTest : public ::testing::Test {
protected:
    QString data(const char* relative) { return places.dataHome + u'/' + QString::fromUtf8(relative); }
    QString uca() { return places.configHome + QStringLiteral("/Thunar/uca.xml"); }

    test::TempTree home;
    DesktopPlaces places{home.path(".local/share"), home.path(".config")};
};

TEST_F(DesktopIntegrationTest, InstallWritesEveryEntryAndRemoveTakesExactlyThemAway)
{
    home.file(".config/Thunar/uca.xml", kOtherAction);
    home.file(".local/share/applications/other.desktop", "[Desktop Entry]\n");
    const IntegrationReport installed = installDesktopIntegration(places, kProgram, QByteArray("\x89PNG"));
    ASSERT_TRUE(installed.ok()) << installed.problems.join(u'\n').toStdString();

    const struct {
        const char* path;
        const char* mustHold;
        bool executable;
    } files[] = {
        {"applications/quilletpro.desktop", "Exec=\"/opt/Quillet Pro/bin/QuilletPro\" %F", false},
        {"kio/servicemenus/quilletpro.desktop", "Exec=\"/opt/Quillet Pro/bin/QuilletPro\" %F", true},
        {"nautilus/scripts/用 Quillet Pro 批量更名", "exec '/opt/Quillet Pro/bin/QuilletPro' $NAUTILUS", true},
        {"nemo/actions/quilletpro.nemo_action", "Exec='/opt/Quillet Pro/bin/QuilletPro' %F", false},
        {"icons/hicolor/256x256/apps/quilletpro.png", "PNG", false},
    };
    for (const auto& file : files) {
        EXPECT_TRUE(read(data(file.path)).contains(QString::fromUtf8(file.mustHold))) << file.path;
        EXPECT_EQ(QFileInfo(data(file.path)).isExecutable(), file.executable) << file.path;
    }
    const QString merged = read(uca());
    EXPECT_TRUE(merged.startsWith(QString::fromUtf8(kOtherAction).chopped(11))) << merged.toStdString();  // up to "</actions>"
    EXPECT_TRUE(merged.contains(QStringLiteral("<command>'/opt/Quillet Pro/bin/QuilletPro' %F</command>"))) << merged.toStdString();

    // Installing again changes nothing: still one action of ours.
    EXPECT_TRUE(installDesktopIntegration(places, kProgram, QByteArray("\x89PNG")).ok());
    EXPECT_EQ(read(uca()), merged);

    const IntegrationReport removed = removeDesktopIntegration(places);
    ASSERT_TRUE(removed.ok()) << removed.problems.join(u'\n').toStdString();
    for (const auto& file : files)
        EXPECT_FALSE(QFile::exists(data(file.path))) << file.path;
    EXPECT_EQ(read(uca()), QString::fromUtf8(kOtherAction));
    EXPECT_TRUE(QFile::exists(data("applications/other.desktop")));
}

TEST_F(DesktopIntegrationTest, AMalformedThunarFileIsLeftAsItIsAndReported)
{
    const QByteArray broken = "<actions><action><name>half";
    home.file(".config/Thunar/uca.xml", broken.toStdString());
    const IntegrationReport installed = installDesktopIntegration(places, kProgram, {});
    ASSERT_EQ(installed.problems.size(), 1);
    EXPECT_TRUE(installed.problems.front().contains(QStringLiteral("不是有效的 XML"))) << installed.problems.front().toStdString();
    EXPECT_EQ(read(uca()).toUtf8(), broken);
    EXPECT_TRUE(QFile::exists(data("applications/quilletpro.desktop")));  // the other entries are in place
    EXPECT_FALSE(removeDesktopIntegration(places).ok());
    EXPECT_EQ(read(uca()).toUtf8(), broken);
}

TEST_F(DesktopIntegrationTest, AFolderThatCannotBeWrittenIsReported)
{
    home.file(".local/share/kio", "a file where a folder should be");
    const IntegrationReport installed = installDesktopIntegration(places, kProgram, {});
    ASSERT_FALSE(installed.ok());
    EXPECT_TRUE(installed.problems.front().contains(QStringLiteral("servicemenus"))) << installed.problems.front().toStdString();
    EXPECT_TRUE(read(uca()).contains(QStringLiteral("quilletpro-batch-rename")));  // created, as none was there
}

#endif

TEST(ThunarActions, OurActionGoesInOnceAndComesOutAlone)
{
    const QString program = QStringLiteral("/usr/bin/QuilletPro");
    const QString empty = QStringLiteral("<?xml version=\"1.0\"?>\n<actions/>\n");
    const std::optional<QString> added = ucaWithAction(empty, program);
    ASSERT_TRUE(added);
    EXPECT_EQ(added->count(QStringLiteral("<unique-id>quilletpro-batch-rename</unique-id>")), 1);
    EXPECT_EQ(ucaWithAction(*added, program), added);
    EXPECT_EQ(ucaWithoutAction(*added), QStringLiteral("<?xml version=\"1.0\"?>\n<actions>\n</actions>\n"));
    for (const char* bad : {"", "<actions>", "<notactions/>", "<actions><action></actions>"})
        EXPECT_FALSE(ucaWithAction(QString::fromUtf8(bad), program)) << bad;
}

}  // namespace
}  // namespace qp
