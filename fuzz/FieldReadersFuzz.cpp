// libFuzzer target: any bytes, sniffed and handed to every metadata reader that takes their
// content, through the same read-only adapters the program uses. A reader may find nothing;
// it must not crash, hang or read outside the bytes.
#include <QByteArray>

#include <cstddef>
#include <cstdint>

#include "metadata/ByteSource.h"
#include "metadata/ContentSniffer.h"
#include "metadata/Readers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace qp::metadata;
    static const auto readers = makeFieldReaders();
    static ContentSniffer sniffer;
    const MemorySource source(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)), QStringLiteral("fuzz"));
    const ContentType type = sniffer.sniff(source);
    ReadRequest request;
    request.everyKey = true;
    for (const auto& reader : readers) {
        if (reader->accepts(type))
            reader->read(source, type, request);
    }
    return 0;
}
