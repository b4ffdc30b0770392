#include "inv/redact/traces.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "inv/base/characters.h"
#include "inv/redact/common_words.h"
#include "inv/redact/token_finder.h"

namespace inv {
namespace {

// Folders whose entries are named by people, and what ends such a name besides control characters: short
// account names have no blanks or typographic characters, volume names may.
struct FolderRow {
  std::string_view path;
  std::string_view ends;
  bool holds_typography;
  bool is_a_persons;  // everything below an entry belongs to that person
};
constexpr std::string_view kEndsOfWord = "/ \"':;,()<>|&";
constexpr FolderRow kFolders[] = {{"/users/", kEndsOfWord, false, true},
                                  {"/home/", kEndsOfWord, false, true},
                                  {"/volumes/", "/\"", true, false}};
// They are followed by a host name.
constexpr std::string_view kHostFolders[] = {"/network/servers/", "/net/"};
constexpr std::string_view kTemporaryFolder = "/var/folders/";
// How the quotation marks, dashes and blanks of printed text begin in UTF-8: U+0080 to U+00BF, U+2000 to
// U+203F and U+3000 to U+303F.
constexpr std::string_view kTypography[] = {"\xC2", "\xE2\x80", "\xE3\x80"};
// What no folder name contains. If it is a slash, what comes before it is the whole name.
constexpr std::string_view kEndsOfAnyName = "/\":;<>|";
constexpr std::string_view kSharedFolder = "shared";
// Folders that appear as a single item, and are named after it.
constexpr std::string_view kBundles[] = {".app",    ".bundle", ".component",  ".framework",  ".kext",
                                         ".plugin", ".saver",  ".prefpane",   ".service",    ".wdgt",
                                         ".appex",  ".xpc",    ".mdimporter", ".qlgenerator"};

constexpr std::string_view kEndsOfAuthority = "/?# \t\"'<>,;()|\\`{}";
// Hosts of the system's maker and of markup standards occur on every system.
constexpr std::string_view kNobodysHosts[] = {"apple.com", "icloud.com", "me.com", "mac.com", "w3.org"};
// Second levels of country domains: "firm.co.uk" is a domain, "co.uk" is nobody's.
constexpr std::string_view kSecondLevels[] = {"ac",  "co", "com", "edu", "go",
                                              "gov", "ne", "net", "or",  "org"};

constexpr size_t kUuidSize = 36;

bool is_in_host(char character) {
  return is_letter_or_digit(character) || character == '.' || character == '-';
}
bool is_in_mailbox(char character) {
  return is_in_host(character) || character == '_' || character == '+' || character == '%';
}

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool begins_in_any_case(std::string_view text, std::string_view small_beginning) {
  return text.size() >= small_beginning.size() &&
         folded(text.substr(0, small_beginning.size())) == small_beginning;
}

bool ends_in_any_case(std::string_view text, std::string_view small_end) {
  return text.size() >= small_end.size() && folded(text.substr(text.size() - small_end.size())) == small_end;
}

bool begins_with_typography(std::string_view text) {
  return std::any_of(std::begin(kTypography), std::end(kTypography), [text](std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
  });
}

// The beginning of a text up to a control character or one of these ends.
std::string_view up_to(std::string_view ends, bool holds_typography, std::string_view text) {
  size_t end = 0;
  while (end < text.size() && !is_control(text[end]) && ends.find(text[end]) == std::string_view::npos &&
         (holds_typography || !begins_with_typography(text.substr(end)))) {
    ++end;
  }
  return text.substr(0, end);
}

bool is_followed_by_slash(std::string_view text, size_t length) {
  return length < text.size() && text[length] == '/';
}

bool is_bundle(std::string_view folder) {
  return std::any_of(std::begin(kBundles), std::end(kBundles),
                     [folder](std::string_view end) { return ends_in_any_case(folder, end); });
}

// Whether a host is this domain or within it.
bool is_of_domain(std::string_view host, std::string_view domain) {
  return ends_in_any_case(host, domain) &&
         (host.size() == domain.size() || host[host.size() - domain.size() - 1] == '.');
}

bool is_nobodys_host(std::string_view host) {
  return is_common_word(host) ||
         std::any_of(std::begin(kNobodysHosts), std::end(kNobodysHosts),
                     [host](std::string_view domain) { return is_of_domain(host, domain); });
}

// "firm.example" in "mail.firm.example"; empty for a name of one or two parts, and below a country's "co".
std::string_view domain_in(std::string_view host) {
  const size_t first_dot = host.find('.');
  if (first_dot == std::string_view::npos) return {};
  const std::string_view domain = host.substr(first_dot + 1);
  const std::string_view label = domain.substr(0, domain.find('.'));
  const bool is_whole = label.size() < domain.size() &&
                        std::all_of(domain.begin(), domain.end(), is_in_host) &&
                        std::all_of(domain.begin() + static_cast<std::ptrdiff_t>(domain.rfind('.')) + 1,
                                    domain.end(), is_letter);
  const bool is_level =
      std::find(std::begin(kSecondLevels), std::end(kSecondLevels), folded(label)) != std::end(kSecondLevels);
  return is_whole && !is_level && domain.back() != '.' && !is_of_domain(domain, "local") ? domain
                                                                                         : std::string_view();
}

class Tracer {
 public:
  explicit Tracer(std::string_view text) : text_(text), first_slash_(text.find('/')) {}

  std::vector<Trace> all() {
    for (size_t i = 0; i < text_.size(); ++i) {
      if (text_[i] == '/') look_at_path(i);
      if (text_[i] == '@') look_at_mail(i);
      if (text_[i] == ':') look_at_url(i);
      if (text_[i] == '-') look_at_uuid(i);
    }
    std::stable_sort(found_.begin(), found_.end(), [](const Trace& one, const Trace& other) {
      return one.text.data() < other.text.data();
    });
    return std::move(found_);
  }

 private:
  void add(std::string_view text, Reach reach = Reach::everywhere) {
    if (!text.empty()) found_.push_back({text, reach});
  }

  void add_name(std::string_view name) {
    if (!is_common_word(name)) add(name);
  }

  void add_host(std::string_view host) {
    if (is_nobodys_host(host)) return;
    add(host);
    add(domain_in(host));
  }

  void look_at_path(size_t slash) {
    const std::string_view rest = text_.substr(slash);
    for (const FolderRow& folder : kFolders) {
      if (begins_in_any_case(rest, folder.path)) add_entry(folder, slash);
    }
    for (const std::string_view folder : kHostFolders) {
      if (begins_in_any_case(rest, folder)) add_host(up_to(kEndsOfWord, false, rest.substr(folder.size())));
    }
    if (begins_in_any_case(rest, kTemporaryFolder)) add_temporary_folder(slash + kTemporaryFolder.size());
  }

  // Adds the possible names of a folder's entry: first the one up to a slash, if that is longer than the
  // usual one.
  void add_entry(const FolderRow& folder, size_t slash) {
    const std::string_view text = text_.substr(slash + folder.path.size());
    const std::string_view whole = up_to(kEndsOfAnyName, true, text);
    const std::string_view usual = up_to(folder.ends, folder.holds_typography, text);
    const bool is_whole =
        is_followed_by_slash(text, whole.size()) && trimmed(whole).size() > trimmed(usual).size();
    if (is_whole) add_name(trimmed(whole));
    if (usual.empty() || (folded(usual) == kSharedFolder && !is_whole)) return;
    add_name(trimmed(usual));
    const size_t size = is_whole ? whole.size() : usual.size();
    if (folder.is_a_persons && is_followed_by_slash(text, size)) {
      add_persons_path(slash, slash + folder.path.size() + size + 1);
    }
  }

  // Adds what is below a person's folder, from `start` on, folder by folder. A path within such a path is
  // part of it.
  void add_persons_path(size_t path_start, size_t start) {
    if (start <= persons_path_end_) return;
    while (start < text_.size()) {
      const std::string_view rest = text_.substr(start);
      std::string_view folder = up_to(kEndsOfAnyName, true, rest);
      const bool is_last = !is_followed_by_slash(rest, folder.size());
      // A path within a sentence ends with its word; one that is the whole text ends with the text.
      if (is_last && path_start > 0) folder = up_to(kEndsOfWord, false, rest);
      persons_path_end_ = start + folder.size();
      if (is_bundle(folder)) return;
      if (!is_usual_folder(folder) && !is_common_word(folder)) add(trimmed(folder), Reach::in_place);
      if (is_last) return;
      start += folder.size() + 1;
    }
  }

  void add_temporary_folder(size_t start) {
    const std::string_view first = up_to(kEndsOfWord, false, text_.substr(start));
    add(first, Reach::in_place);
    if (is_followed_by_slash(text_.substr(start), first.size())) {
      add(up_to(kEndsOfWord, false, text_.substr(start + first.size() + 1)));
    }
  }

  void look_at_url(size_t colon) {
    const size_t start = colon + 3;
    if (colon == 0 || text_.substr(colon, 3) != "://" || !is_letter(text_[colon - 1])) return;
    std::string_view authority = text_.substr(start);
    authority = authority.substr(0, authority.find_first_of(kEndsOfAuthority));
    if (const size_t at = authority.rfind('@'); at != std::string_view::npos) {
      add_userinfo(authority.substr(0, at));
      authority.remove_prefix(at + 1);
    }
    add_host(without_port(authority));
  }

  void add_userinfo(std::string_view userinfo) {
    const size_t colon = userinfo.find(':');
    add_name(userinfo.substr(0, colon));
    if (colon != std::string_view::npos) add(userinfo.substr(colon + 1));
  }

  static std::string_view without_port(std::string_view authority) {
    if (!authority.empty() && authority.front() == '[') {
      return authority.substr(1, authority.find(']') - 1);
    }
    return authority.substr(0, authority.find(':'));
  }

  // "jane.doe@firm.example", but not "name@2x.png", a picture of double size.
  void look_at_mail(size_t at) {
    size_t start = at;
    while (start > 0 && is_in_mailbox(text_[start - 1])) --start;
    size_t end = at + 1;
    while (end < text_.size() && is_in_host(text_[end])) ++end;
    while (end > at + 1 && !is_letter(text_[end - 1])) --end;
    const std::string_view domain = text_.substr(at + 1, end - at - 1);
    const bool is_domain =
        !domain.empty() && is_letter(domain.front()) && domain.find('.') != std::string_view::npos;
    if (start == at || !is_domain || is_nobodys_host(domain)) return;
    add_name(text_.substr(start, at - start));
    add(domain);
  }

  // At its first hyphen.
  void look_at_uuid(size_t hyphen) {
    constexpr size_t kFirstHyphen = 8;
    if (hyphen < kFirstHyphen || first_slash_ >= hyphen) return;
    const std::string_view text = text_.substr(hyphen - kFirstHyphen, kUuidSize);
    if (text.size() < kUuidSize) return;
    for (size_t i = 0; i < text.size(); ++i) {
      const bool is_hyphen_due = i == 8 || i == 13 || i == 18 || i == 23;
      if (is_hyphen_due ? text[i] != '-' : !is_hex_digit(text[i])) return;
    }
    add(text);
  }

  std::string_view text_;
  size_t first_slash_;
  size_t persons_path_end_ = 0;  // end of the last one
  std::vector<Trace> found_;
};

}  // namespace

std::vector<Trace> traces_in(std::string_view text) { return Tracer(text).all(); }

}  // namespace inv
