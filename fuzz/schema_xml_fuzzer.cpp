// Schema files: read into a batch over a root schema, written, and read again. From the second
// writing on the text must stay as it is.

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
        return set.LoadSchema(archive, "");
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
    const nuo::string first =
        ReadAndWrite(world, {reinterpret_cast<const char*>(data), std::uint64_t{size}});
    if (first.empty() || first.size() > kMaxSchemaBytes) return 0;
    const nuo::string second = ReadAndWrite(world, first);
    if (second.empty() || second.size() > kMaxSchemaBytes) std::abort();
    if (!(ReadAndWrite(world, second) == second)) std::abort();
    return 0;
}
