// "halvern list": the definitions of a library.

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include <korvanet/platform/core/utf8string.h>
#include <nlohmann/json.hpp>

#include "failure.h"
#include "jsontext.h"
#include "output.h"
#include "session.h"
#include "verbs.h"

namespace halvern {

using core::UTF8String;
using nlohmann::json;
using Iterator = assets::IAssetDefinition::IIterator;

namespace {

struct Options {
    std::string type;
    bool all = false;
};

// The texts that a getter with an index gives.
template <class Get>
json Texts(std::uint64_t count, Get get) {
    json texts = json::array();
    for (std::uint64_t at = 0; at < count; ++at) {
        UTF8String text;
        get(at, text);
        texts.push_back(text.AsUTF8());
    }
    return texts;
}

template <class Get>
std::string TextOf(Get get) {
    UTF8String text;
    get(text);
    return text.AsUTF8();
}

// An asset without a stored GUID gives a fresh one at every call.
std::string StoredGuid(const Iterator& item) {
    const std::string guid = TextOf([&](UTF8String& text) { item.GetVersionGUID(text); });
    const std::string again = TextOf([&](UTF8String& text) { item.GetVersionGUID(text); });
    return guid == again ? guid : std::string();
}

std::string AssetType(Iterator& item) {
    const HeldDefinition definition(item.GetDefinition());
    return definition ? TextOf([&](UTF8String& text) { definition->GetAssetType(text); })
                      : std::string();
}

json Row(Iterator& item, const UTF8String& locale) {
    json row;
    row["identifier"] = TextOf([&](UTF8String& text) { item.GetName(text); });
    row["schema"] = TextOf([&](UTF8String& text) { item.GetBaseSchema(text); });
    row["assettype"] = AssetType(item);
    row["uiname"] = TextOf([&](UTF8String& text) { item.GetUIName(text, locale); });
    row["keywords"] = Texts(item.GetKeywordCount(), [&](std::uint64_t at, UTF8String& text) {
        item.GetKeyword(at, text, locale);
    });
    row["categories"] = Texts(item.GetCategoryCount(), [&](std::uint64_t at, UTF8String& text) {
        item.GetCategory(at, text, locale);
    });
    row["thumbnail"] = TextOf([&](UTF8String& text) {
        if (item.GetThumbnailCount() != 0) item.GetThumbnail(0, text);
    });
    row["description"] = TextOf([&](UTF8String& text) { item.GetDescription(text, locale); });
    row["hidden"] = item.IsHidden();
    row["versionguid"] = StoredGuid(item);
    return row;
}

std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

// Columns as wide as their longest text; the last one is not filled up.
void PrintTable(const json& rows, Output& output) {
    static constexpr std::array kColumns{"identifier", "assettype", "schema", "uiname"};
    std::array<std::size_t, kColumns.size()> widths{};
    for (const json& row : rows)
        for (std::size_t at = 0; at < kColumns.size(); ++at)
            widths[at] = std::max(widths[at], Width(row[kColumns[at]].get<std::string>()));
    for (const json& row : rows) {
        std::string line;
        for (std::size_t at = 0; at < kColumns.size(); ++at) {
            const std::string text = Printable(row[kColumns[at]].get<std::string>());
            line += text + std::string(widths[at] - Width(text) + 2, ' ');
        }
        if (row["hidden"].get<bool>()) line += "(hidden)";
        line.erase(line.find_last_not_of(' ') + 1);
        output.Line(line);
    }
}

json Rows(assets::IAssetLibrary& library, const Options& options, const Common& common) {
    const HeldIterator items(options.type.empty()
                                 ? library.GetDefinitions()
                                 : library.GetDefinitionsOfType(UTF8String(options.type.c_str())));
    Progress progress("definitions", common.quiet);
    const UTF8String locale(common.locale.c_str());
    json rows = json::array();
    for (; !items->IsAtEnd(); items->Next()) {
        progress.Step();
        if (options.all || !items->IsHidden()) rows.push_back(Row(*items.Get(), locale));
    }
    return rows;
}

int List(const Options& options, const Common& common) {
    Session session;
    const OpenLibrary library(session, OpenToRead(session, AbsolutePath(common.file)));
    const json rows = Rows(*library.Get(), options, common);
    Output output;
    if (common.json)
        output.Line(JsonText(rows));
    else
        PrintTable(rows, output);
    output.Flush();
    return kDone;
}

}  // namespace

Run DeclareList(CLI::App& command, Common& common) {
    const auto options = std::make_shared<Options>();
    AddFile(command, common);
    command.add_option("--type", options->type, "only those of an asset type or a schema");
    command.add_flag("--all", options->all, "the hidden ones too");
    AddLocale(command, common);
    AddJson(command, common);
    AddQuiet(command, common);
    return [options, &common] { return List(*options, common); };
}

}  // namespace halvern
