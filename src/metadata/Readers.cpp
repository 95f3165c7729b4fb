#include "metadata/Readers.h"

namespace qp::metadata {

std::vector<std::unique_ptr<FieldReader>> makeFieldReaders()
{
    std::vector<std::unique_ptr<FieldReader>> readers;
    readers.push_back(makeMusicReader());
    readers.push_back(makePhotoReader());
    readers.push_back(makeMediaReader());
    return readers;
}

}  // namespace qp::metadata
