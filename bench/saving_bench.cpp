#include <benchmark/benchmark.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "bench/compare.h"
#include "bench/libraries.h"
#include "tests/support/paths.h"

// Changing one preset of a large library and saving it.

namespace halvern_bench {
namespace {

void ChangeOneAndSave(benchmark::State& state) {
    const std::string large = halvern_tests::DataFile("large.jpk");
    const std::string path = ScratchFolder() + "/saved.jpk";
    const std::string copy = ScratchFolder() + "/copied.jpk";
    std::filesystem::copy_file(large, path);
    OpenLibrary library(path, true);
    UTF8String name;
    IteratorPtr(library->GetDefinitions())->GetName(name);
    int round = 0;
    CompareInTurn(
        state, 0,
        [&] {
            return Time([&] {
                DefinitionPtr definition = FindDefinition(*library, name);
                const InstancePtr instance(definition->CreateInstance());
                instance->SetUIName(UTF8String(("Changed " + std::to_string(++round)).c_str()));
                if (!library->RemovePreset(definition.get()))
                    throw std::runtime_error("the preset is not removed");
                definition.release();  // the library took the reference
                if (!library->CreatePresetFromInstance(instance.get(), name, false))
                    throw std::runtime_error("the preset is not stored");
                library.Save();
            });
        },
        [&] {
            return Time([&] {
                std::filesystem::copy_file(large, copy,
                                           std::filesystem::copy_options::overwrite_existing);
            });
        });
    library.Unload();
    std::filesystem::remove(path);
}
BENCHMARK(ChangeOneAndSave)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace halvern_bench
