#include "inv/export/export.h"

#include <map>
#include <set>

#include "inv/base/output_file.h"
#include "inv/base/sha256.h"
#include "inv/commands/batch.h"
#include "inv/commands/file_list.h"
#include "inv/commands/in_order.h"
#include "inv/commands/secret_options.h"
#include "inv/commands/table_option.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

const std::map<std::string, ExportFormat> kFormats = {{"json", ExportFormat::json},
                                                      {"ndjson", ExportFormat::ndjson},
                                                      {"csv", ExportFormat::csv},
                                                      {"zxml", ExportFormat::zxml}};

// A file of at most this many bytes is rendered by the thread that has read it; the text of a larger one
// would take too much memory, and is written as it is made.
constexpr uint64_t kMostRendered = 1 << 23;

struct Options {
  FileOptions files;
  size_t jobs = 1;
  std::string quarantine;
  std::string output = "-";
  bool keep_secrets = false;
  std::string format;
  std::string table;
  bool csv_safe = false;
  bool force = false;
  uint64_t max_size = kUsualMaxSize;
};

ExportOptions form_of(const Options& options) {
  const bool for_terminal = options.output == "-" && output_terminal().interactive;
  return {kFormats.at(options.format), options.csv_safe ? Formulas::disarmed : Formulas::kept, for_terminal,
          find_table(options.table)};
}

enum Fate : size_t { kExported, kSkipped, kRefused, kDamaged };

struct Rendered {
  Opened opened;
  Digest digest = {};  // the file's SHA-256
  size_t masked = 0;   // secrets
  std::optional<std::string> text;
};

Rendered render_file(const std::string& path, const Options& options) {
  Rendered rendered = {open_quietly(path, options.max_size), {}, 0, {}};
  if (!rendered.opened.inventory) return rendered;
  Inventory& inventory = *rendered.opened.inventory;
  rendered.digest = sha256(inventory.bytes);
  const bool as_it_is = options.keep_secrets || kFormats.at(options.format) == ExportFormat::zxml;
  rendered.masked = mask_unless_kept(as_it_is, inventory);
  if (options.jobs > 1 && inflated_size(inventory) <= kMostRendered) {
    rendered.text = render(form_of(options), inventory);
  }
  return rendered;
}

// Writes file after file; a file that was already written is skipped.
class Writer {
 public:
  Writer(const Options& options, Exporter& exporter, Tally& tally, int& status)
      : options_(options), exporter_(exporter), tally_(tally), status_(status) {}

  // False if nothing more can be written.
  bool take(const Rendered& rendered) {
    if (!complain_of(rendered.opened, status_)) {
      if (!options_.quarantine.empty()) set_aside(rendered.opened, options_.quarantine, status_);
      tally_.count(kRefused);
      return true;
    }
    const Inventory& inventory = *rendered.opened.inventory;
    masked += rendered.masked;
    if (!written_.insert(rendered.digest).second) {
      tally_.count(kSkipped);
      return true;
    }
    if (rendered.text) {
      exporter_.add_rendered(*rendered.text);
    } else {
      exporter_.add(inventory);
    }
    tally_.count(inventory.faults.empty() ? kExported : kDamaged);
    return exporter_.good();
  }

  size_t masked = 0;  // secrets

 private:
  const Options& options_;
  Exporter& exporter_;
  Tally& tally_;
  int& status_;
  std::set<Digest> written_;
};

bool has_rows(ExportFormat format) { return format == ExportFormat::ndjson || format == ExportFormat::csv; }

int run(const Options& options) {
  int status = kDone;
  if (!options.table.empty() && !has_rows(kFormats.at(options.format))) {
    complain("--table", "there are no rows in " + options.format + "; choose --format ndjson or csv");
    return kUnusable;
  }
  const std::vector<std::string> files = find_files(options.files, status);
  if (is_over_input(options.output, files, options.force)) return kUnusable;
  OutputFile output(options.output);
  if (!output.stream()) return complain_of_output(options.output);
  Tally tally({"exported", "skipped", "refused", "damaged"});
  Exporter exporter(form_of(options), output.stream());
  Writer writer(options, exporter, tally, status);
  exporter.begin();
  {
    Progress progress(files.size(), form_of(options).for_terminal);
    size_t done = 0;
    in_order(
        files.size(), options.jobs, [&](size_t i) { return render_file(files[i], options); },
        [&](const Rendered& rendered) {
          progress.show(++done);
          return writer.take(rendered);
        },
        [](const Rendered& rendered) { return weight_of(rendered.opened.inventory.get()); },
        options.max_size);
  }
  report_masked("export", writer.masked);
  exporter.end();
  const bool written = exporter.good() && output.commit();
  if (!written) return complain_of_output(options.output);
  if (options.files.are_many()) tally.print();
  return status;
}

constexpr char kExamples[] =
    "  inv export --format json MAC.inv | jq '.[].name'\n"
    "  inv export --format csv -o facts.csv *.inv\n"
    "  inv export --format ndjson --jobs 2 spool -o facts.ndjson   every *.inv in a folder\n"
    "  inv export --table software --format csv *.inv   a row for each application\n"
    "  inv export --format ndjson *.inv | clickhouse-local --input-format JSONEachRow ...\n"
    "  inv export --format zxml MAC.inv            the texts as they are in the file\n";

}  // namespace

void add_export(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "export", "Write files as JSON, NDJSON, CSV or plain text", kExamples);
  add_files(command, options->files);
  limit_to(command.add_option("-f,--format", options->format, "json, ndjson, csv or zxml")
               ->required()
               ->type_name("NAME"),
           {"json", "ndjson", "csv", "zxml"});
  add_table_option(command, options->table);
  command.add_option("-o,--output", options->output, "Where to write instead of standard output")
      ->type_name("FILE");
  add_csv_safe(command, options->csv_safe);
  add_force(command, options->force);
  add_secrets(command, options->keep_secrets);
  add_jobs(command, options->jobs);
  add_quarantine(command, options->quarantine);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
