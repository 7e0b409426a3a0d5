// "halvern verify": checks everything in a library file.

#include <vector>

#include <nlohmann/json.hpp>

#include "failure.h"
#include "inspect/verify.h"
#include "jsontext.h"
#include "output.h"
#include "session.h"
#include "verbs.h"

namespace halvern {

using nlohmann::json;

namespace {

json FindingsJson(const std::vector<inspect::Finding>& findings) {
    json list = json::array();
    for (const inspect::Finding& finding : findings)
        list.push_back({{"rule", finding.rule},
                        {"part", finding.part},
                        {"where", finding.where},
                        {"what", finding.what}});
    return {{"ok", findings.empty()}, {"findings", list}};
}

int Verify(const Common& common) {
    const std::vector<inspect::Finding> findings = inspect::Verify(AbsolutePath(common.file));
    if (findings.size() == 1 && findings.front().rule == inspect::kFileRule)
        throw Failure(kFile, findings.front().what);
    Output output;
    if (common.json)
        output.Line(JsonText(FindingsJson(findings)));
    else if (!common.quiet)
        for (const inspect::Finding& finding : findings)
            output.Line(Printable(finding.rule + ": " + Describe(finding)));
    output.Flush();
    return findings.empty() ? kDone : kNo;
}

}  // namespace

Run DeclareVerify(CLI::App& command, Common& common) {
    AddFile(command, common);
    AddJson(command, common);
    AddQuiet(command, common);
    return [&common] { return Verify(common); };
}

}  // namespace halvern
