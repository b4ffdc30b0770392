#include "inv/file/verify.h"

#include "inv/base/utf8.h"
#include "inv/commands/signature_options.h"
#include "inv/facts/gaps.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

struct Options {
  std::vector<std::string> files;
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

// What is said about the signature, after the verdict on the file itself.
std::string signature_text(const SignatureVerdict& signature, const Terminal& terminal) {
  if (signature.refusal.empty()) return ", signed by " + printable(signature.signer);
  return "; " + terminal.red("signature refused") + ": " + printable(signature.refusal);
}

// What is said about one file, and whether it and its signature are any good.
struct Judgement {
  std::string line;
  bool good;
};

// Strictly, a file of a scan that did not learn all is no good either.
Judgement judge(const std::string& path, const Inventory& inventory, bool strict,
                const SignatureCheck& signatures, const Terminal& terminal) {
  const Verdict verdict = verify(inventory);
  const bool valid = verdict.faults.empty();
  const std::vector<std::string> gaps = strict && valid ? gaps_in(inventory) : std::vector<std::string>();
  Judgement judgement = {
      printable(inventory.file_name) + ": " + verdict_line(verdict, terminal) + gaps_text(gaps, terminal),
      valid && gaps.empty()};
  if (signatures.wanted()) {
    const SignatureVerdict signature = signatures.judge(path, inventory);
    judgement.good = judgement.good && signature.refusal.empty();
    judgement.line += signature_text(signature, terminal);
  }
  judgement.line += "\n";
  return judgement;
}

int run(const Options& options) {
  const std::optional<SignatureCheck> signatures = SignatureCheck::create(options.signature, options.files);
  if (!signatures) return kUnusable;
  int status = kDone;
  const Terminal terminal = output_terminal();
  std::string lines;
  for (const std::string& path : options.files) {
    std::string error;
    const std::unique_ptr<Inventory> inventory = open_file(path, options.max_size, &error);
    if (!inventory) {
      complain(path, error);
      status = worse(status, kUnusable);
      continue;
    }
    const Judgement judgement = judge(path, *inventory, options.strict, *signatures, terminal);
    if (!judgement.good) status = worse(status, kNo);
    if (!judgement.good || !options.failures) lines += judgement.line;
  }
  return options.quiet ? status : worse(status, print_result(lines));
}

constexpr char kExamples[] =
    "  inv verify *.inv                        a line for each file\n"
    "  inv verify --failures *.inv             a line for each that is not valid\n"
    "  inv verify --quiet MAC.inv && import MAC.inv\n"
    "  inv verify --strict *.inv               and whether each Mac told all\n"
    "  inv verify --allowed-signers allowed_signers *.inv     and each has its FILE.sig\n";

}  // namespace

void add_verify(CLI::App& app, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App& command = add_command(app, "verify", "Check whether a console can import files", kExamples);
  command.add_option("FILE", options->files, "Inventory files; - is standard input")->required();
  command.add_flag("-q,--quiet", options->quiet, "Only the exit status");
  command.add_flag("--failures", options->failures, "Tell only of files that are not valid");
  command.add_flag("--strict", options->strict, "Say what the scan did not learn, and end with 1 then");
  add_signature_options(command, options->signature);
  add_max_size(command, options->max_size);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace inv
