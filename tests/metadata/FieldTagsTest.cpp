// Field tags in any expression: their parameters, their place in the search order, and the
// pieces under them (moments, legacy text).
#include <gtest/gtest.h>

#include "core/Session.h"
#include "expressions/MetaVariableCatalogue.h"
#include "expressions/MetaVariables.h"
#include "metadata/FieldValue.h"
#include "metadata/LegacyText.h"
#include "support/CommandRows.h"
#include "support/MetadataSamples.h"
#include "support/QStringPrinter.h"

namespace qp {
namespace {

class FieldTagsTest : public ::testing::Test {
protected:
    FieldTagsTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        options.locale = QLocale(QLocale::Chinese, QLocale::China);
    }

    QString expand(const char* text, const char* sample, bool stepByStep = false)
    {
        session.renameList().clear();
        test::appendRow(session.renameList(), test::metadataSample(sample));
        ExpressionOptions o = options;
        o.stepByStep = stepByStep;
        return MetaExpression(QString::fromUtf8(text), o).expand(session, 0);
    }

    ScriptedInteraction ui;
    Session session;
    ExpressionOptions options;
};

TEST_F(FieldTagsTest, ParametersComeFromTheSettingsLikeEveryTags)
{
    const struct {
        const char* tag;
        const char* parameter;  // null: the default
        const char* sample;
        const char* expected;
    } cases[] = {
        {"<M.TRACK>", nullptr, "id3v23.mp3", "03"},
        {"<M.TRACK>", "3", "id3v23.mp3", "003"},
        {"<M.TRACK>", "x", "id3v23.mp3", "03"},  // no digits: the default
        {"<M.DISC>", nullptr, "id3v23.mp3", "1"},
        {"<D.DATETAKEN>", "yyyymmdd_hhnnss.zzz oooo", "exif.jpg", "20210506_070809.120 +0800"},
        {"<D.DATETAKEN>", "dddddd ddd", "exif.jpg", "2021年5月6日 周四"},
        {"<D.DATEDIGITIZED>", "hh.nn.ss.zzz[oooo]", "exif.jpg", "07.08.10.000[]"},
        {"<M.HASCOVER>", "[封面]/", "id3v23.mp3", "[封面]"},
        {"<M.HASCOVER>", "[封面]/", "id3v24.mp3", ""},
        {"<D.FNUMBER>", "／", "exif.jpg", "f／2.8"},
        {"<D.EXPOSURE>", nullptr, "exif.jpg", "1-250"},
        {"<D.KEYWORDS>", " & ", "exif.jpg", "lake & sunset"},
        {"<D.GPSLATITUDE>", "2", "exif.jpg", "30.24"},
        {"<D.KEY>", "Exif.Photo.LensModel", "exif.jpg", "RF24-105mm F4 L IS USM"},
        {"<D.KEY>", "Iptc.Application2.Byline", "exif.jpg", "Photographer P"},
        {"<D.KEY>", "Exif.Photo.NoSuchTag", "exif.jpg", ""},
        {"<C.INFO>", "Audio;Format", "info.wav", "PCM"},
        {"<C.INFO>", "Audio", "info.wav", ""},
        {"<M.LENGTHTEXT>", "'", "id3v24.mp3", "0'02"},
    };
    for (const auto& c : cases) {
        if (c.parameter)
            session.settings().writeString("UnitVariable", c.tag, QString::fromUtf8(c.parameter));
        else
            session.settings().eraseKey("UnitVariable", c.tag);
        EXPECT_EQ(expand(c.tag, c.sample), QString::fromUtf8(c.expected)) << c.tag << " " << (c.parameter ? c.parameter : "");
    }
}

TEST_F(FieldTagsTest, FieldTagsComeAfterEveryOtherTagAndAreFoundInAnyCase)
{
    const struct {
        const char* text;
        const char* sample;
        const char* expected;
    } cases[] = {
        {"<name>:<m.title>", "id3v24.mp3", "id3v24:Intro"},
        {"<M.ALBUM><NAME><M.ALBUM>", "id3v24.mp3", "Album Twoid3v24Album Two"},
        {"<M.NOSUCHFIELD>|<X.FOO>|<M.>", "id3v24.mp3", "|X.FOO|M."},  // a known family: a field it lacks
        {"<M.TITLE><D.MODEL>", "exif.jpg", "Canon EOS R5"},            // no music in a photo
        {"<<M.TITLE>>", "id3v24.mp3", "Intro"},
    };
    for (const auto& c : cases) {
        for (const bool stepByStep : {false, true})
            EXPECT_EQ(expand(c.text, c.sample, stepByStep), QString::fromUtf8(c.expected)) << c.text << stepByStep;
    }
    // A folder has no fields.
    session.renameList().clear();
    test::appendRow(session.renameList(), test::metadataSample(""), true);
    EXPECT_EQ(MetaExpression("<M.TITLE>-<D.MODEL>", options).expand(session, 0), "-");
    EXPECT_EQ(MetaExpression("<M.TITLE><D.KEY><M.ARTIST>").fieldFamilies(), "MD");
}

TEST_F(FieldTagsTest, TheSettingsTabListsEveryFieldTagByFamily)
{
    const MetaVariableInfo* track = metaVariableInfo("<M.TRACK>");
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->description, "音乐标签：音轨号");
    EXPECT_EQ(track->defaultParameter, "2");
    const MetaVariableInfo* fnumber = metaVariableInfo("<d.fnumber>");
    ASSERT_NE(fnumber, nullptr);
    EXPECT_TRUE(fnumber->hasParameter());  // its default is empty: "/" is dropped
    EXPECT_FALSE(metaVariableInfo("<M.TITLE>")->hasParameter());
    EXPECT_TRUE(metaVariableInfo("<C.INFO>")->help.contains("quillet fields"));
}

TEST(FieldValues, MomentsAreReadFromEveryFormatFilesUse)
{
    const struct {
        const char* text;
        const char* iso;
    } cases[] = {
        {"2021:05:06 07:08:09", "2021-05-06T07:08:09"},
        {"2021-05-06T07:08:09.5+08:00", "2021-05-06T07:08:09.500+08:00"},
        {"2019-03-04T05:06:07Z", "2019-03-04T05:06:07+00:00"},
        {"UTC 2020-01-02 03:04:05", "2020-01-02T03:04:05+00:00"},
        {"2020-01-02 03:04:05 UTC", "2020-01-02T03:04:05+00:00"},
        {"2004", "2004-01-01"},
        {"0000:00:00 00:00:00", ""},
        {"2021:13:40 07:08:09", ""},
        {"yesterday", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(metadata::parseMoment(QString::fromUtf8(c.text)).isoText(), c.iso) << c.text;
    using metadata::FieldValue;
    EXPECT_EQ(FieldValue::fraction(10, 2500).text(), "1/250");
    EXPECT_EQ(FieldValue::fraction(25, 10).text(), "2.5");
    EXPECT_EQ(FieldValue::fraction(1, 0).text(), "");
    EXPECT_EQ(FieldValue::number(12.50).text(), "12.5");
    EXPECT_EQ(FieldValue::list({"a", "b"}).text(), "a; b");
}

TEST(LegacyText, AutomaticPicksUtf8ThenTheCommonestCjkThenWestern)
{
    using metadata::LegacyEncoding;
    const struct {
        QByteArray bytes;
        LegacyEncoding encoding;
        const char* expected;
    } cases[] = {
        {"\xE4\xB8\xAD\xE6\x96\x87", LegacyEncoding::Automatic, "中文"},
        {"\xD6\xD0\xCE\xC4", LegacyEncoding::Automatic, "中文"},
        {"\xA4\xA4\xA4\xE5", LegacyEncoding::Automatic, "中文"},
        {"Caf\xE9", LegacyEncoding::Automatic, "Café"},
        {"\xD6\xD0\xCE\xC4", LegacyEncoding::Latin1, "ÖÐÎÄ"},
        {"\x93\xFA\x96\x7B", LegacyEncoding::ShiftJis, "日本"},
        {"plain", LegacyEncoding::Big5, "plain"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(metadata::decodeLegacy(c.bytes, c.encoding), QString::fromUtf8(c.expected)) << c.expected;
    // Text a library decoded as Latin-1: decoded again where that gives CJK text.
    EXPECT_EQ(metadata::repairLatin1(QString::fromLatin1("\xD6\xD0\xCE\xC4"), LegacyEncoding::Automatic), "中文");
    EXPECT_EQ(metadata::repairLatin1("Café", LegacyEncoding::Automatic), "Café");
    EXPECT_EQ(metadata::repairLatin1("中文", LegacyEncoding::Gbk), "中文");
}

}  // namespace
}  // namespace qp
