#include "inv/commands/batch.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "driver/base/text.h"
#include "inv/base/input_file.h"
#include "inv/base/output_file.h"
#include "inv/file/fault.h"

namespace inv {
namespace {

constexpr size_t kMostJobs = 64;
constexpr mode_t kPrivate = 0700;

double seconds_since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

// Whether an earlier run has put it there for the same reason.
bool is_aside(const std::string& target, const std::string& text) {
  std::string error;
  return read_file(target + ".txt", kUsualMaxSize, &error) == text;
}

// The name that a file gets among files from all folders: its own, with a number if that is taken.
std::string name_aside(const std::string& folder, const std::string& path, const std::string& text) {
  const std::string name = path == "-" ? "standard-input" : path.substr(path.rfind('/') + 1);
  std::string target = folder + "/" + name;
  for (int number = 2; exists(target + ".txt") && !is_aside(target, text); ++number) {
    target = folder + "/" + name + "." + std::to_string(number);
  }
  return target;
}

bool copy_file(const std::string& path, const std::string& target) {
  std::string error;
  const std::optional<std::string> bytes = read_file(path, kUsualMaxSize, &error);
  return bytes && write_file(target, *bytes);
}

// "1:05", "1:00:05"
std::string clock_time(double seconds) {
  const int whole = static_cast<int>(seconds + 0.5);
  if (whole < 3600) return format_string("%d:%02d", whole / 60, whole % 60).get();
  return format_string("%d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60).get();
}

}  // namespace

Opened open_quietly(const std::string& path, uint64_t max_size) {
  std::string error;
  Opened opened = {path, open_file(path, max_size, &error), {}, 0};
  if (!opened.inventory) {
    opened.faults.push_back(error);
    return opened;
  }
  for (const Fault& fault : opened.inventory->faults) opened.faults.push_back(describe(fault));
  if (!opened.inventory->container) opened.inventory.reset();
  return opened;
}

uint64_t weight_of(const Inventory* inventory) {
  return inventory ? inventory->bytes.size() + inflated_size(*inventory) : 0;
}

bool complain_of(const Opened& opened, int& status) {
  for (const std::string& fault : opened.faults)
    complain(opened.path == "-" ? "standard input" : opened.path, fault);
  if (!opened.faults.empty()) status = worse(status, opened.inventory ? kNo : kUnusable);
  return opened.inventory != nullptr;
}

void add_jobs(CLI::App& command, size_t& jobs) {
  command.add_option("--jobs", jobs, "Read files on this many threads (1)")
      ->type_name("N")
      ->check(CLI::Range(size_t{1}, kMostJobs).description(""));
}

void add_quarantine(CLI::App& command, std::string& folder) {
  command
      .add_option("--quarantine", folder, "Where to put files that cannot be read, and a .txt that says why")
      ->type_name("FOLDER");
}

void set_aside(const Opened& opened, const std::string& folder, int& status) {
  const auto fail = [&](const std::string& about) {
    complain(about, std::strerror(errno));
    status = worse(status, kUnusable);
  };
  if (mkdir(folder.c_str(), kPrivate) != 0 && errno != EEXIST) return fail(folder);
  std::string text = opened.path + "\n";
  for (const std::string& fault : opened.faults) text += fault + "\n";
  const std::string target = name_aside(folder, opened.path, text);
  if (exists(target + ".txt")) return;
  // A file that cannot even be read leaves only the text.
  const bool kept = link(opened.path.c_str(), target.c_str()) == 0 || copy_file(opened.path, target);
  if (!kept && access(opened.path.c_str(), R_OK) == 0) return fail(target);
  if (!write_file(target + ".txt", text)) fail(target + ".txt");
}

void Progress::show(size_t done) {
  const size_t permille = done * 1000 / total_;
  if (permille == shown_) return;
  shown_ = permille;
  constexpr size_t kCells = 30;
  const size_t filled = permille * kCells / 1000;
  const double rate = static_cast<double>(done) / seconds_since(start_);
  const double left = static_cast<double>(total_ - done) / rate;
  draw("\r[" + std::string(filled, '#') + std::string(kCells - filled, '.') + "] " + std::to_string(done) +
       " of " + std::to_string(total_) + format_string(", %.0f a second, ", rate).get() + clock_time(left) +
       " left\x1B[K");
}

void Progress::draw(const std::string& text) const {
  if (terminal_.interactive) std::fwrite(text.data(), 1, text.size(), stderr);
}

Tally::Tally(std::vector<std::string> fates) : fates_(std::move(fates)), counts_(fates_.size()) {}

void Tally::print() const {
  std::string line;
  for (size_t i = 0; i < fates_.size(); ++i) line += std::to_string(counts_[i]) + " " + fates_[i] + ", ";
  line += format_string("%.1f s\n", seconds_since(start_)).get();
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace inv
