// The metadata readers the program ships, one per library. A new family adds its reader
// here and its fields to FieldCatalogue.cpp; the cache, the tags, the function page and
// `quillet fields` then serve it without further change.
#pragma once

#include <memory>
#include <vector>

#include "metadata/FieldReader.h"

namespace qp::metadata {

// "M": music tags and audio properties (TagLib).
std::unique_ptr<FieldReader> makeMusicReader();
// "D": EXIF, IPTC and XMP of photos (Exiv2).
std::unique_ptr<FieldReader> makePhotoReader();
// "C": container and stream information of audio and video files (MediaInfoLib).
std::unique_ptr<FieldReader> makeMediaReader();

// Every reader, in the order their families are tried.
std::vector<std::unique_ptr<FieldReader>> makeFieldReaders();

}  // namespace qp::metadata
