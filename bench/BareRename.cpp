// The floor for renaming a folder's files: list the folder once, then one no-replace rename
// per entry through the folder's descriptor, nothing else. Appends a suffix to every name
// that lacks it, or (--back) takes it off every name that has it.
//
//   bench_bare_rename FOLDER SUFFIX [--back]
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#ifndef RENAME_NOREPLACE
#define RENAME_NOREPLACE (1 << 0)
#endif

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s FOLDER SUFFIX [--back]\n", argv[0]);
        return 2;
    }
    const std::string suffix = argv[2];
    const bool back = argc > 3 && std::strcmp(argv[3], "--back") == 0;
    DIR* dir = ::opendir(argv[1]);
    if (!dir) {
        std::perror(argv[1]);
        return 2;
    }
    const int fd = ::dirfd(dir);
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        const bool has = name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
        if (has == back)
            names.push_back(name);
    }
    int failed = 0;
    for (const std::string& name : names) {
        const std::string target = back ? name.substr(0, name.size() - suffix.size()) : name + suffix;
        if (::syscall(SYS_renameat2, fd, name.c_str(), fd, target.c_str(), RENAME_NOREPLACE) != 0)
            ++failed;
    }
    ::closedir(dir);
    std::printf("%zu renamed, %d failed\n", names.size() - size_t(failed), failed);
    return failed ? 1 : 0;
}
