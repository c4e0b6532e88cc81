#include "tool/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <functional>
#include <ostream>

#include "base/Numbers.h"
#include "model/Checks.h"
#include "model/Product.h"
#include "tool/Check.h"
#include "tool/Convert.h"
#include "tool/Diff.h"
#include "tool/Export.h"
#include "tool/Import.h"

namespace {

/// The program's arguments, and the command that they ask for.
class CommandLine {
 public:
    explicit CommandLine(const Tool& tool) : tool_(tool) {
        app_.require_subcommand(1);
        // The parser's default on Windows would take a path that begins with a slash as an option.
        app_.allow_windows_style_options(false);
        addVersion(app_);
        addCheck();
        addDiff();
        addExport();
        addImport();
        addConvert();
    }

    int run(std::vector<std::string> arguments) {
        std::ranges::reverse(arguments);  // as the parser wants them
        try {
            app_.parse(arguments);
        } catch (const CLI::ParseError& error) {
            return app_.exit(error, tool_.out, tool_.err) == 0 ? 0 : failed;
        }
        return command_();
    }

    static constexpr int failed = exitStatusFor(Severity::error);

 private:
    static void addVersion(CLI::App& app) {
        app.set_version_flag("--version", "opcolvan-cli " + std::string(productVersion),
                             "Print the version and exit");
    }

    /// `execute` is called with the options where the command is given.
    template <typename Options>
    CLI::App& add(const char* name, const char* does, const Options& options,
                  int (*execute)(const Tool&, const Options&)) {
        CLI::App& command = *app_.add_subcommand(name, does);
        addVersion(command);
        command.callback([=, this, &options] {
            command_ = [=, this, &options] { return execute(tool_, options); };
        });
        return command;
    }

    template <typename Value>
    static void addFile(CLI::App& command, const char* name, Value& value, const char* what) {
        command.add_option(name, value, what)->required()->type_name("");
    }

    static void addOutput(CLI::App& command, std::string& file, const char* what) {
        command.add_option("-o,--output", file, what)->option_text("FILE");
    }

    static void addForce(CLI::App& command, bool& force) {
        command.add_flag("--force", force, "Replace the file that is written, if it is there");
    }

    void addCheck() {
        CLI::App& command = add("check", "Tell what is wrong in configurations", check_, check);
        addFile(command, "FILE", check_.files, "Configurations");
        command.add_flag("--json", check_.json, "Write JSON");
        command.add_flag("--quiet", check_.quiet, "Write nothing: only the exit status tells");
    }

    void addDiff() {
        CLI::App& command =
            add("diff", "Tell what differs in meaning between two configurations", diff_, diff);
        addFile(command, "OLD", diff_.from, "A configuration");
        addFile(command, "NEW", diff_.to, "Another");
        command.add_flag("--json", diff_.json, "Write JSON");
    }

    void addExport() {
        CLI::App& command =
            add("export", "Make a table (CSV) of a configuration", export_, exportTable);
        addFile(command, "FILE", export_.file, "A configuration");
        addOutput(command, export_.table, "The table; without it, the standard output");
        command
            .add_option("--separator", export_.separator,
                        "What stands between columns: \",\" (as it is), \";\" or \"tab\"")
            ->option_text("TEXT")
            ->check(CLI::IsMember({",", ";", "tab"}));
        addForce(command, export_.force);
    }

    void addImport() {
        CLI::App& command =
            add("import", "Make a configuration of a table (CSV)", import_, importTable);
        addFile(command, "TABLE", import_.table, "A table, as \"export\" writes it");
        addOutput(command, import_.file, "The configuration");
        command.get_option("--output")->required();
        command
            .add_option("--into", import_.base,
                        "Change this configuration: rows change what has their path, and add what "
                        "is missing")
            ->option_text("FILE");
        addForce(command, import_.force);
    }

    void addConvert() {
        CLI::App& command =
            add("convert", "Make a configuration of an ETS export (.esf)", convert_, convertExport);
        addFile(command, "EXPORT", convert_.exportFile, "An ETS OPC export file");
        addOutput(command, convert_.file, "The configuration");
        command.get_option("--output")->required();
        GlobalSets& settings = convert_.settings;
        command.add_option("--port", settings.port, "The port of the bus couplers, or COM1");
        command.add_option("--edi", settings.ediType, "Their EDI type, or PEI16x9600");
        command
            .add_option_function<std::string>(
                "--timeout", [&](const std::string& text) { settings.timeout = readInt32(text); },
                "Their receive time-out in milliseconds, or 1000")
            ->option_text("NUMBER")
            ->check([](const std::string& text) { return std::string(faultOfTimeout(text)); });
        addForce(command, convert_.force);
    }

    const Tool& tool_;
    CLI::App app_{std::string(productDescription) + ": the command line", "opcolvan-cli"};
    std::function<int()> command_;
    CheckOptions check_;
    DiffOptions diff_;
    ExportOptions export_;
    ImportOptions import_;
    ConvertOptions convert_;
};

}  // namespace

int runTool(const Tool& tool, std::vector<std::string> arguments) {
    try {
        return CommandLine(tool).run(std::move(arguments));
    } catch (const std::exception& error) {
        tool.err << "opcolvan-cli: error: " << error.what() << '\n';
        return CommandLine::failed;
    }
}
