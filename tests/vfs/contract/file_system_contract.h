#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "velmor/vfs/vfs.h"

// What every file system does alike, written once and run over each of them.
//
// A test program adds the .cpp files of this folder and vfs/support.cpp to its sources and names
// its backends in one list:
//
//   const bool registered = vfs_contract::Register({
//       {"InMemory", [] { return std::make_unique<InMemoryStage>(); }, {}},
//       {"ReadsOnly", [] { ... }, {{"CopyOverwrites", "nothing can be written"}}},
//   });
//
// Each case becomes a test "FileSystemContract/<backend>.<case>". A case that a backend is excused
// from is not registered for it; an excuse that names no case stops the program.

namespace vfs_contract {

// A file system, empty and writable, with all that it stands on.
class Stage {
public:
    virtual velmor::fs::IVfs& files() = 0;
    virtual ~Stage() = default;
};

struct Backend {
    std::string name;
    std::function<std::unique_ptr<Stage>()> make;
    std::map<std::string, std::string> excused;  // case and reason
};

struct Case {
    std::string name;
    void (*run)(velmor::fs::IVfs& files);
};

// The cases, one list per subject.
std::vector<Case> DirectoryCases();
std::vector<Case> FileCases();
std::vector<Case> CopyCases();
std::vector<Case> FunctionCases();

// Registers every case for every backend; call it while the program is initialised.
bool Register(const std::vector<Backend>& backends);

}  // namespace vfs_contract
