// Tags that read the disk: hashes, sizes, attributes, counts and the name search.
#include <zlib.h>

#include <QCryptographicHash>
#include <filesystem>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include "ExpressionFixture.h"
#include "expressions/TagParts.h"
#include "support/TempTree.h"

namespace qp::test {
namespace {

class FileTags : public ExpressionTest {
protected:
    TempTree tree;
};

TEST_F(FileTags, ContentHashesOfFilesFoldersAndMissingFiles)
{
    addRow(tree.file("check.txt", "123456789"));
    addRow(tree.file("empty.bin", ""));
    addRow(tree.folder("folder"), true);
    addRow(tree.path("missing.txt"));
    // Larger than one 256 KiB block and not a multiple of it.
    std::string big(700 * 1024 + 13, '\0');
    for (size_t i = 0; i < big.size(); ++i)
        big[i] = char((i * 131) ^ (i >> 9));
    addRow(tree.file("big.dat", big));

    EXPECT_EQ(expand("<CRC32>|<MD5>|<SHA1>", 0),
              "CBF43926|25F9E794323B453885F5181F1B624D0B|F7C3BC1D808E04732ADF679965CCC34CA7AE3441");
    EXPECT_EQ(expand("<CRC32>|<MD5>|<SHA1>", 1),
              "00000000|D41D8CD98F00B204E9800998ECF8427E|DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
    EXPECT_EQ(expand("[<CRC32>][<MD5>][<SHA1>]", 2), "[][][]");
    EXPECT_EQ(expand("[<CRC32>][<MD5>][<SHA1>]", 3), "[][][]");
#ifndef _WIN32
    // A named pipe in the list is no file to hash, and must not wait for a writer.
    ASSERT_EQ(::mkfifo((tree.root() / "pipe").c_str(), 0600), 0);
    addRow(tree.path("pipe"));
    EXPECT_EQ(expand("[<CRC32>][<MD5>]", 5), "[][]");
#endif

    const QByteArray bytes(big.data(), qsizetype(big.size()));
    const uLong crc = crc32(0, reinterpret_cast<const Bytef*>(big.data()), uInt(big.size()));
    EXPECT_EQ(expand("<crc32>", 4), QStringLiteral("%1").arg(quint32(crc), 8, 16, QLatin1Char('0')).toUpper());
    EXPECT_EQ(expand("<md5>", 4), QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toUpper());
    EXPECT_EQ(expand("<sha1>", 4), QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().toUpper());
}

TEST_F(FileTags, NameHashesChooseTheirStringAndHashUtf8)
{
    addRow("/Data/Report.doc");
    addRow("/Data/报告.txt");
    struct Row {
        const char* parameter;
        const char* crc;
        const char* md5;
        const char* sha1;
    };
    for (const Row& r : {
             Row{nullptr, "EA6441CA", "51822161597C4F3252618340D1E25F80", "DCEE50F0467931D31CE3D53B6DC691F8708C2713"},
             Row{"(EE)", "C38372B2", "4B1B4DC8CF38B3C64B1D657DA8F5AC8C", "EE45C30326B750387589752C0F75E1DD87DDC7E4"},
             Row{"(oe)(FN)", "8641FD64", "9A09B4DFDA82E3E665E31092D1C3EC8D", "F7F029ECB98ABE979074A3AB45B74DBD9AF02D42"},
             Row{"nothing", "EA6441CA", "51822161597C4F3252618340D1E25F80", "DCEE50F0467931D31CE3D53B6DC691F8708C2713"},
         }) {
        for (const char* tag : {"<NCRC32>", "<NMD5>", "<NSHA1>"})
            setParameter(tag, r.parameter ? r.parameter : "(FN)");
        EXPECT_EQ(expand("<NCRC32>"), r.crc) << r.parameter;
        EXPECT_EQ(expand("<NMD5>"), r.md5) << r.parameter;
        EXPECT_EQ(expand("<NSHA1>"), r.sha1) << r.parameter;
    }
    setParameter("<NCRC32>", "(FN)");
    EXPECT_EQ(expand("<NCRC32>", 1), "17CFCC46");  // the UTF-8 bytes of 报告.txt
}

TEST(SizeFormats, UnitsSeparatorsAndUnitTexts)
{
    struct Row {
        const char* parameter;
        std::uint64_t bytes;
        const char* expected;
    };
    for (const Row& r : {
             Row{"AUTO( )", 1536, "1.50 KB"},
             Row{"AUTO()", 1536, "1.50KB"},
             Row{"AUTO", 1536, "1.50"},
             Row{"AUTO( )", 1000, "1000 字节"},
             Row{"AUTO( Bytes)", 1048576, "1.00 MB"},
             Row{"AUTO,( )", 1073741824ull * 3 / 2, "1.50 GB"},
             Row{"auto( )", 1ull << 40, "1.00 TB"},
             Row{"AUTO( )", 5ull << 50, "5120.00 TB"},
             Row{"KB()", 2048, "2KB"},
             Row{"KB()", 1535, "1KB"},
             Row{"KB()", 1536, "2KB"},
             Row{"B", 7654321, "7654321"},
             Row{"B,( Byte(s))", 7654321, "7,654,321 Byte(s)"},
             Row{"B,", 999, "999"},
             Row{"B,", 1000, "1,000"},
             Row{"MB( )", 3670016, "4 MB"},
             Row{"GB( )", 0, "0 GB"},
             Row{"TB,()", 1ull << 42, "4TB"},
             Row{"", 5, "5"},
             Row{"xyz( )", 2048, "2.00 KB"},
             Row{")(", 2048, "2.00"},
         }) {
        EXPECT_EQ(expr::formatSize(r.bytes, expr::parseSizeFormat(QString::fromUtf8(r.parameter), false)),
                  QString::fromUtf8(r.expected))
            << r.parameter;
    }
    const expr::SizeFormat withDepth = expr::parseSizeFormat("2/KB()", true);
    EXPECT_EQ(withDepth.depth, 2);
    EXPECT_EQ(withDepth.unit, expr::SizeFormat::Unit::KB);
    EXPECT_EQ(expr::parseSizeFormat("KB", true).depth, 0);
}

TEST_F(FileTags, SizesOfEntriesFoldersAndTrees)
{
    addRow(tree.file("d/a.bin", std::string(1000, 'a')));
    tree.file("d/b.bin", std::string(536, 'b'));
    tree.file("d/sub/c.bin", std::string(2048, 'c'));
    tree.file("d/sub/deeper/e.bin", std::string(1024, 'e'));
    addRow(tree.path("d"), true);
    addRow(tree.path("d/gone.bin"));
    EXPECT_EQ(expand("<SIZE>|<SPSIZE>", 0), "1000 字节|1.50 KB");
    EXPECT_EQ(expand("[<SIZE>][<DISIZE>]", 1), "[][4.50 KB]");
    setParameter("<DISIZE>", "1/B");
    EXPECT_EQ(expand("<DISIZE>", 1), "1536");
    setParameter("<DISIZE>", "2/B");
    EXPECT_EQ(expand("<DISIZE>", 1), "3584");
    EXPECT_EQ(expand("[<SIZE>][<DISIZE>]", 2), "[][]");
    EXPECT_EQ(expand("[<DISIZE>]", 0), "[]");
}

TEST_F(FileTags, CountsAndNameSearchDownToADepth)
{
    addRow(tree.file("d/a.txt"));
    tree.file("d/b.txt");
    tree.file("d/sub/c.txt");
    tree.file("d/sub/deeper/e.txt");
    addRow(tree.path("d"), true);
    addRow(tree.path("nothing"), true);
    EXPECT_EQ(expand("<SPALLNUM>/<SPFILENUM>/<SPDIRNUM>", 0), "3/2/1");
    EXPECT_EQ(expand("[<DIALLNUM>][<DIFILENUM>][<DIDIRNUM>]", 0), "[][][]");  // a file
    EXPECT_EQ(expand("[<DIALLNUM>][<DIFILENUM>][<DIDIRNUM>]", 2), "[][][]");  // missing

    struct Row {
        const char* depth;
        const char* counts;  // all/files/folders
    };
    for (const Row& r : {Row{"0", "6/4/2"}, Row{"1", "3/2/1"}, Row{"2", "5/3/2"}, Row{"3", "6/4/2"},
                         Row{"none", "6/4/2"}}) {
        for (const char* tag : {"<DIALLNUM>", "<DIFILENUM>", "<DIDIRNUM>"})
            setParameter(tag, r.depth);
        EXPECT_EQ(expand("<DIALLNUM>/<DIFILENUM>/<DIDIRNUM>", 1), r.counts) << r.depth;
    }

    struct Search {
        const char* parameter;
        const char* value;
    };
    for (const Search& s : {Search{nullptr, ""}, Search{"0/DIR(deep)", "deep"}, Search{"0(deep)", ""},
                            Search{"(e.t)", "e.t"}, Search{"1(c.t)", ""}, Search{"2(c.t)", "c.t"},
                            Search{"(c.t)2", "c.t"}, Search{"(1)", ""}, Search{"/dir(sub)1", "sub"},
                            Search{"()", ""}, Search{"(C.T)", ""}}) {
        if (s.parameter)
            setParameter("<DIFNSUBSTR>", s.parameter);
        EXPECT_EQ(expand("<DIFNSUBSTR>", 1), s.value) << (s.parameter ? s.parameter : "default");
    }
    EXPECT_EQ(expand("[<DIFNSUBSTR>]", 0), "[]");
}

TEST_F(FileTags, AttributesInThreeStyles)
{
    addRow(tree.file("plain.txt"));
    const QString hidden = tree.file(".hidden");
    std::filesystem::permissions(tree.root() / ".hidden",
                                 std::filesystem::perms::owner_write | std::filesystem::perms::group_write |
                                     std::filesystem::perms::others_write,
                                 std::filesystem::perm_options::remove);
    addRow(hidden);
    addRow(tree.path("missing.txt"));
    struct Row {
        const char* parameter;
        const char* plain;
        const char* hiddenReadOnly;
    };
    for (const Row& r : {Row{nullptr, "N", "RH"}, Row{"a(-)", "N", "R-H"}, Row{"aa(-)", "Normal", "ReadOnly-Hidden"},
                         Row{"aaa(、)", "正常", "只读、隐藏"}, Row{"AA", "Normal", "ReadOnlyHidden"},
                         Row{"(+)", "N", "R+H"}, Row{"a)(", "N", "RH"}}) {
        if (r.parameter)
            setParameter("<ATTRIB>", QString::fromUtf8(r.parameter));
        EXPECT_EQ(expand("<ATTRIB>", 0), QString::fromUtf8(r.plain)) << r.parameter;
        EXPECT_EQ(expand("<ATTRIB>", 1), QString::fromUtf8(r.hiddenReadOnly)) << r.parameter;
        EXPECT_EQ(expand("[<ATTRIB>]", 2), "[]") << r.parameter;
    }
}

}  // namespace
}  // namespace qp::test
