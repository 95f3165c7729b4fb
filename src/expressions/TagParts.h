// What the tag families share inside the expander: the tag numbers, how parameters yield
// numbers and sizes, and the helpers each family file provides.
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringView>
#include <cstdint>

namespace qp::expr {

// In search order; the date and time tags close the list, group by group.
enum Tag : int {
    TFileName, TCFileName, TName, TCName, TDotExt, TDotCExt, TExt, TCExt,
    TUser0, TUser1, TUser2, TUser3, TUser4, TUser5, TUser6, TUser7, TUser8, TUser9,
    TNCrc32, TNMd5, TNSha1, TCrc32, TMd5, TSha1,
    TSize, TSpSize, TDiSize, TSampleNo, TAttrib, TDir, TR, TSubStr, TCSubStr,
    TSpAllNum, TSpFileNum, TSpDirNum, TDiAllNum, TDiFileNum, TDiDirNum, TListNum, TDifnSubStr,
    // current date, current time, then modified, created and accessed date and time
    TY, TM, TD, TW, TDate, TH, TN, TS, TTime,
    TFY, TFM, TFD, TFW, TFDate, TFH, TFN, TFS, TFTime,
    TFCY, TFCM, TFCD, TFCW, TFCDate, TFCH, TFCN, TFCS, TFCTime,
    TFAY, TFAM, TFAD, TFAW, TFADate, TFAH, TFAN, TFAS, TFATime,
    TagCount
};

inline constexpr int kFirstDateTag = TY;
inline constexpr int kDateGroupCount = 8;

// The tag's name without brackets ("FILENAME") and its default parameter (empty: none).
const char* tagName(int tag);
QString tagDefault(int tag);
// Search rank: the tag itself up to "<DIFNSUBSTR>", then one rank per date or time group.
int tagRank(int tag);
// Looks up an upper-case name without brackets; -1 when it is no tag.
int findTag(const char* name, int length);

// The first run of decimal digits in `text`, or `fallback` when there is none. Large
// numbers stop growing at kNumberCeiling, so that arithmetic on them cannot overflow.
inline constexpr std::int64_t kNumberCeiling = 1'000'000'000'000'000;
std::int64_t firstNumber(QStringView text, std::int64_t fallback);
// Replaces every "<20>" (any case) with a space: how the settings keep leading and
// trailing spaces of a parameter.
QString decodeSpaces(QString value);
// Replaces every occurrence of `needle` with `value`, ignoring ASCII case.
QString replaceAsciiCaseless(const QString& text, QStringView needle, const QString& value);

// ---- sizes -------------------------------------------------------------------------------

struct SizeFormat {
    enum class UnitText { None, Attached, Spaced, Custom };
    enum class Unit { Auto, KB, MB, GB, TB, Bytes };
    UnitText unitText = UnitText::None;
    QString customText;
    Unit unit = Unit::Auto;
    bool thousands = false;
    int depth = 0;  // "<DISIZE>" only
};
SizeFormat parseSizeFormat(const QString& parameter, bool withDepth);
QString formatSize(std::uint64_t bytes, const SizeFormat& format);

// ---- files on disk -------------------------------------------------------------------------

enum class HashKind { Crc32, Md5, Sha1 };
// Capital hexadecimal digest of the bytes.
QString hashBytes(HashKind kind, QByteArrayView bytes);
// Digest of the file's contents; empty when there is no readable file at `path`.
QString hashFile(HashKind kind, const QString& path);

struct TreeCount {
    std::uint64_t files = 0;
    std::uint64_t folders = 0;
    std::uint64_t bytes = 0;
};
// Counts what lies inside `folder` down to `depth` levels (0: all; 1: its own entries).
// Links to folders are counted but never entered.
TreeCount countTree(const QString& folder, int depth);
// True when a file name (and with `folders`, a folder name) inside `folder`, down to
// `depth` levels, contains `needle`.
bool treeHasName(const QString& folder, int depth, bool folders, const QString& needle);

// ---- dates -----------------------------------------------------------------------------------

// Applies a picture ("yyyy-mm-dd", "dddd", "hh:nn") to a moment; letters of the codes in
// either case, every other character copied.
QString formatPicture(const QDateTime& moment, QStringView picture, const QLocale& locale);

}  // namespace qp::expr
