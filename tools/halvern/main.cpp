#include <fcntl.h>
#include <unistd.h>

#include <new>
#include <string>
#include <vector>

#include "failure.h"
#include "interrupt.h"
#include "output.h"
#include "verbs.h"

namespace halvern {
namespace {

// One line on standard error, whatever the text holds.
void Complain(const std::string& subject, const std::string& what) {
    const std::string line =
        "halvern: " + Printable((subject.empty() ? "" : subject + ": ") + what) + "\n";
    if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return;
}

struct Choice {
    const CLI::App* command;
    Run run;
};

std::vector<Choice> DeclareVerbs(CLI::App& app, Common& common) {
    std::vector<Choice> choices;
    for (const Verb& verb : Verbs()) {
        CLI::App* const command = app.add_subcommand(verb.name, verb.summary);
        command->footer(std::string("Example:\n  ") + verb.example);
        choices.push_back({command, verb.declare(*command, common)});
    }
    return choices;
}

int RunVerb(const std::vector<Choice>& choices, const Common& common) {
    try {
        for (const Choice& choice : choices)
            if (choice.command->parsed()) return choice.run();
        return kUsage;
    } catch (const OutputClosed&) {
        return kFile;
    } catch (const Failure& failure) {
        Complain(common.file, failure.what());
        return failure.Status();
    } catch (const std::bad_alloc&) {
        Complain(common.file, "this takes more memory than there is");
        return kFile;
    } catch (const std::exception& failure) {
        Complain(common.file, failure.what());
        return kFile;
    }
}

// The parser misses a verb where a misspelt one stands.
std::string WordsForParsing(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (!app.get_subcommands().empty() || left.empty() || left.front().starts_with('-'))
        return error.what();
    return "there is no verb " + left.front();
}

// A file that is opened later must not get the number of a standard one that was closed: it would
// take what is printed. Standard output stays one that cannot be written.
void FillStandardFiles() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(number, F_GETFD) < 0)
            ::open("/dev/null", number == STDERR_FILENO ? O_WRONLY : O_RDONLY);
}

int Main(int count, char** arguments) {
    FillStandardFiles();
    HandleInterrupts();
    CLI::App app("Makes, reads, changes and checks asset libraries.", "halvern");
    app.require_subcommand(1);
    app.footer(
        "Exit status: 0 done, 1 the answer is no, 2 wrong usage, 3 a file cannot be opened, "
        "read or saved.");
    Common common;
    const std::vector<Choice> choices = DeclareVerbs(app, common);
    try {
        app.parse(count, arguments);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        Complain(common.file, WordsForParsing(app, error));
        return kUsage;
    }
    return RunVerb(choices, common);
}

}  // namespace
}  // namespace halvern

int main(int count, char** arguments) {
    return halvern::Main(count, arguments);
}
