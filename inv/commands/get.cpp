#include "inv/base/json_text.h"
#include "inv/base/utf8.h"
#include "inv/commands/arguments.h"
#include "inv/facts/facts.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

enum class FileNames { of_several, always, never };

struct Options {
  std::vector<std::string> arguments;
  FileOptions listed;  // more files than those among the arguments
  FileNames file_names = FileNames::of_several;
  bool json = false;
  bool trim = false;
  uint64_t max_size = kUsualMaxSize;
};

// A value that was asked for, and where it is.
struct Value {
  std::string path;
  std::string_view text;
  std::string_view unit;
};

std::optional<Value> value_of(const Match& match) {
  if (match.attribute ? !is_fact(*match.attribute) : !is_fact(match.element)) return std::nullopt;
  if (!match.attribute) return Value{path_of(match.element), match.element.value(), {}};
  return Value{path_below(match.element, match.attribute->name), match.attribute->value,
               unit_of(find_fact(match.element), *match.attribute)};
}

// A name is shown as in its file; some end in a carriage return that a display reported.
std::string_view without_end_of_line(std::string_view text) {
  return text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
}

// The values of a file, in the requested form.
class Output {
 public:
  Output(const Options& options, bool of_several)
      : json_(options.json),
        trim_(options.trim),
        named_(options.file_names == FileNames::always ||
               (options.file_names == FileNames::of_several && of_several)),
        for_terminal_(output_terminal().interactive),
        list_([this](std::string_view piece) { printer_.add(piece); }, 2) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void add(const std::string& file, const Value& value) {
    const std::string_view text = trim_ ? without_end_of_line(value.text) : value.text;
    if (json_) {
      add_object(file, value, text);
    } else {
      printer_.add((named_ ? fit(file) + ":" : "") + fit(text) + "\n");
    }
  }

  // The status.
  int finish() {
    if (json_) list_.end();
    if (json_) printer_.add("\n");
    return printer_.finish();
  }

 private:
  std::string fit(std::string_view text) const { return for_terminal_ ? printable(text) : std::string(text); }

  void add_object(const std::string& file, const Value& value, std::string_view text) {
    Json object = {{"file", json_text(file)}, {"path", json_text(value.path)}, {"value", json_text(text)}};
    if (!value.unit.empty()) object["unit"] = json_text(value.unit);
    list_.add(object);
  }

  bool json_;
  bool trim_;
  bool named_;
  bool for_terminal_;
  ResultPrinter printer_;
  JsonArray list_;
};

// Whether the file has any value at the path.
bool add_values(const Inventory& inventory, const std::string& path, Output& output) {
  bool found = false;
  for (const Content& content : inventory.contents) {
    if (!content.document) continue;
    for (const Match& match : find_matches(*content.document, path)) {
      const std::optional<Value> value = value_of(match);
      if (value) output.add(inventory.file_name, *value);
      found = found || value;
    }
  }
  return found;
}

int run(const Options& options) {
  const FilesAndPaths named = sort_arguments(options.arguments, options.listed);
  if (!has_file("get", named) || !has_path("get", named)) return kUnusable;
  int status = kDone;
  Output output(options, named.files.are_many());
  for (const std::string& file : find_files(named.files, status)) {
    const std::unique_ptr<Inventory> inventory = open_for_command(file, options.max_size, status);
    if (!inventory) continue;
    AbsentPaths absent(*inventory, "value");
    for (const std::string& path : named.paths) {
      if (!add_values(*inventory, path, output)) absent.complain_of(path, status);
    }
  }
  return worse(status, output.finish());
}

constexpr char kExamples[] =
    "  inv get MAC.inv /System/Chassis/serial\n"
    "  inv get *.inv /System/Chassis/serial                of every file, with its name\n"
    "  inv get spool /System/Chassis/serial                of every *.inv in a folder\n"
    "  inv get MAC.inv '/Software/Soft:*/version'          of every application\n"
    "  inv get MAC.inv AssetInfo/control/os-name           from the asset summary\n"
    "  inv get MAC.inv /Security/Firewall/status || echo no firewall known\n";

}  // namespace

void add_get(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      add_command(app, "get", "Print bare values; status 1 when a path matches nothing", kExamples);
  command.add_option("FILE|PATH", options->arguments,
                     "Inventory files, or folders that are searched for *.inv; - is standard input. What to "
                     "print of each; * matches any text within a segment");
  add_list_of_files(command, options->listed);
  // As in grep, -h is not the help.
  command.set_help_flag("--help", "Print this help message and exit");
  command.add_flag_callback(
      "-h,--no-filename", [options] { options->file_names = FileNames::never; }, "Never print file names");
  command.add_flag_callback(
      "-H,--with-filename", [options] { options->file_names = FileNames::always; },
      "Print the file name before each value, even for a single file");
  command.add_flag("--json", options->json, "Print an array of objects");
  command.add_flag("--trim", options->trim, "Leave out blanks and line ends at the end of values");
  add_max_size(command, options->max_size);
  command.callback([options, &status] {
    // Without arguments it is the help, as with the other commands.
    if (options->arguments.empty() && options->file_names == FileNames::never) throw CLI::CallForHelp();
    status = run(*options);
  });
}

}  // namespace inv
