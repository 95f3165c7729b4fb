// The sample files of the metadata tests (music in every tag kind, photos with EXIF, IPTC
// and XMP, broken and misnamed files), generated once by tests/metadata/make_samples.py:
// by the CTest fixture "MetadataSamples", or at the first use when a test runs on its own
// (and again whenever the script changed).
#pragma once

#include <QString>

namespace qp::test {

// The full path of a sample ("id3v24.mp3"), '/'-separated.
QString metadataSample(const char* name);

}  // namespace qp::test
