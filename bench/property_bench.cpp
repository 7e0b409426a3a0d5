#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include <korvanet/platform/assets/ivalue.h>

#include "bench/compare.h"
#include "bench/libraries.h"

// Instances and their properties.

namespace halvern_bench {
namespace {

using Value = std::variant<std::monostate, bool, std::int32_t, double, std::array<double, 4>,
                           std::string, std::vector<std::string>>;
using PlainTable = std::map<std::string, Value>;

Value TextValue(const assets::IStringValue& value, bool list) {
    std::vector<std::string> texts;
    for (std::uint64_t i = 0; i < value.GetDimension(); ++i) {
        UTF8String text;
        value.GetValue(text, i);
        texts.emplace_back(text.AsUTF8());
    }
    if (list) return texts;
    return texts.empty() ? std::string() : texts.front();
}

Value PlainValue(const assets::IProperty& property) {
    const assets::IValue* const value = property.GetValue();
    if (const auto* text = dynamic_cast<const assets::IStringValue*>(value))
        return TextValue(*text,
                         (property.GetFlags() & assets::PropertyFlags::kAllowMultipleValues) != 0);
    if (const auto* truth = dynamic_cast<const assets::IBooleanValue*>(value))
        return truth->GetValue();
    if (const auto* count = dynamic_cast<const assets::IIntegerValue*>(value))
        return count->GetValue();
    if (const auto* number = dynamic_cast<const assets::IScalarValue*>(value))
        return number->GetValue();
    if (const auto* color = dynamic_cast<const assets::IColorValue*>(value)) {
        std::array<double, 4> parts{};
        color->GetValue(parts[0], parts[1], parts[2], parts[3]);
        return parts;
    }
    return {};
}

PlainTable MakePlainTable(const assets::IPropertyTable& table) {
    PlainTable plain;
    auto* const walk = table.GetProperties(false);
    for (walk->First(); walk->IsValid(); walk->Next()) {
        UTF8String name;
        walk->Current()->GetName(name);
        plain.emplace(name.AsUTF8(), PlainValue(*walk->Current()));
    }
    table.ReleaseEnumeration(walk);
    return plain;
}

constexpr std::size_t kBatch = 500;

void CreateInstance(benchmark::State& state) {
    OpenLibrary library(MakeLibraryOf40Properties());
    const DefinitionPtr definition =
        FindDefinition(*library, UTF8String(DefinitionName(0).c_str()));
    const InstancePtr sample(definition->CreateInstance());
    const PlainTable plain = MakePlainTable(*sample);
    // Making and ending are measured alike on both sides; the ends are not counted.
    CompareInTurn(
        state, 3,
        [&] {
            std::vector<InstancePtr> made;
            made.reserve(kBatch);
            return Time([&] {
                       for (std::size_t i = 0; i < kBatch; ++i)
                           made.emplace_back(definition->CreateInstance());
                   }) /
                   kBatch;
        },
        [&] {
            std::vector<PlainTable> made;
            made.reserve(kBatch);
            return Time([&] {
                       for (std::size_t i = 0; i < kBatch; ++i)
                           made.push_back(plain);
                   }) /
                   kBatch;
        });
    state.counters["properties"] = static_cast<double>(plain.size());
}
BENCHMARK(CreateInstance)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);

class Instance {
public:
    Instance()
        : library(MakeLibraryOf40Properties()),
          definition(FindDefinition(*library, UTF8String(DefinitionName(0).c_str()))),
          instance(definition->CreateInstance()) {}

    assets::IScalarValue& Number() const {
        return dynamic_cast<assets::IScalarValue&>(*instance->FindProperty(L"number4")->GetValue());
    }

    OpenLibrary library;
    DefinitionPtr definition;
    InstancePtr instance;
};

void SetNumber(benchmark::State& state) {
    const Instance one;
    assets::IScalarValue& number = one.Number();
    double value = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(number.SetValue(value += 1));
}
BENCHMARK(SetNumber);

void GetNumber(benchmark::State& state) {
    const Instance one;
    const assets::IScalarValue& number = one.Number();
    for (auto _ : state)
        benchmark::DoNotOptimize(number.GetValue());
}
BENCHMARK(GetNumber);

void FindProperty(benchmark::State& state) {
    const Instance one;
    for (auto _ : state)
        benchmark::DoNotOptimize(one.instance->FindProperty(L"number4"));
}
BENCHMARK(FindProperty);

// The same search in a map, to compare with.
void FindInMap(benchmark::State& state) {
    const Instance one;
    const PlainTable plain = MakePlainTable(*one.instance);
    const std::string name = "number4";
    for (auto _ : state)
        benchmark::DoNotOptimize(plain.find(name));
}
BENCHMARK(FindInMap);

}  // namespace
}  // namespace halvern_bench
