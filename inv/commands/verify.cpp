#include "inv/file/verify.h"

#include "inv/base/utf8.h"
#include "inv/commands/batch.h"
#include "inv/commands/file_list.h"
#include "inv/commands/in_order.h"
#include "inv/commands/signature_options.h"
#include "inv/facts/gaps.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  FileOptions files;
  size_t jobs = 1;
  bool quiet = false;
  bool failures = false;
  bool strict = false;
  SignatureOptions signature;
  uint64_t max_size = kUsualMaxSize;
};

std::string verdict_line(const Verdict& verdict, const Terminal& terminal) {
  if (!verdict.faults.empty()) {
    return terminal.red("invalid") + " " + printable(describe(verdict.faults.front()));
  }
  std::string line = terminal.green("valid");
  if (verdict.lines_not_utf8 > 0) {
    line += ", but " + std::to_string(verdict.lines_not_utf8) +
            (verdict.lines_not_utf8 == 1 ? " line is" : " lines are") + " not UTF-8";
  }
  return line;
}

// What a scan did not learn, after the verdict on a valid file.
std::string gaps_text(const std::vector<std::string>& gaps, const Terminal& terminal) {
  std::string text;
  for (const std::string& gap : gaps) text += (text.empty() ? ": " : "; ") + printable(gap);
  return text.empty() ? "" : ", but " + terminal.yellow("incomplete") + text;
}

// The text about the signature, after the verdict on the file itself.
std::string signature_text(const SignatureVerdict& signature, const Terminal& terminal) {
  if (signature.refusal.empty()) return ", signed by " + printable(signature.signer);
  return "; " + terminal.red("signature refused") + ": " + printable(signature.refusal);
}

struct Checked {
  std::string path;
  std::unique_ptr<Inventory> inventory;  // null if the file cannot be opened
  std::string error;                     // why
  Verdict verdict;
};

Checked check(const std::string& path, uint64_t max_size) {
  Checked checked;
  checked.path = path;
  checked.inventory = open_file(path, max_size, &checked.error);
  if (checked.inventory) checked.verdict = verify(*checked.inventory);
  return checked;
}

// The text about one file, and whether it and its signature are good.
struct Judgement {
  std::string line;
  bool good;
};

// If strict, a file of an incomplete scan is not good either.
Judgement judge(const Checked& checked, bool strict, const SignatureCheck& signatures,
                const Terminal& terminal) {
  const bool valid = checked.verdict.faults.empty();
  const std::vector<std::string> gaps =
      strict && valid ? gaps_in(*checked.inventory) : std::vector<std::string>();
  Judgement judgement = {printable(checked.inventory->file_name) + ": " +
                             verdict_line(checked.verdict, terminal) + gaps_text(gaps, terminal),
                         valid && gaps.empty()};
  if (signatures.wanted()) {
    const SignatureVerdict signature = signatures.judge(checked.path, *checked.inventory);
    judgement.good = judgement.good && signature.refusal.empty();
    judgement.line += signature_text(signature, terminal);
  }
  judgement.line += "\n";
  return judgement;
}

int run(const Options& options) {
  // Lines are printed in chunks of about this size.
  constexpr size_t kPiece = 1 << 16;
  int status = kDone;
  const std::vector<std::string> files = find_files(options.files, status);
  const std::optional<SignatureCheck> signatures = SignatureCheck::create(options.signature, files);
  if (!signatures) return kUnusable;
  const Terminal terminal = output_terminal();
  std::string lines;
  const auto take = [&](const Checked& checked) {
    if (!checked.inventory) {
      complain(checked.path, checked.error);
      status = worse(status, kUnusable);
      return true;
    }
    const Judgement judgement = judge(checked, options.strict, *signatures, terminal);
    if (!judgement.good) status = worse(status, kNo);
    if (!options.quiet && (!judgement.good || !options.failures)) lines += judgement.line;
    if (lines.size() < kPiece) return true;
    status = worse(status, print_result(lines));
    lines.clear();
    return true;
  };
  in_order(
      files.size(), options.jobs, [&](size_t i) { return check(files[i], options.max_size); }, take,
      [](const Checked& checked) { return weight_of(checked.inventory.get()); }, options.max_size);
  return options.quiet ? status : worse(status, print_result(lines));
}

constexpr char kExamples[] =
    "  inv verify *.inv                        a line for each file\n"
    "  inv verify --jobs 2 spool               every *.inv in a folder\n"
    "  inv verify --failures *.inv             a line for each that is not valid\n"
    "  inv verify --quiet MAC.inv && import MAC.inv\n"
    "  inv verify --strict *.inv               and whether each scan is complete\n"
    "  inv verify --allowed-signers allowed_signers *.inv     and each has its FILE.sig\n";

}  // namespace

void add_verify(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "verify", "Check whether a console can import files", kExamples);
  add_files(command, options->files);
  command.add_flag("-q,--quiet", options->quiet, "Only the exit status");
  command.add_flag("--failures", options->failures, "Report only files that are not valid");
  command.add_flag("--strict", options->strict, "Report what the scan did not learn; status 1 then");
  add_jobs(command, options->jobs);
  add_signature_options(command, options->signature);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
