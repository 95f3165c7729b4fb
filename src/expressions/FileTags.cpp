// The tags that read the disk: content and name hashes, sizes and the folder counts.
#include <QCryptographicHash>
#include <zlib.h>

#include <algorithm>
#include <cmath>

#include "core/PathText.h"
#include "expressions/TagParts.h"
#include "platform/FileSystem.h"

namespace qp::expr {
namespace {

constexpr std::size_t kHashBlock = 256 * 1024;

QString crcText(uLong crc) { return QString::number(quint32(crc), 16).toUpper().rightJustified(8, u'0'); }

QCryptographicHash::Algorithm algorithmOf(HashKind kind)
{
    return kind == HashKind::Md5 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1;
}

// Adds up what lies below `folder` (with trailing '/'), `levelsLeft` levels down (< 0: all).
// `visit` returns false to stop; the result is false when stopped.
template <typename Visit>
bool walkLevels(const platform::Path& folder, int levelsLeft, Visit& visit)
{
    std::vector<platform::Path> below;
    platform::WalkEvents events;
    bool stopped = false;
    events.entry = [&](const platform::DirEntry& e) {
        if (!visit(e)) {
            stopped = true;
            return false;
        }
        if (e.info.isFolder && !e.info.isSymlink && levelsLeft != 1) {
            platform::Path child(e.folder);
            child.append(e.name);
            child.push_back(u'/');
            below.push_back(std::move(child));
        }
        return true;
    };
    platform::walk(folder, false, events);
    if (stopped)
        return false;
    for (const platform::Path& child : below) {
        if (!walkLevels(child, levelsLeft < 0 ? -1 : levelsLeft - 1, visit))
            return false;
    }
    return true;
}

// An empty folder (a row that has none) names nothing, never the current folder or "/".
platform::Path folderPath(const QString& folder)
{
    platform::Path path = toPlatformPath(folder);
    if (path.empty())
        return path;
    if (path.back() != u'/')
        path.push_back(u'/');
    return path;
}

}  // namespace

QString hashBytes(HashKind kind, QByteArrayView bytes)
{
    if (kind == HashKind::Crc32) {
        const auto* data = reinterpret_cast<const Bytef*>(bytes.data());
        return crcText(crc32_z(crc32_z(0, nullptr, 0), data, z_size_t(bytes.size())));
    }
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithmOf(kind)).toHex().toUpper());
}

QString hashFile(HashKind kind, const QString& path)
{
    const platform::Path file = toPlatformPath(path);
    if (kind == HashKind::Crc32) {
        uLong crc = crc32_z(0, nullptr, 0);
        const bool ok = platform::readChunks(file, kHashBlock, [&](std::string_view piece) {
            crc = crc32_z(crc, reinterpret_cast<const Bytef*>(piece.data()), piece.size());
            return true;
        });
        return ok ? crcText(crc) : QString();
    }
    QCryptographicHash hash(algorithmOf(kind));
    const bool ok = platform::readChunks(file, kHashBlock, [&](std::string_view piece) {
        hash.addData(QByteArrayView(piece.data(), qsizetype(piece.size())));
        return true;
    });
    return ok ? QString::fromLatin1(hash.result().toHex().toUpper()) : QString();
}

TreeCount countTree(const QString& folder, int depth)
{
    TreeCount count;
    auto visit = [&](const platform::DirEntry& e) {
        if (e.info.isFolder) {
            ++count.folders;
        } else {
            ++count.files;
            count.bytes += e.info.size;
        }
        return true;
    };
    const platform::Path root = folderPath(folder);
    if (!root.empty())
        walkLevels(root, depth <= 0 ? -1 : depth, visit);
    return count;
}

bool treeHasName(const QString& folder, int depth, bool folders, const QString& needle)
{
    if (needle.isEmpty())
        return false;
    const std::u16string_view wanted(reinterpret_cast<const char16_t*>(needle.utf16()), size_t(needle.size()));
    bool found = false;
    auto visit = [&](const platform::DirEntry& e) {
        if ((!e.info.isFolder || folders) && e.name.find(wanted) != std::u16string_view::npos) {
            found = true;
            return false;
        }
        return true;
    };
    const platform::Path root = folderPath(folder);
    if (!root.empty())
        walkLevels(root, depth <= 0 ? -1 : depth, visit);
    return found;
}

// ---- sizes -----------------------------------------------------------------------------------

SizeFormat parseSizeFormat(const QString& parameter, bool withDepth)
{
    SizeFormat format;
    QString rest = parameter;
    const qsizetype close = rest.lastIndexOf(u')');
    const qsizetype open = close < 0 ? -1 : rest.indexOf(u'(');
    if (open >= 0 && open < close) {
        const QString inside = rest.mid(open + 1, close - open - 1);
        if (inside.isEmpty())
            format.unitText = SizeFormat::UnitText::Attached;
        else if (inside.count(u' ') == inside.size())
            format.unitText = SizeFormat::UnitText::Spaced;
        else {
            format.unitText = SizeFormat::UnitText::Custom;
            format.customText = inside;
        }
        rest.remove(open, close - open + 1);
    }
    if (withDepth) {
        const qsizetype slash = rest.indexOf(u'/');
        if (slash >= 0) {
            format.depth = int(std::min<std::int64_t>(firstNumber(QStringView(rest).left(slash), 0), 1 << 20));
            rest.remove(0, slash + 1);
        }
    }
    const QString upper = rest.toUpper();
    using U = SizeFormat::Unit;
    static const std::pair<const char*, U> kUnits[] = {{"AUTO", U::Auto}, {"KB", U::KB}, {"MB", U::MB},
                                                       {"GB", U::GB},     {"TB", U::TB}, {"B", U::Bytes}};
    // A parameter that names no unit is read as "AUTO".
    format.unit = U::Auto;
    for (const auto& [word, unit] : kUnits) {
        if (upper.contains(QLatin1String(word))) {
            format.unit = unit;
            break;
        }
    }
    format.thousands = rest.contains(u',');
    return format;
}

QString formatSize(std::uint64_t bytes, const SizeFormat& format)
{
    using U = SizeFormat::Unit;
    using T = SizeFormat::UnitText;
    QString number;
    QString unitName;
    T unitText = format.unitText;
    if (format.unit == U::Auto) {
        static const char* const kNames[] = {"KB", "MB", "GB", "TB"};
        int power = 0;
        while (power < 4 && bytes >= (std::uint64_t(1) << (10 * (power + 1))))
            ++power;
        if (power == 0) {
            number = QString::number(bytes);
            unitName = QStringLiteral("字节");
        } else {
            number = QString::number(double(bytes) / double(std::uint64_t(1) << (10 * power)), 'f', 2);
            unitName = QLatin1String(kNames[power - 1]);
        }
        if (unitText == T::Custom)
            unitText = T::Spaced;
    } else {
        int power = 0;
        switch (format.unit) {
        case U::KB: power = 1; unitName = QStringLiteral("KB"); break;
        case U::MB: power = 2; unitName = QStringLiteral("MB"); break;
        case U::GB: power = 3; unitName = QStringLiteral("GB"); break;
        case U::TB: power = 4; unitName = QStringLiteral("TB"); break;
        default: unitName = QStringLiteral("字节"); break;
        }
        const std::uint64_t divisor = std::uint64_t(1) << (10 * power);
        // Rounded half up.
        const std::uint64_t whole = power == 0 ? bytes : bytes / divisor + ((bytes % divisor) * 2 >= divisor ? 1 : 0);
        number = QString::number(whole);
        if (format.thousands) {
            for (qsizetype at = number.size() - 3; at > 0; at -= 3)
                number.insert(at, u',');
        }
    }
    switch (unitText) {
    case T::None: return number;
    case T::Attached: return number + unitName;
    case T::Spaced: return number + u' ' + unitName;
    case T::Custom: return number + format.customText;
    }
    return number;
}

}  // namespace qp::expr
