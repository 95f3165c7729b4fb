#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "script/PythonWorker.h"
#include "../support/QStringPrinter.h"

namespace qp::python {
namespace {

// Names that JSON or UTF-8 handle specially, and one with a surrogate that lost its partner
// (a Windows name can hold one).
const QString kAwkward[] = {
    QStringLiteral("plain"), QStringLiteral("引号\"与\\反斜杠"), QStringLiteral("tab\there\x01"),
    QStringLiteral("emoji 😀"), QString::fromUtf16(u"lone \xD800 half"), QString(),
};

TEST(PythonWorker, RequestsAreJsonThatKeepEveryName)
{
    std::vector<Row> rows;
    for (const QString& name : kAwkward)
        rows.push_back({qsizetype(rows.size()), name, QStringLiteral(".txt"), QStringLiteral("/d/"), name + QStringLiteral(".txt"), true, 1, {}});
    rows.back().folder = QStringLiteral("/e/");
    rows.back().diskName = QStringLiteral("on disk.txt");
    QJsonParseError error;
    const QJsonObject request = QJsonDocument::fromJson(requestJson(QStringLiteral("x = '\\n'"), rows), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError);
    EXPECT_EQ(request["script"].toString(), "x = '\\n'");
    EXPECT_EQ(request["folders"].toArray(), QJsonArray({"/d/", "/e/"}));
    const QJsonArray sent = request["rows"].toArray();
    ASSERT_EQ(sent.size(), qsizetype(rows.size()));
    for (qsizetype i = 0; i + 1 < sent.size(); ++i) {
        const QJsonArray row = sent[i].toArray();
        EXPECT_EQ(row[1].toString(), rows[size_t(i)].name);
        EXPECT_TRUE(row[4].isNull()) << "the disk name is sent only when it differs";
        EXPECT_TRUE(row[7].isNull());
    }
    EXPECT_EQ(sent.last().toArray()[3].toInt(), 1);
    EXPECT_EQ(sent.last().toArray()[4].toString(), "on disk.txt");
}

TEST(PythonWorker, AnswersAreCheckedBeforeAnyNameIsTaken)
{
    struct Case {
        const char* json;
        size_t rows;
        const char* expected;  // names joined by "|", or the error's fragment after "!"
    };
    const Case cases[] = {
        {R"([["a", "\u5f15\"\\\ud83d\ude00\t"], [".x", ""]])", 2, "a.x|引\"\\😀\t"},
        {" [ [ ] , [ ] ] \n", 0, ""},
        {R"([["a"], [".x", ".y"]])", 2, "!返回了 1 个结果，应为 2 个"},
        {R"([["a", 5], ["", ""]])", 2, "!第 2 个文件的文件名不是字符串"},
        {R"([["a"], [null]])", 1, "!第 1 个文件的扩展名不是字符串"},
        {R"([["a"], [""]] trailing)", 1, "!无法识别"},
        {R"([["a\q"], [""]])", 1, "!无法识别"},
        {R"([["a)", 1, "!无法识别"},
        {"garbage", 1, "!无法识别"},
    };
    for (const Case& c : cases) {
        const Result r = parseAnswer(QByteArray(c.json), c.rows);
        const QString expected = QString::fromUtf8(c.expected);
        if (expected.startsWith(u'!')) {
            EXPECT_FALSE(r.ok) << c.json;
            EXPECT_TRUE(r.error.contains(expected.mid(1))) << c.json << ": " << r.error.toStdString();
            continue;
        }
        ASSERT_TRUE(r.ok) << c.json << ": " << r.error.toStdString();
        QStringList names;
        for (const NewName& n : r.names)
            names.append(n.name + n.extension);
        EXPECT_EQ(names.join(u'|'), expected) << c.json;
    }
}

}  // namespace
}  // namespace qp::python
