#include <QSet>

#include "expressions/ExpressionFixture.h"
#include "expressions/MetaVariableCatalogue.h"
#include "../support/QStringPrinter.h"

namespace qp::test {
namespace {

using Catalogue = ExpressionTest;

const MetaVariableInfo& infoOf(const char* tag)
{
    for (const MetaVariableInfo& info : metaVariableCatalogue()) {
        if (info.tag == QLatin1String(tag))
            return info;
    }
    ADD_FAILURE() << "no " << tag;
    return metaVariableCatalogue().front();
}

TEST_F(Catalogue, EveryTagIsDescribedOnceInSearchOrder)
{
    const auto& catalogue = metaVariableCatalogue();
    // The 77 tags of the file, the name and the clock, then the metadata field tags.
    ASSERT_GT(catalogue.size(), 77u);
    EXPECT_EQ(catalogue.front().tag, "<FILENAME>");
    EXPECT_EQ(catalogue[76].tag, "<FATIME>");
    EXPECT_EQ(catalogue[77].tag, "<M.TITLE>");
    EXPECT_EQ(catalogue.back().tag, "<C.INFO>");
    QSet<QString> seen;
    for (const MetaVariableInfo& info : catalogue) {
        EXPECT_FALSE(seen.contains(info.tag)) << info.tag.toStdString();
        seen.insert(info.tag);
        EXPECT_FALSE(info.description.isEmpty()) << info.tag.toStdString();
        EXPECT_TRUE(info.help.startsWith(info.tag + "\n\n描述：" + info.description)) << info.tag.toStdString();
        EXPECT_TRUE(info.help.contains("缺省设置：" + (info.hasParameter() ? info.defaultParameter : QString("无"))));
        EXPECT_TRUE(info.help.contains("参数："));
    }
}

TEST_F(Catalogue, DefaultsAreTheExpandersOwn)
{
    const struct {
        const char* tag;
        const char* parameter;
    } cases[] = {{"<NAME>", ""},          {"<SUBSTR>", "1/1(L)"}, {"<SIZE>", "AUTO( )"},
                 {"<DISIZE>", "0/AUTO( )"}, {"<R>", "8(N)(UC)(LC)(UL)"}, {"<FCDATE>", "<FCY>-<FCM>-<FCD>"},
                 {"<DIFNSUBSTR>", "0/DIR(Example Str)"}, {"<USER7>", ""}};
    for (const auto& c : cases)
        EXPECT_EQ(infoOf(c.tag).defaultParameter, c.parameter) << c.tag;
    EXPECT_EQ(infoOf("<FW>").description, "文件修改星期");
}

TEST_F(Catalogue, EdgeBlanksAreStoredAsTwentyAndReadBack)
{
    const struct {
        const char* value;
        const char* stored;
    } cases[] = {{"1/2", "1/2"}, {" 1/2", "<20>1/2"}, {"a b  ", "a b<20><20>"}, {"   ", "<20><20><20>"}, {"", ""}};
    const MetaVariableInfo& substr = infoOf("<SUBSTR>");
    for (const auto& c : cases) {
        EXPECT_EQ(encodeEdgeSpaces(c.value), c.stored);
        setMetaVariableParameter(session.settings(), substr, c.value);
        EXPECT_EQ(session.settings().readString("UnitVariable", "<SUBSTR>", "x"), c.stored);
        EXPECT_EQ(metaVariableParameter(session.settings(), substr), c.value);
    }
    EXPECT_EQ(metaVariableParameter(session.settings(), infoOf("<SAMPLENO>")), "1/1/1");
    setMetaVariableParameter(session.settings(), infoOf("<NAME>"), "ignored");
    EXPECT_FALSE(session.settings().hasKey("UnitVariable", "<NAME>"));
}

TEST_F(Catalogue, AStoredParameterChangesTheExpansion)
{
    addRow("/d/ABCDEFGHIJK.txt");
    addRow("/d/second.txt");
    setMetaVariableParameter(session.settings(), infoOf("<SAMPLENO>"), "3/2/3");
    EXPECT_EQ(expand("<SAMPLENO>", 1), "005");
    setMetaVariableParameter(session.settings(), infoOf("<SUBSTR>"), "2/3(R)");
    EXPECT_EQ(expand("<SUBSTR>"), "HIJ");
}

}  // namespace
}  // namespace qp::test
