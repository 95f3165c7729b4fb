#include "TempTree.h"

#include <atomic>
#include <fstream>
#include <random>

namespace qp::test {

TempTree::TempTree()
{
    static std::atomic<int> counter{0};
    std::random_device random;
    m_root = std::filesystem::temp_directory_path()
        / ("quillet-test-" + std::to_string(random()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(m_root);
}

TempTree::~TempTree()
{
    std::error_code ignored;
    // Give back write permission first so that read-only folders can be emptied.
    for (auto it = std::filesystem::recursive_directory_iterator(m_root, ignored);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ignored)) {
        std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(m_root, ignored);
}

QString TempTree::path(const std::string& relative) const
{
    const std::filesystem::path full = relative.empty() ? m_root : m_root / relative;
    return QString::fromStdU16String(full.generic_u16string());
}

QString TempTree::file(const std::string& relative, const std::string& content) const
{
    const std::filesystem::path full = m_root / relative;
    std::filesystem::create_directories(full.parent_path());
    std::ofstream(full, std::ios::binary) << content;
    return path(relative);
}

QString TempTree::folder(const std::string& relative) const
{
    std::filesystem::create_directories(m_root / relative);
    return path(relative);
}

}  // namespace qp::test
