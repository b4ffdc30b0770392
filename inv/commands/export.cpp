#include "inv/export/export.h"

#include <map>

#include "inv/base/output_file.h"
#include "inv/commands/secret_options.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

const std::map<std::string, ExportFormat> kFormats = {{"json", ExportFormat::json},
                                                      {"ndjson", ExportFormat::ndjson},
                                                      {"csv", ExportFormat::csv},
                                                      {"zxml", ExportFormat::zxml}};

struct Options {
  std::vector<std::string> files;
  std::string output = "-";
  bool keep_secrets = false;
  std::string format;
  bool csv_safe = false;
  bool force = false;
  uint64_t max_size = kUsualMaxSize;
};

int run(const Options& options) {
  if (is_over_input(options.output, options.files, options.force)) return kUnusable;
  OutputFile output(options.output);
  if (!output.stream()) return complain_of_output(options.output);
  int status = kDone;
  size_t masked = 0;
  const ExportFormat format = kFormats.at(options.format);
  const bool as_it_is = options.keep_secrets || format == ExportFormat::zxml;
  const bool for_terminal = options.output == "-" && output_terminal().interactive;
  Exporter exporter({format, options.csv_safe ? Formulas::disarmed : Formulas::kept, for_terminal},
                    output.stream());
  exporter.begin();
  for (const std::string& file : options.files) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, options.max_size, status);
    if (!inventory) continue;
    masked += mask_unless_kept(as_it_is, *inventory);
    exporter.add(*inventory);
  }
  tell_masked("export", masked);
  exporter.end();
  return exporter.good() && output.commit() ? status : complain_of_output(options.output);
}

constexpr char kExamples[] =
    "  inv export --format json MAC.inv | jq '.[].name'\n"
    "  inv export --format csv -o facts.csv *.inv\n"
    "  inv export --format ndjson *.inv | clickhouse-local --input-format JSONEachRow ...\n"
    "  inv export --format zxml MAC.inv            the texts as they are in the file\n";

}  // namespace

void add_export(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "export", "Write files as JSON, NDJSON, CSV or plain text", kExamples);
  command.add_option("FILE", options->files, "Inventory files; - is standard input")->required();
  limit_to(command.add_option("-f,--format", options->format, "json, ndjson, csv or zxml")
               ->required()
               ->type_name("NAME"),
           {"json", "ndjson", "csv", "zxml"});
  command.add_option("-o,--output", options->output, "Where to write instead of standard output")
      ->type_name("FILE");
  command.add_flag("--csv-safe", options->csv_safe,
                   "Put ' before CSV values that a spreadsheet would take for formulas");
  add_force(command, options->force);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
