#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "bench/listing.h"

namespace halvern_bench {

// The plain way to the values of a listing, with nothing that a library is there for: no checks, no
// schemas, no objects that can be asked or changed. It reads only what the benchmarks measure on:
// libraries in the present layout that no program has damaged.
class PlainLibrary {
public:
    using Value = std::variant<bool, std::string, std::vector<std::string>>;
    using Table = std::map<std::string, Value>;

    // Reads the file into memory and finds its entries.
    explicit PlainLibrary(const std::string& path);

    // Inflates every entry into a fresh buffer, has expat parse those that are XML, and puts the
    // listing values of every definition into a table. Raises std::runtime_error.
    std::vector<Table> List() const;

    // The sum of the inflated sizes.
    std::uint64_t InflatedSize() const;

private:
    struct Entry {
        std::string name;
        std::string packed;
        std::uint32_t size;
        bool deflated;
    };

    std::vector<Entry> entries_;
};

Listed Count(const std::vector<PlainLibrary::Table>& tables);

}  // namespace halvern_bench
