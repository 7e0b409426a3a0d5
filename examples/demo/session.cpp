#include "session.h"

#include <utility>

#include "story.h"

namespace demo {

using korvanet::platform::assets::GetIAssetLibraryManager;
using korvanet::platform::assets::SetReportSink;

Session::Session() {
    SetReportSink(this);
    manager_ = GetIAssetLibraryManager();
    manager_->AddReference();
}

Session::~Session() {
    End();
    SetReportSink(nullptr);
}

bool Session::End() {
    return manager_ != nullptr && std::exchange(manager_, nullptr)->RemoveReference();
}

void Session::Require(bool done, const std::string& otherwise) {
    if (done) return;
    const std::string report = TakeReport();
    throw Failure(report.empty() ? otherwise : otherwise + ": " + report);
}

std::string Session::TakeReport() {
    return std::exchange(report_, std::string());
}

IAssetLibrary& Session::Open(const std::string& path) {
    IAssetLibrary* const library = manager_->OpenLibraryForWriting(Text(path));
    Require(library != nullptr, path + " could not be opened");
    return *library;
}

void Session::Unload(IAssetLibrary& library) {
    Require(manager_->UnloadLibrary(&library), "something of the library is still held");
}

void Session::Trace(const WideString&, std::uint32_t, std::uint32_t) {}
void Session::Information(const WideString&, std::uint32_t, std::uint32_t) {}

void Session::Warning(const WideString& text, std::uint32_t, std::uint32_t) {
    report_ = text.AsUTF8();
}

void Session::Error(const WideString& text, std::uint32_t, std::uint32_t) {
    report_ = text.AsUTF8();
}

Definition Find(IAssetLibrary& library, const std::string& identifier) {
    const Definitions walk(library.GetDefinitionsById(Text(identifier)));
    Definition definition(walk->IsAtEnd() ? nullptr : walk->GetDefinition());
    Require(definition != nullptr, "there is no definition " + identifier);
    return definition;
}

}  // namespace demo
