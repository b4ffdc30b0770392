#include "inv/report/report.h"

#include <ctime>

#include "inv/commands/file_list.h"
#include "inv/commands/secret_options.h"
#include "inv/report/fleet_page.h"
#include "inv/report/page_names.h"
#include "inv/secrets/secret_text.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  FileOptions files;
  bool compare = false;
  bool force = false;
  std::string output = "-";
  bool keep_secrets = false;
  uint64_t max_size = kUsualMaxSize;
};

// Opens files for pages with their secrets masked, writes the pages, and reports how many secrets there were.
class PageMaker {
 public:
  PageMaker(const Options& options, int& status) : options_(options), status_(status) {}
  ~PageMaker() {
    if (!options_.keep_secrets) report_masked("report", masked_);
  }

  // Null, after a complaint, if it cannot be read.
  std::unique_ptr<Inventory> open(const std::string& file) {
    return without_secrets(open_for_command(file, options_.max_size, status_));
  }
  // The same for a file whose faults have already been reported. Null for standard input, which can only be
  // read once.
  std::unique_ptr<Inventory> open_again(const std::string& file) const {
    std::string error;
    return file == "-" ? nullptr : without_secrets(open_file(file, options_.max_size, &error));
  }
  // `page` puts a page into the sink that it is called with.
  template <typename Page>
  void write(const std::string& path, Page page) {
    const int written = write_result(path, [&](const TextSink& sink) {
      page([&](std::string_view piece) {
        masked_ += masks_in(piece);
        sink(piece);
      });
    });
    status_ = worse(status_, written);
  }

 private:
  std::unique_ptr<Inventory> without_secrets(std::unique_ptr<Inventory> inventory) const {
    if (inventory) mask_unless_kept(options_.keep_secrets, *inventory);
    return inventory;
  }

  const Options& options_;
  int& status_;
  size_t masked_ = 0;
};

void report_one(const std::string& file, const std::string& output, PageMaker& maker) {
  const auto inventory = maker.open(file);
  if (inventory) maker.write(output, [&](const TextSink& sink) { report_page(*inventory, sink); });
}

void report_changes(const std::vector<std::string>& files, const std::string& output, PageMaker& maker) {
  const auto old_inventory = maker.open(files[0]);
  const auto new_inventory = maker.open(files[1]);
  if (!old_inventory || !new_inventory) return;
  maker.write(output, [&](const TextSink& sink) { comparison_page(*old_inventory, *new_inventory, sink); });
}

std::vector<FleetMachine> machines_in(const std::vector<std::string>& files, PageMaker& maker) {
  std::vector<FleetMachine> scans;
  for (const std::string& file : files) {
    const auto inventory = maker.open(file);
    if (!inventory) continue;
    scans.push_back(fleet_machine(*inventory));
    scans.back().file = file;
  }
  return last_scans(std::move(scans));
}

// The files that a page might replace. Those in folders end in .inv.
std::vector<std::string> pages_among(const std::vector<std::string>& files) {
  constexpr std::string_view kEnding = ".html";
  std::vector<std::string> pages;
  for (const std::string& file : files) {
    if (file.size() > kEnding.size() && file.substr(file.size() - kEnding.size()) == kEnding)
      pages.push_back(file);
  }
  return pages;
}

// Each file is opened twice, so that only one is in memory at a time: first for the fleet's page, and once
// the last scan of each machine is known, for the machine's page.
int report_fleet(const std::vector<std::string>& files, const Options& options, PageMaker& maker) {
  std::vector<FleetMachine> machines = machines_in(files, maker);
  if (machines.empty()) return kDone;
  PageNames names(options.output);
  for (FleetMachine& machine : machines) machine.page = names.next(machine.identity);
  const std::vector<std::string> inputs = pages_among(files);
  for (const FleetMachine& machine : machines) {
    if (is_over_input(machine.page, inputs, options.force)) return kUnusable;
  }
  for (FleetMachine& machine : machines) {
    const auto inventory = maker.open_again(machine.file);
    if (inventory) maker.write(machine.page, [&](const TextSink& sink) { report_page(*inventory, sink); });
    machine.page = inventory ? name_in(machine.page) : "";
  }
  constexpr int64_t kSecondsOfDay = 86'400;
  maker.write(options.output, [&](const TextSink& sink) {
    fleet_page("Fleet", machines, std::time(nullptr) / kSecondsOfDay, sink);
  });
  return kDone;
}

int unusable(const char* complaint) {
  complain("report", complaint);
  return kUnusable;
}

int run(const Options& options) {
  int status = kDone;
  const std::vector<std::string> files = find_files(options.files, status);
  if (files.empty()) return status == kDone ? unusable("no file is given") : status;
  const bool is_fleet = !options.compare && options.files.are_many();
  if (options.compare && files.size() != 2) return unusable("--compare takes two files, OLD and NEW");
  if (is_fleet && options.output == "-")
    return unusable("several machines get a page each; say where with -o FILE");
  if (is_over_input(options.output, files, options.force)) return kUnusable;
  PageMaker maker(options, status);
  if (options.compare) {
    report_changes(files, options.output, maker);
  } else if (is_fleet) {
    // Meanwhile the maker may set the status because of faulty files.
    const int written = report_fleet(files, options, maker);
    status = worse(status, written);
  } else {
    report_one(files.front(), options.output, maker);
  }
  return status;
}

constexpr char kExamples[] =
    "  inv report MAC.inv -o mac.html                        everything on one page\n"
    "  inv report --compare monday.inv friday.inv -o changes.html\n"
    "  inv report scans -o fleet.html                        a folder of many machines\n";

}  // namespace

void add_report(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "report", "Make an HTML page that needs no network", kExamples);
  add_files(command, options->files);
  command.add_flag("--compare", options->compare, "Show what changed from OLD to NEW, the two files");
  command.add_option("-o,--output", options->output, "Where to write instead of standard output")
      ->type_name("FILE");
  add_force(command, options->force);
  add_secrets(command, options->keep_secrets);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
