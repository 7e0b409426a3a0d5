#include <algorithm>

#include "assets/library/bytecopy.h"
#include "assets/library/resourceuri.h"
#include "assets/manager/assetlibrary.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "assets/manager/base/text.h"
#include "assets/serialization/io/archivestream.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

using StreamHandle = std::shared_ptr<core::IDataReadStream>;

nuo::string WithBackslashes(const nuo::string& path) {
    return nuo::string::filled(path.size(), [&path](char* bytes) {
        std::replace_copy(path.begin(), path.end(), bytes, '/', '\\');
    });
}

bool Fill(StreamHandle& stream, nuo::archive::archive_ptr archive) {
    if (archive) stream = std::make_shared<OwnReadArchiveStream>(std::move(archive));
    return stream != nullptr;
}

}  // namespace

bool AssetLibrary::AddResource(IString& uri, const IString& type, const IString& file, bool) {
    const nuo::string path = Guarded(nuo::string(), [&] {
        LibraryResources& resources = Document().Resources();
        return resources.Add(ToUtf8(file), ToUtf8(type), resources.CommonFolder());
    });
    if (path.empty()) return false;
    Assign(uri, WithBackslashes(path));
    return true;
}

bool AssetLibrary::OpenResource(StreamHandle& stream, const IString& uri) {
    stream.reset();
    return Guarded(false, [&]() -> bool {
        const nuo::string text = ToUtf8(uri);
        // The answer of AddResource has backslashes; no path in a package has.
        if (IsResourceUri(text))
            return Fill(stream, Document().Resources().OpenPart(WithSlashes(ResourcePath(text))));
        return Fill(stream, nuo::archive::make_archive<nuo::archive::file_read_archive>(text));
    });
}

bool AssetLibrary::ReplaceResource(StreamHandle& stream, const IString& name, const IString& file) {
    if (file.IsEmpty()) return OpenResource(stream, name);
    stream.reset();
    return Guarded(false, [&] {
        const nuo::string path = PathOfResource(name);
        if (path.empty()) return false;
        nuo::archive::file_read_archive source(ToUtf8(file));
        auto bytes = nuo::archive::make_archive<nuo::archive::mem_read_write_archive>();
        CopyAll(source, *bytes);
        const auto part =
            fs::recursiveCreate(*stack_.package, path, fs::mode_all, fs::open_or_create);
        if (!part) return false;
        Document().Resources().NoteStored(path);
        part->query_writer()->truncate(0);
        part->query_random()->seek(0);
        CopyAll(*bytes, *part);
        bytes->query_random()->seek(0);
        return Fill(stream, std::move(bytes));
    });
}

// A name is a resource URI, a path inside the package or a mere file name. What lies outside of the
// library's resources is not to be replaced: empty.
nuo::string AssetLibrary::PathOfResource(const IString& name) const {
    const nuo::string text = ToUtf8(name);
    const nuo::string_ref given = IsResourceUri(text) ? ResourcePath(text) : text.ref();
    const nuo::string path = NormalizePath(given);
    const nuo::string folder = stack_.document->Resources().CommonFolder();
    if (LeafOfPath(path) == path) {
        const nuo::string leaf = ResourceFileName(path);
        return leaf.empty() ? nuo::string() : fs::joinPath(folder, leaf);
    }
    const bool inside =
        path.size() > folder.size() && path.ref().starts_with(folder) && path[folder.size()] == '/';
    return inside ? path : nuo::string();
}

}  // namespace korvanet::platform::assets
