#pragma once

#include <functional>
#include <span>
#include <string>

#include <CLI/CLI.hpp>

namespace halvern {

// What all verbs take.
struct Common {
    std::string file;  // as it was typed
    bool json = false;
    bool quiet = false;
    std::string locale;
    std::string system;
};

// Runs the verb and returns the exit status; failures are raised.
using Run = std::function<int()>;

// One row of the table of verbs, which the command line and the help are made from.
struct Verb {
    const char* name;
    const char* summary;
    const char* example;
    // Adds the options of the verb to its subcommand. `common` outlives the result.
    Run (*declare)(CLI::App& command, Common& common);
};

std::span<const Verb> Verbs();

// Prints the identifier of what was stored. The file is saved by then: a reader of standard output
// that has gone takes nothing back, and a failure to write says what stands.
void TellStored(const std::string& identifier, const Common& common);

// Options that several verbs share.
void AddFile(CLI::App& command, Common& common);
void AddJson(CLI::App& command, Common& common);
void AddLocale(CLI::App& command, Common& common);
void AddSystem(CLI::App& command, Common& common);
void AddQuiet(CLI::App& command, Common& common);

Run DeclareAdd(CLI::App& command, Common& common);
Run DeclareCreate(CLI::App& command, Common& common);
Run DeclareList(CLI::App& command, Common& common);
Run DeclarePreset(CLI::App& command, Common& common);
Run DeclareRemove(CLI::App& command, Common& common);
Run DeclareShow(CLI::App& command, Common& common);
Run DeclareVerify(CLI::App& command, Common& common);

}  // namespace halvern
