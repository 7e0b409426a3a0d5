#include "velmor/vfs/temp_names.h"

#include <random>

namespace velmor::fs {

namespace private_ {

namespace {

constexpr int max_tries = 100;
constexpr int random_length = 12;

// Lower case alone, so that names stay apart on disks that do not tell cases apart.
constexpr nuo::string_ref alphabet = "abcdefghijklmnopqrstuvwxyz0123456789";

nuo::string randomPath(nuo::string_ref parentDir, nuo::string_ref prefix) {
    // Asked anew for each name: a generator of the process would give forked ones the same names.
    std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    nuo::string_builder name;
    name.append(prefix);
    for (int i = 0; i < random_length; ++i)
        name.append(alphabet[pick(source)]);
    return joinPath(parentDir, name);
}

void needDirectory(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref shownDirectory) {
    if (fs.state(parentDir).state != state_directory)
        NUO_RAISE(nuo::archive::create_failed,
                  "failed to locate the temp directory:", shownDirectory);
}

}  // namespace

TempFile createTempFile(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref shownDirectory,
                        nuo::string_ref prefix, unsigned mode, unsigned flag) {
    needDirectory(fs, parentDir, shownDirectory);
    for (int tried = 0; tried < max_tries; ++tried) {
        nuo::string path = randomPath(parentDir, prefix);
        if (fs.state(path).state != state_not_found) continue;
        if (auto archive = fs.create(path, mode, flag))
            return {std::move(archive), std::move(path)};
    }
    NUO_RAISE(nuo::archive::create_failed,
              "failed to create temp file in directory:", shownDirectory);
}

nuo::string createTempDir(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref shownDirectory,
                          nuo::string_ref prefix) {
    needDirectory(fs, parentDir, shownDirectory);
    for (int tried = 0; tried < max_tries; ++tried) {
        nuo::string path = randomPath(parentDir, prefix);
        if (fs.createDir(path) == er_ok) return path;
    }
    NUO_RAISE(nuo::archive::create_failed,
              "failed to create temp file in directory:", shownDirectory);
}

}  // namespace private_

TempFile createTempFile(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref prefix, unsigned mode,
                        unsigned flag) {
    return private_::createTempFile(fs, parentDir, parentDir, prefix, mode, flag);
}

nuo::string createTempDir(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref prefix) {
    return private_::createTempDir(fs, parentDir, parentDir, prefix);
}

}  // namespace velmor::fs
