// Message files, by the road that a library's take: found in a folder, loaded by a lookup.

#include <cstdint>
#include <memory>

#include "assets/localization/localizationmanagerimp.h"
#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/in_memory_fs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto folder = std::make_shared<velmor::fs::InMemory>("fuzz");
    {
        const auto file =
            folder->create("LIB-ENG.XLF", velmor::fs::mode_all, velmor::fs::open_or_create);
        nuo::archive::write_all(*file->query_writer(), {data, size});
    }
    korvanet::platform::assets::ILocalizationManagerImp store;
    store.RegisterSource(folder, "lib.jpk", "domain");
    bool found = false;
    store.Lookup("MAT_1", "fra", "default", "domain", found);
    store.Lookup("MAT_1", "eng", "default", "other", found);
    store.FindOrCreate("ENG", "domain").Set("MAT_1", "mine");
    store.UnregisterDomain("domain");
    return 0;
}
