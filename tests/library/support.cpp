#include "support.h"

#include "assets/library/bytecopy.h"
#include "nuo/common/archive/primitives.h"

namespace korvanet::platform::assets {
nuo::buffer<nuo::byte> FileBytes(const std::string& path) {
    nuo::archive::file_read_archive file(path.c_str());
    nuo::archive::mem_read_write_archive memory;
    CopyAll(file, memory);
    return memory.get_buffer();
}

TestLibrary::TestLibrary(TestHost& host, const std::string& sample, bool for_writing)
    : TestLibrary(host, FileBytes(halvern_tests::DataFile(sample)), for_writing) {}

TestLibrary::TestLibrary(TestHost& host, nuo::buffer<nuo::byte> bytes, bool for_writing)
    : archive(std::move(bytes)) {
    Build();
    if (for_writing)
        document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(),
                                                    GeneralLibrary::Writing{});
    else
        document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(),
                                                    GeneralLibrary::Reading{});
}

TestLibrary::TestLibrary(TestHost& host, const GeneralLibrary::Creating& how) {
    Build();
    document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(), how);
}

TestLibrary::TestLibrary(TestHost& host, const GeneralLibrary::Serializing& how) {
    Build();
    document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(), how);
}

TestLibrary::TestLibrary(TestHost& host, nuo::buffer<nuo::byte> bytes,
                         const GeneralLibrary::Deserializing& how)
    : archive(std::move(bytes)) {
    Build();
    document = std::make_unique<GeneralLibrary>(host, *package, host.Slib(), how);
}

void TestLibrary::Build() {
    zip = std::make_unique<velmor::fs::ZipFs>(archive, scratch, "test", false);
    package = std::make_unique<JpkFs>(*zip, "test");
}

nuo::buffer<nuo::byte> TestLibrary::SavedBytes() {
    EXPECT_TRUE(document->Save());
    return CommittedBytes();
}

nuo::buffer<nuo::byte> TestLibrary::CommittedBytes() {
    package->sync();
    zip->commit();
    return archive.get_buffer();
}

AssetDefinition& TestLibrary::Definition(const std::string& identifier) {
    AssetDefinition* const definition = document->LoadDefinition(identifier.c_str());
    if (definition == nullptr) throw std::runtime_error("no definition " + identifier);
    return *definition;
}

nuo::string TestLibrary::Text(const std::string& identifier, const char* property) {
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group)
        if (Definition(identifier).FindInGroup(group, property) != nullptr)
            return Definition(identifier).GetText(group, property);
    return "(none)";
}

std::string TestLibrary::Part(const std::string& path) {
    const auto part = package->create(path.c_str(), velmor::fs::mode_read | velmor::fs::mode_random,
                                      velmor::fs::open_existing);
    if (!part) return {};
    nuo::archive::mem_read_write_archive memory;
    CopyAll(*part, memory);
    const auto& bytes = memory.get_buffer();
    return {reinterpret_cast<const char*>(bytes.begin()), bytes.size()};
}

void TestLibrary::Write(const std::string& path, const std::string& bytes) {
    const auto part =
        package->create(path.c_str(), velmor::fs::mode_all, velmor::fs::open_or_create);
    if (!part) throw std::runtime_error("no part " + path);
    part->query_writer()->truncate(0);
    part->query_random()->seek(0);
    nuo::archive::write_all(*part->query_writer(), {bytes.data(), bytes.size()});
}

std::unique_ptr<TestLibrary> MakePaintLibrary(TestHost& host, const char* identifier) {
    auto library = std::make_unique<TestLibrary>(host, GeneralLibrary::Creating{identifier, 0});
    EXPECT_NE(LoadGlobal(host, "CommonSchema", kCommonSchemaXml), nullptr);
    EXPECT_NE((*library)->EnsureSchema(*LoadGlobal(host, "PaintSchema", kPaintSchemaXml)), nullptr);
    return library;
}

AssetDefinition& AddPaint(TestLibrary& library, const char* identifier) {
    KRVTSchemaDefinition& schema = *library->Schemas().FindOwn("PaintSchema");
    AssetDefinition& model = MakeDefinition(schema, velmor::Namespace(), "model");
    model.AddReference();
    AssetDefinition* const made = library->CreatePreset(model, identifier, {});
    model.Release();
    EXPECT_NE(made, nullptr);
    return *made;
}

}  // namespace korvanet::platform::assets
