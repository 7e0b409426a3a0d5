// Schema files: read into a batch over a root schema, written, and read again. The text settles
// after three rounds at most: the first gives a property the flags of the base, the second the
// label that goes with these flags.

#include <cstdint>
#include <cstdlib>

#include "assets/manager/base/librarynamespaces.h"
#include "assets/property/modulecontext.h"
#include "assets/property/propertytable.h"
#include "assets/schema/schemamanager.h"
#include "assets/schema/schemamerge.h"
#include "assets/schema/schemaxmlreader.h"
#include "assets/schema/schemaxmlwriter.h"
#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer_archive.h"
#include "velmor/runtime.h"
#include "velmor/start_runtime.h"

namespace {

using namespace korvanet::platform::assets;

constexpr nuo::string_ref kRootSchema =
    "<AssetSchema><UID val='CommonSchema'/><String id='BaseSchema' definitionIteratorData='true'/>"
    "<Integer id='SchemaVersion' val='3' readonly='true'/><String id='assettype'/>"
    "<String id='UIName' local='true' definitionIteratorData='true'/>"
    "<String id='keyword' definitionIteratorData='true' allowmultiplevalues='true'/>"
    "<Integer id='version' val='1'/></AssetSchema>";

class Tables final : public ITableFactory {
public:
    PropertyTableImp* MakeTable(TableKind, HalvernAsset& holder,
                                const ModuleContext& context) override {
        return new KRVTSchemaDefinition(holder, context);
    }
};

// The runtime and the root schema, made once.
struct World {
    World() : runtime("fuzz", &nuo::get_heap(), &nuo::get_extern_heap()) {
        velmor::startRuntime(runtime);
        context.runtime = &runtime;
        context.heap = &nuo::get_heap();
        context.tables = &tables;
        InitializeHalvernTypes(runtime.root(), context);
        schemas = CreateNamespace(runtime.root(), "schemas");
    }

    Tables tables;
    velmor::Runtime runtime;
    ModuleContext context;
    velmor::Namespace schemas;
};

// Reads the text into an empty set with the root schema, and writes what came of it.
nuo::string ReadAndWrite(World& world, nuo::string_ref text) {
    SchemaManager set(world.context, world.schemas, SchemaScope::kBatch, nullptr);
    const auto load = [&](nuo::string_ref source) {
        nuo::archive::mem_read_write_archive archive;
        nuo::archive::write_all(archive, {source.data(), source.size()});
        return set.LoadSchema(archive);
    };
    const KRVTSchemaDefinition* schema = load(text);
    load(kRootSchema);
    nuo::string written;
    if (schema != nullptr && !set.HasPending()) {
        written = WriteSchemaXml(*schema);
        MergesClean(*schema, *schema);
    }
    set.Clear();
    return written;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static World world;
    nuo::string text =
        ReadAndWrite(world, {reinterpret_cast<const char*>(data), std::uint64_t{size}});
    if (text.empty()) return 0;
    for (int round = 0; round < 2; ++round) {
        if (text.size() > kMaxSchemaBytes) return 0;
        text = ReadAndWrite(world, text);
        if (text.empty()) std::abort();
    }
    if (text.size() <= kMaxSchemaBytes && !(ReadAndWrite(world, text) == text)) std::abort();
    return 0;
}
