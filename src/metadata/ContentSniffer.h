// Finds out what a file holds from its first bytes (libmagic), so that files are routed to
// the reader of their content and not of their extension.
#pragma once

#include <memory>

#include "metadata/FieldReader.h"

namespace qp::metadata {

class ContentSniffer {
public:
    ContentSniffer();
    ~ContentSniffer();
    ContentSniffer(const ContentSniffer&) = delete;
    ContentSniffer& operator=(const ContentSniffer&) = delete;

    // The MIME type of the content; empty for an empty file or one that cannot be read.
    ContentType sniff(const ByteSource& source);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace qp::metadata
