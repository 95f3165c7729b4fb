#include "execution/XlsWorkbook.h"

#include <algorithm>
#include <cstdint>

namespace qp {

namespace {

// Little-endian output.
class Bytes {
public:
    void u8(std::uint8_t v) { m_data.append(char(v)); }
    void u16(std::uint16_t v)
    {
        u8(std::uint8_t(v));
        u8(std::uint8_t(v >> 8));
    }
    void u32(std::uint32_t v)
    {
        u16(std::uint16_t(v));
        u16(std::uint16_t(v >> 16));
    }
    void utf16(QStringView text)
    {
        for (QChar c : text)
            u16(c.unicode());
    }
    void bytes(const QByteArray& data) { m_data.append(data); }
    void zeros(qsizetype count) { m_data.append(count, '\0'); }
    qsizetype size() const { return m_data.size(); }
    QByteArray& data() { return m_data; }

private:
    QByteArray m_data;
};

// ---------------------------------------------------------------------------------------
// BIFF8 records.

enum Record : std::uint16_t {
    Eof = 0x000A,
    CodePage = 0x0042,
    Window1 = 0x003D,
    Font = 0x0031,
    Xf = 0x00E0,
    Style = 0x0293,
    BoundSheet = 0x0085,
    Dimensions = 0x0200,
    Window2 = 0x023E,
    Label = 0x0204,
    Bof = 0x0809,
};

constexpr std::uint16_t kCellFormat = 15;  // the first cell format after the 15 style formats
constexpr qsizetype kMaxCellCharacters = 4000;

void record(Bytes& out, Record type, const QByteArray& payload)
{
    out.u16(type);
    out.u16(std::uint16_t(payload.size()));
    out.bytes(payload);
}

QByteArray beginning(std::uint16_t kind)
{
    Bytes b;
    b.u16(0x0600);  // BIFF8
    b.u16(kind);    // 0x0005 workbook globals, 0x0010 worksheet
    b.u16(0x0DBB);  // build and year of the writing application, as Excel 97 writes them
    b.u16(0x07CC);
    b.u32(0);
    b.u32(0x06);    // the oldest version that can read the file: BIFF8
    return b.data();
}

QByteArray font()
{
    Bytes b;
    b.u16(200);     // 10 points, in twentieths
    b.u16(0);
    b.u16(0x7FFF);  // the window text colour
    b.u16(400);     // normal weight
    b.u16(0);
    b.u8(0);
    b.u8(0);
    b.u8(0);
    b.u8(0);
    const QByteArray name = "Arial";
    b.u8(std::uint8_t(name.size()));
    b.u8(0);  // one byte per character
    b.bytes(name);
    return b.data();
}

QByteArray cellFormat(bool style)
{
    Bytes b;
    b.u16(0);                        // font
    b.u16(0);                        // number format "General"
    b.u16(style ? 0xFFF5 : 0x0001);  // locked; a style format has no parent
    b.u8(0x20);                      // aligned to the bottom
    b.u8(0);
    b.u8(0);
    b.u8(style ? 0xF4 : 0x00);  // the attributes a style does not set
    b.u32(0);
    b.u32(0);
    b.u16(0x20C0);  // the system's foreground and background colours
    return b.data();
}

QByteArray workbookGlobals(const std::vector<Worksheet>& sheets, const std::vector<std::uint32_t>& offsets)
{
    Bytes out;
    record(out, Bof, beginning(0x0005));
    Bytes codePage;
    codePage.u16(1200);  // strings are UTF-16
    record(out, CodePage, codePage.data());
    Bytes window;
    const std::uint16_t fields[] = {0, 0, 0x3A5C, 0x23BE, 0x0038, 0, 0, 1, 0x0258};
    for (std::uint16_t v : fields)
        window.u16(v);
    record(out, Window1, window.data());
    // Excel expects the font indexes 0 to 3 and 5; index 4 is never written.
    for (int i = 0; i < 5; ++i)
        record(out, Font, font());
    for (int i = 0; i < 15; ++i)
        record(out, Xf, cellFormat(true));
    record(out, Xf, cellFormat(false));
    Bytes normal;
    normal.u16(0x8000);  // built-in style, format 0
    normal.u8(0);        // "Normal"
    normal.u8(0xFF);
    record(out, Style, normal.data());
    for (size_t i = 0; i < sheets.size(); ++i) {
        Bytes b;
        b.u32(offsets[i]);
        b.u8(0);  // visible
        b.u8(0);  // worksheet
        b.u8(std::uint8_t(sheets[i].name.size()));
        b.u8(1);  // two bytes per character
        b.utf16(sheets[i].name);
        record(out, BoundSheet, b.data());
    }
    record(out, Eof, {});
    return out.data();
}

QByteArray worksheet(const Worksheet& sheet, bool selected)
{
    Bytes out;
    record(out, Bof, beginning(0x0010));
    int lastRow = -1, lastColumn = -1;
    for (const SheetCell& cell : sheet.cells) {
        lastRow = std::max(lastRow, cell.row);
        lastColumn = std::max(lastColumn, cell.column);
    }
    Bytes size;
    size.u32(0);
    size.u32(std::uint32_t(lastRow + 1));
    size.u16(0);
    size.u16(std::uint16_t(lastColumn + 1));
    size.u16(0);
    record(out, Dimensions, size.data());
    Bytes window;
    const std::uint16_t fields[] = {std::uint16_t(selected ? 0x06B6 : 0x00B6), 0, 0, 0x40, 0, 0, 0, 0, 0};
    for (std::uint16_t v : fields)
        window.u16(v);
    record(out, Window2, window.data());
    for (const SheetCell& cell : sheet.cells) {
        if (cell.text.isEmpty())
            continue;
        qsizetype length = std::min(cell.text.size(), kMaxCellCharacters);
        if (length < cell.text.size() && cell.text[length - 1].isHighSurrogate())
            --length;
        Bytes b;
        b.u16(std::uint16_t(cell.row));
        b.u16(std::uint16_t(cell.column));
        b.u16(kCellFormat);
        b.u16(std::uint16_t(length));
        b.u8(1);
        b.utf16(QStringView(cell.text).first(length));
        record(out, Label, b.data());
    }
    record(out, Eof, {});
    return out.data();
}

QByteArray workbookStream(const std::vector<Worksheet>& sheets)
{
    // The globals name each sheet's offset; their size does not depend on the offsets.
    std::vector<std::uint32_t> offsets(sheets.size(), 0);
    const qsizetype globalsSize = workbookGlobals(sheets, offsets).size();
    QByteArray bodies;
    for (size_t i = 0; i < sheets.size(); ++i) {
        offsets[i] = std::uint32_t(globalsSize + bodies.size());
        bodies += worksheet(sheets[i], i == 0);
    }
    return workbookGlobals(sheets, offsets) + bodies;
}

// ---------------------------------------------------------------------------------------
// The compound-file container (version 3, 512-byte sectors) with one stream, "Workbook".

constexpr std::uint32_t kSector = 512;
constexpr std::uint32_t kIdsPerSector = kSector / 4;
constexpr std::uint32_t kHeaderFatIds = 109;
constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFatSector = 0xFFFFFFFD;
constexpr std::uint32_t kDifatSector = 0xFFFFFFFC;
constexpr std::uint32_t kNoStream = 0xFFFFFFFF;
// Streams below this size would live in the mini stream; the workbook is padded past it.
constexpr std::uint32_t kMiniStreamCutoff = 4096;

struct Layout {
    std::uint32_t streamSectors = 0;
    std::uint32_t fatSectors = 0;
    std::uint32_t difatSectors = 0;
    std::uint32_t directorySector() const { return streamSectors; }
    std::uint32_t firstFatSector() const { return streamSectors + 1; }
    std::uint32_t firstDifatSector() const { return firstFatSector() + fatSectors; }
    std::uint32_t total() const { return firstDifatSector() + difatSectors; }
};

Layout layoutFor(std::uint32_t streamBytes)
{
    Layout layout;
    layout.streamSectors = (streamBytes + kSector - 1) / kSector;
    // The FAT describes every sector, its own among them.
    for (;;) {
        layout.difatSectors = layout.fatSectors > kHeaderFatIds
            ? (layout.fatSectors - kHeaderFatIds + kIdsPerSector - 2) / (kIdsPerSector - 1)
            : 0;
        if (layout.fatSectors * kIdsPerSector >= layout.total())
            return layout;
        ++layout.fatSectors;
    }
}

void directoryEntry(Bytes& out, const QString& name, std::uint8_t type, std::uint32_t child, std::uint32_t start,
                    std::uint32_t size)
{
    const qsizetype before = out.size();
    out.utf16(name);
    out.zeros(64 - name.size() * 2);
    out.u16(std::uint16_t(name.isEmpty() ? 0 : (name.size() + 1) * 2));
    out.u8(type);
    out.u8(type == 0 ? 0 : 1);  // black in the red-black tree
    out.u32(kNoStream);         // left sibling
    out.u32(kNoStream);         // right sibling
    out.u32(child);
    out.zeros(16 + 4 + 8 + 8);  // class id, state bits, creation and modification times
    out.u32(start);
    out.u32(size);
    out.u32(0);
    Q_ASSERT(out.size() - before == 128);
}

QByteArray compoundFile(QByteArray stream)
{
    if (stream.size() < qsizetype(kMiniStreamCutoff))
        stream.append(kMiniStreamCutoff - stream.size(), '\0');
    const auto streamBytes = std::uint32_t(stream.size());
    const Layout layout = layoutFor(streamBytes);

    std::vector<std::uint32_t> fat(size_t(layout.fatSectors) * kIdsPerSector, kFree);
    for (std::uint32_t s = 0; s < layout.streamSectors; ++s)
        fat[s] = s + 1 < layout.streamSectors ? s + 1 : kEndOfChain;
    fat[layout.directorySector()] = kEndOfChain;
    for (std::uint32_t s = 0; s < layout.fatSectors; ++s)
        fat[layout.firstFatSector() + s] = kFatSector;
    for (std::uint32_t s = 0; s < layout.difatSectors; ++s)
        fat[layout.firstDifatSector() + s] = kDifatSector;

    Bytes out;
    const std::uint8_t signature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    for (std::uint8_t b : signature)
        out.u8(b);
    out.zeros(16);
    out.u16(0x003E);  // minor version
    out.u16(0x0003);  // major version: 512-byte sectors
    out.u16(0xFFFE);  // little-endian
    out.u16(9);       // sector size 2^9
    out.u16(6);       // mini sector size 2^6
    out.zeros(6);
    out.u32(0);  // directory sectors (always 0 in version 3)
    out.u32(layout.fatSectors);
    out.u32(layout.directorySector());
    out.u32(0);
    out.u32(kMiniStreamCutoff);
    out.u32(kEndOfChain);  // no mini FAT
    out.u32(0);
    out.u32(layout.difatSectors ? layout.firstDifatSector() : kEndOfChain);
    out.u32(layout.difatSectors);
    for (std::uint32_t i = 0; i < kHeaderFatIds; ++i)
        out.u32(i < layout.fatSectors ? layout.firstFatSector() + i : kFree);

    out.bytes(stream);
    out.zeros(qsizetype(layout.streamSectors) * kSector - stream.size());

    directoryEntry(out, QStringLiteral("Root Entry"), 5, 1, kEndOfChain, 0);
    directoryEntry(out, QStringLiteral("Workbook"), 2, kNoStream, 0, streamBytes);
    directoryEntry(out, QString(), 0, kNoStream, 0, 0);
    directoryEntry(out, QString(), 0, kNoStream, 0, 0);

    for (std::uint32_t id : fat)
        out.u32(id);

    // FAT sectors beyond the header's 109, 127 to a sector, each sector naming the next.
    for (std::uint32_t d = 0; d < layout.difatSectors; ++d) {
        for (std::uint32_t i = 0; i < kIdsPerSector - 1; ++i) {
            const std::uint32_t n = kHeaderFatIds + d * (kIdsPerSector - 1) + i;
            out.u32(n < layout.fatSectors ? layout.firstFatSector() + n : kFree);
        }
        out.u32(d + 1 < layout.difatSectors ? layout.firstDifatSector() + d + 1 : kEndOfChain);
    }
    return out.data();
}

}  // namespace

QByteArray xlsWorkbook(const std::vector<Worksheet>& sheets)
{
    return compoundFile(workbookStream(sheets));
}

QString sheetNameFrom(const QString& wanted, const QString& fallback, const QString& suffix)
{
    QString name = wanted.trimmed().isEmpty() ? fallback : wanted.trimmed();
    for (QChar& c : name) {
        if (QStringView(u"[]:*?/\\").contains(c))
            c = u'_';
    }
    qsizetype room = std::max<qsizetype>(31 - suffix.size(), 1);
    if (name.size() > room && name[room - 1].isHighSurrogate())
        --room;
    name.truncate(room);
    return name + suffix;
}

}  // namespace qp
