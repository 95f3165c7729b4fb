// The metadata commands over real sample files: names from music tags, photo data and media
// information, the choices for missing fields, bad input, and the field cache.
#include <gtest/gtest.h>

#include <QFile>

#include "commands/MetadataCommands.h"
#include "commands/NormalCommands.h"
#include "core/Session.h"
#include "expressions/FieldTags.h"
#include "support/CommandRows.h"
#include "support/MetadataSamples.h"
#include "support/QStringPrinter.h"
#include "support/TempTree.h"

namespace qp {
namespace {

using test::metadataSample;
using test::Params;

class MetadataCommandsTest : public ::testing::Test {
protected:
    MetadataCommandsTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        registerMetadataCommands(session.pipeline().registry());
        registerNormalCommands(session.pipeline().registry());
    }

    void addCommand(const char* code, const Params& params)
    {
        test::appendCommand(session.settings(), QString::fromLatin1(code), metadataCommandComment(code), params);
    }
    FileEntry& addSample(const char* name) { return test::appendRow(session.renameList(), metadataSample(name)); }

    QStringList run()
    {
        EXPECT_TRUE(session.pipeline().runAll(true));
        return test::newNames(session.renameList());
    }
    // The new names of these samples under this one command.
    QStringList runOnly(std::initializer_list<const char*> samples, const char* code, const Params& params)
    {
        session.renameList().clear();
        session.messages().clear();
        CommandList::eraseCommands(session.settings());
        for (const char* sample : samples)
            addSample(sample);
        addCommand(code, params);
        return run();
    }
    QStringList messages() const
    {
        QStringList texts;
        for (const MessageLine& line : session.messages().lines())
            texts.append(line.text.mid(11));  // without "[hh:mm:ss] "
        return texts;
    }

    ScriptedInteraction ui;
    Session session;
};

// One file, one template, the whole name: every tag kind, every family, routing by content.
TEST_F(MetadataCommandsTest, TemplatesNameFilesFromTheirFields)
{
    const struct {
        const char* file;
        const char* code;
        const char* templateText;
        const char* expected;
    } cases[] = {
        {"id3v1.mp3", "M101", "<M.TRACK> <M.ARTIST> - <M.TITLE> (<M.YEAR>)", "07 周杰伦 - 七里香 (2004)"},
        {"id3v23.mp3", "M101", "<M.DISC>-<M.TRACK> <M.ALBUM> <M.TITLE> <M.GENRE> <M.TAGTYPE>", "1-03 叶惠美 晴天 Rock ID3v1+ID3v2.3"},
        {"id3v24.mp3", "M101", "<M.TITLE> <M.ALBUMARTIST> <M.DATE> <M.LABEL> <M.COMPILATION><M.HASLYRICS><M.HASCOVER>",
         "Intro Various 2010-05-06 Label L 110"},
        {"gbk-latin1.mp3", "M101", "<M.TITLE>", "青花瓷"},
        {"big5-latin1.mp3", "M101", "<M.TITLE>", "簡單愛"},
        {"comments.flac", "M101", "<M.TRACK>of<M.TRACKTOTAL> <M.TITLE> <M.MUSICBRAINZALBUMID> <M.BITS>", "05of10 稻香 abc-123 16"},
        {"comments.ogg", "M101", "<M.TRACK> <M.TITLE> <M.TAGTYPE>", "02 Ogg Title Xiph"},
        {"comments.opus", "M101", "<M.TITLE> <M.SAMPLERATE>", "Opus Title 48000"},
        {"atoms.m4a", "M101", "<M.TRACK> <M.TITLE> <M.HASCOVER> <M.TAGTYPE> <M.LENGTHTEXT>", "04 M4A 标题 1 MP4 0.02"},
        {"info.wav", "M101", "<M.TITLE> <M.TAGTYPE>", "夜曲 RIFF"},
        {"id3.aiff", "M101", "<M.TITLE> <M.BITS>", "AIFF Title 16"},
        {"ape.wv", "M101", "<M.TRACK> <M.TITLE> <M.TAGTYPE>", "06 WavPack Title APE"},
        {"music-named.jpg", "M101", "<M.TITLE>", "晴天"},
        {"exif.jpg", "D101", "<D.DATETAKEN> <D.MODEL> <D.FNUMBER> <D.EXPOSURE>s ISO<D.ISO> <D.FOCAL>mm",
         "2021-05-06 07.08.09 Canon EOS R5 f2.8 1-250s ISO400 50mm"},
        {"exif.jpg", "D101", "<D.XPTITLE> <D.ARTIST> <D.CITY> <D.KEYWORDS> <D.GPSLATITUDEDMS> <D.GPSALTITUDE>m",
         "西湖日落 张三 杭州 lake,sunset 30°14′30.50″N 12.5m"},
        {"exif.jpg", "D101", "<D.LENS> <D.FLASH> <D.ORIENTATION> <D.RATING> <D.WIDTH>x<D.HEIGHT> <D.GPSLONGITUDE>",
         "RF24-105mm F4 L IS USM 1 6 4 64x48 120.150000"},
        {"xmp-only.jpg", "D101", "<D.DATETAKEN>", "2019-03-04 05.06.07"},
        {"iptc-utf8.jpg", "D101", "<D.CITY>", "北京"},
        {"exif.png", "D101", "<D.MODEL> <D.DATETAKEN>", "PNG Camera 2020-01-02 03.04.05"},
        {"exif.tif", "D101", "<D.MODEL> <D.WIDTH>x<D.HEIGHT>", "TIFF Camera 8x6"},
        {"photo-named.mp3", "D101", "<D.MODEL>", "Canon EOS R5"},
        {"id3v24.mp3", "C101", "<C.FORMAT> <C.ACODEC> <C.SAMPLERATE> <C.AUDIOCOUNT> <C.DURATIONTEXT>",
         "MPEG Audio MPEG Audio 44100 1 0.00.02"},
        {"info.wav", "C101", "<C.FORMAT> <C.ACODEC> <C.CHANNELS> <C.TITLE>", "Wave PCM 2 夜曲"},
        {"comments.flac", "C101", "<C.ACODEC> <C.TITLE> <C.VIDEOCOUNT>", "FLAC 稻香 0"},
        {"gbk-latin1.mp3", "C101", "<C.TITLE>", "青花瓷"},
    };
    for (const auto& c : cases) {
        const QByteArray key = QByteArray(1, c.code[0]) + "1_Template";
        EXPECT_EQ(runOnly({c.file}, c.code, {{key.constData(), c.templateText}}), QStringList{QString::fromUtf8(c.expected)})
            << c.file << " " << c.templateText;
    }
}

TEST_F(MetadataCommandsTest, TheResultGoesWhereThePageSays)
{
    const struct {
        const char* code;
        Params extra;
        const char* expected;
    } cases[] = {
        {"M102", {}, "Intro_id3v24"},
        {"M103", {}, "id3v24Intro_"},
        {"M104", {{"M1_InsertPos", "2"}}, "idIntro_3v24"},
        {"M104", {{"M1_InsertPos", "2"}, {"M1_InsertPosFromRight", "1"}}, "id3vIntro_24"},
    };
    for (const auto& c : cases) {
        Params params = c.extra;
        params.emplace_back("M1_Template", "<M.TITLE>_");
        EXPECT_EQ(runOnly({"id3v24.mp3"}, c.code, params), QStringList{c.expected}) << c.code;
    }
}

TEST_F(MetadataCommandsTest, AFileWithoutAFieldIsLeftEmptiedOrFilledIn)
{
    const struct {
        const char* missing;
        const char* fallback;
        const char* expected;
        const char* message;
    } cases[] = {
        {"0", "", "none", "有 1 个对象缺少模板所用的照片信息字段，保持不变。"},
        {"1", "", "-64", ""},
        {"2", "未知", "未知-64", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(runOnly({"exif.jpg", "none.jpg"}, "D101",
                          {{"D1_Template", "<D.MODEL>-<D.WIDTH>"}, {"D1_Missing", c.missing}, {"D1_MissingText", c.fallback}}),
                  (QStringList{"Canon EOS R5-64", QString::fromUtf8(c.expected)}))
            << c.missing;
        EXPECT_EQ(messages().contains(QString::fromUtf8(c.message)), *c.message != 0) << messages().join(u'\n').toStdString();
    }
}

TEST_F(MetadataCommandsTest, DateTakenFollowsTheChosenSources)
{
    const struct {
        Params sources;
        const char* exif;  // has DateTimeOriginal
        const char* xmpOnly;
    } cases[] = {
        {{}, "2021-05-06", "2019-03-04"},
        {{{"D1_DateXmp", "0"}}, "2021-05-06", "xmp-only"},
    };
    session.settings().writeString("UnitVariable", "<D.DATETAKEN>", "yyyy-mm-dd");
    for (const auto& c : cases) {
        Params params = c.sources;
        params.emplace_back("D1_Template", "<D.DATETAKEN>");
        EXPECT_EQ(runOnly({"exif.jpg", "xmp-only.jpg"}, "D101", params), (QStringList{c.exif, c.xmpOnly}));
    }
    // The file's modified time comes last, when chosen.
    session.renameList().clear();
    CommandList::eraseCommands(session.settings());
    addSample("none.jpg").modified = QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6)).toMSecsSinceEpoch() * 1'000'000;
    addCommand("D101", {{"D1_Template", "<D.DATETAKEN>"}, {"D1_DateFileTime", "1"}});
    EXPECT_EQ(run(), QStringList{"2001-02-03"});
}

// Broken, empty, misnamed and vanished files: the row stays, one line counts them, nothing
// crashes or hangs, and no file is opened for writing (their bytes are the same after).
TEST_F(MetadataCommandsTest, BadInputLeavesRowsAndIsCountedOnce)
{
    test::TempTree tree;
    const QString vanished = tree.file("gone.mp3", "soon gone");
    const char* const samples[] = {"truncated.mp3", "text-named.mp3", "empty.mp3", "lying-exif.jpg"};
    QList<QByteArray> before;
    for (const char* name : samples) {
        addSample(name);
        QFile file(metadataSample(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        before.append(file.readAll());
    }
    test::appendRow(session.renameList(), vanished);
    QFile::remove(vanished);
    addCommand("M101", {{"M1_Template", "<M.TITLE>"}});
    EXPECT_EQ(run(), (QStringList{"truncated", "text-named", "empty", "lying-exif", "gone"}));
    EXPECT_TRUE(messages().contains("有 5 个文件无法读取音乐标签（文件已不存在、为空、已损坏或不是此类文件）。"))
        << messages().join(u'\n').toStdString();
    EXPECT_TRUE(messages().contains("有 5 个对象缺少模板所用的音乐标签字段，保持不变。"));

    // EXIF that lies about its sizes: the photo's other data is still read.
    CommandList::eraseCommands(session.settings());
    addCommand("D101", {{"D1_Template", "<D.MODEL>|<D.WIDTH>"}, {"D1_Missing", "1"}});
    EXPECT_EQ(run().at(3), "|64");
    for (int i = 0; i < 4; ++i) {
        QFile file(metadataSample(samples[i]));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), before[i]) << samples[i];
    }
}

TEST_F(MetadataCommandsTest, EachFileIsReadOnceUntilItChanges)
{
    test::TempTree tree;
    const QString copy = tree.path("copy.mp3");
    ASSERT_TRUE(QFile::copy(metadataSample("id3v23.mp3"), copy));
    test::appendRow(session.renameList(), copy);
    addSample("exif.jpg");
    addCommand("M101", {{"M1_Template", "<M.TITLE>"}});
    addCommand("N101", {{"N1_AddStr", "<C.FORMAT>"}, {"N1_AddRight", "1"}});
    const metadata::FieldCache& cache = fieldCacheOf(session);
    EXPECT_EQ(run(), (QStringList{"晴天MPEG Audio", "exif"}));
    const qint64 reads = cache.readCount();
    EXPECT_EQ(reads, 2);  // music and media of the MP3; neither reader takes a JPEG
    run();
    run();
    EXPECT_EQ(cache.readCount(), reads);
    EXPECT_TRUE(ui.captions.contains("正在读取文件信息"));

    // A changed file is read again, at the next run.
    ASSERT_TRUE(QFile::remove(copy));
    ASSERT_TRUE(QFile::copy(metadataSample("id3v24.mp3"), copy));
    EXPECT_EQ(run().at(0), "IntroMPEG Audio");
    EXPECT_EQ(cache.readCount(), reads + 2);
}

TEST_F(MetadataCommandsTest, TheLegacyEncodingSettingDecidesOldTagText)
{
    const struct {
        int setting;
        const char* sample;
        const char* expected;
    } cases[] = {{0, "gbk-latin1.mp3", "青花瓷"}, {0, "big5-latin1.mp3", "簡單愛"}, {1, "big5-latin1.mp3", "虏虫稲"},
                 {2, "big5-latin1.mp3", "簡單愛"}, {4, "gbk-latin1.mp3", "Çà»¨´É"}, {1, "gbk-latin1.mp3", "青花瓷"}};
    for (const auto& c : cases) {
        session.settings().writeInt("Operation Config", "NonUnicodeTagEncoding", c.setting);
        EXPECT_EQ(runOnly({c.sample}, "M101", {{"M1_Template", "<M.TITLE>"}}), QStringList{QString::fromUtf8(c.expected)})
            << c.setting << " " << c.sample;
    }
}

TEST_F(MetadataCommandsTest, StoppingTheFirstReadStopsTheRun)
{
    for (const char* name : {"id3v1.mp3", "id3v23.mp3", "id3v24.mp3", "comments.flac"})
        addSample(name);
    addCommand("M101", {{"M1_Template", "<M.TITLE>"}});
    ui.requestStopAfter(0);
    EXPECT_FALSE(session.pipeline().runAll(true));
    EXPECT_EQ(session.renameList().at(0).newName, "id3v1");
    EXPECT_LT(fieldCacheOf(session).readCount(), 4);
}

TEST_F(MetadataCommandsTest, EveryFamilyHasFourCodesWithComments)
{
    for (const QChar family : {u'M', u'D', u'C'}) {
        const QStringList codes = metadataCommandCodes(family);
        ASSERT_EQ(codes.size(), 4);
        for (const QString& code : codes) {
            EXPECT_TRUE(session.pipeline().registry().knows(code)) << code.toStdString();
            EXPECT_FALSE(metadataCommandComment(code).isEmpty()) << code.toStdString();
        }
    }
    EXPECT_EQ(metadataCommandComment("M101"), "音乐标签更名：替换整个文件名");
    EXPECT_EQ(metadataCommandComment("D104"), "照片信息更名：插入到指定位置");
    EXPECT_TRUE(metadataCommandComment("N101").isEmpty());
}

}  // namespace
}  // namespace qp
