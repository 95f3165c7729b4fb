// A temporary folder for one test, removed with everything in it afterwards.
#pragma once

#include <QString>
#include <filesystem>
#include <string>

namespace qp::test {

class TempTree {
public:
    TempTree();
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    const std::filesystem::path& root() const { return m_root; }
    // The full path of `relative` below the root, '/'-separated, as the program holds paths.
    QString path(const std::string& relative = {}) const;
    // Creates a file (and its folders) holding `content`.
    QString file(const std::string& relative, const std::string& content = {}) const;
    QString folder(const std::string& relative) const;

private:
    std::filesystem::path m_root;
};

}  // namespace qp::test
