#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "plist/cursor.h"
#include "plist/dates.h"
#include "plist/entities.h"
#include "plist/numbers.h"
#include "plist/scanner.h"
#include "plist/tags.h"
#include "plist/utf8.h"

namespace plist {

namespace {

struct Tag {
  std::string_view name;
  Element element;
  bool closes;  // </name>
  bool empty;   // <name/>
};

// A container that is skipped with all that is in it. Only tags of containers tell where it ends.
class Dropped {
 public:
  bool active() const { return active_; }

  void begin(Element root) {
    active_ = true;
    root_ = root;
    arrays_ = dictionaries_ = 0;
    ++count(root);
  }

  // False when the tag is the close tag of something around the dropped container, which thereby has ended
  // too.
  bool takes(const Tag& tag) {
    if (!is_container(tag.element) || tag.empty) return true;
    size_t& open = count(tag.element);
    if (!tag.closes) {
      ++open;
    } else if (open == 0) {
      active_ = false;
      return false;
    } else if (--open == 0 && tag.element == root_) {
      active_ = false;
    }
    return true;
  }

 private:
  size_t& count(Element element) { return element == Element::array ? arrays_ : dictionaries_; }

  bool active_ = false;
  Element root_ = Element::array;
  size_t arrays_ = 0, dictionaries_ = 0;
};

class LenientScanner {
 public:
  LenientScanner(std::string_view list, const Events& events, size_t depth_limit)
      : cursor_(list), events_(events), depth_limit_(depth_limit) {}

  void run() {
    cursor_.at += list_start();
    while (find_tag()) {
      const Tag tag = read_tag();
      if (!dropped_.active() || !dropped_.takes(tag)) handle(tag);
    }
    while (!frames_.empty()) end_container();
  }

 private:
  size_t list_start() const;
  bool find_tag();
  bool is_tag() const;
  Tag read_tag();
  void handle(const Tag& tag);
  void open_container(const Tag& tag);
  void close_container(Element element);
  void end_container();

  bool place_value();

  void read_element(const Tag& tag);
  void read_value(const Tag& tag);
  void read_string(const Tag& tag);
  void read_integer(const Tag& tag);
  void read_real(const Tag& tag);
  void read_boolean(const Tag& tag);
  void read_date(const Tag& tag);
  void read_data(const Tag& tag);
  std::optional<std::string_view> read_raw_text(const Tag& tag);
  bool read_text(const Tag& tag);
  bool gather_text();
  bool skip_close(const Tag& opened);

  bool in_dictionary() const { return !frames_.empty() && frames_.back() == Element::dictionary; }

  Cursor cursor_;
  const Events& events_;
  const size_t depth_limit_;
  std::vector<Element> frames_;   // the open arrays and dictionaries whose begin was told
  size_t open_dictionaries_ = 0;  // among them
  Dropped dropped_;
  std::string text_;  // what read_text read
  bool text_is_ascii_ = true;
  std::string key_;  // waits for its value
  bool key_is_ascii_ = true;
  bool has_key_ = false;
};

size_t LenientScanner::list_start() const {
  const std::string_view list = cursor_.rest();
  const size_t start = std::min(list.find("<?xml"), list.find("<plist"));
  return start == list.npos ? 0 : start;
}

// At a "<": whether its ">" comes before another "<".
bool LenientScanner::is_tag() const {
  Cursor behind = cursor_;
  ++behind.at;
  const std::string_view until_next(behind.at, static_cast<size_t>(behind.find('<') - behind.at));
  return until_next.find('>') != until_next.npos;
}

// Skips whatever is no tag of an element.
bool LenientScanner::find_tag() {
  for (;;) {
    cursor_.at = cursor_.find('<');
    if (cursor_.at_end()) return false;
    if (cursor_.sees("<!--")) {
      if (!cursor_.skip_past("-->")) return false;
    } else if (cursor_.sees("<![CDATA[")) {
      if (!cursor_.skip_past("]]>")) return false;
    } else if (is_tag() && cursor_.at[1] != '?' && cursor_.at[1] != '!') {
      return true;
    } else {
      ++cursor_.at;
    }
  }
}

Tag LenientScanner::read_tag() {
  ++cursor_.at;
  const bool closes = cursor_.skip('/');
  std::string_view tag = cursor_.take(cursor_.find('>'));
  ++cursor_.at;
  const bool empty = !closes && !tag.empty() && tag.back() == '/';
  if (empty) tag.remove_suffix(1);
  const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n"));
  return {name, element_named(name), closes, empty};
}

void LenientScanner::handle(const Tag& tag) {
  if (is_container(tag.element)) {
    tag.closes ? close_container(tag.element) : open_container(tag);
  } else if (!tag.closes && tag.element != Element::plist && tag.element != Element::unknown) {
    read_element(tag);
  }
}

void LenientScanner::open_container(const Tag& tag) {
  const bool placed = frames_.size() < depth_limit_ && place_value();
  has_key_ = false;
  if (!placed) {
    if (!tag.empty) dropped_.begin(tag.element);
    return;
  }
  const bool is_dictionary = tag.element == Element::dictionary;
  frames_.push_back(tag.element);
  if (is_dictionary) ++open_dictionaries_;
  (is_dictionary ? events_.begin_dictionary : events_.begin_array)(events_.listener);
  if (tag.empty) end_container();
}

// A close tag ends the innermost container of its kind and those in it that were not closed; one without such
// a container ends nothing.
void LenientScanner::close_container(Element element) {
  const size_t open =
      element == Element::dictionary ? open_dictionaries_ : frames_.size() - open_dictionaries_;
  if (open == 0) return;
  while (frames_.back() != element) end_container();
  end_container();
}

void LenientScanner::end_container() {
  const bool is_dictionary = in_dictionary();
  frames_.pop_back();
  if (is_dictionary) --open_dictionaries_;
  has_key_ = false;
  (is_dictionary ? events_.end_dictionary : events_.end_array)(events_.listener);
}

// Tells the key of the value that comes now; false when there is no place for a value.
bool LenientScanner::place_value() {
  if (!in_dictionary()) return true;
  if (!has_key_) return false;
  has_key_ = false;
  events_.key(events_.listener, {key_, key_is_ascii_});
  return true;
}

void LenientScanner::read_element(const Tag& tag) {
  if (tag.element == Element::key && in_dictionary()) {
    has_key_ = read_text(tag);
    std::swap(key_, text_);
    key_is_ascii_ = text_is_ascii_;
  } else {
    read_value(tag);
    has_key_ = false;
  }
}

void LenientScanner::read_value(const Tag& tag) {
  switch (tag.element) {
    case Element::integer:
      return read_integer(tag);
    case Element::real:
      return read_real(tag);
    case Element::true_value:
    case Element::false_value:
      return read_boolean(tag);
    case Element::date:
      return read_date(tag);
    case Element::data:
      return read_data(tag);
    default:
      return read_string(tag);
  }
}

void LenientScanner::read_string(const Tag& tag) {
  if (read_text(tag) && place_value()) events_.string(events_.listener, {text_, text_is_ascii_});
}

void LenientScanner::read_integer(const Tag& tag) {
  const auto text = read_raw_text(tag);
  const auto integer = text ? parse_integer(*text) : std::nullopt;
  if (integer && place_value()) events_.integer(events_.listener, *integer, *text);
}

void LenientScanner::read_real(const Tag& tag) {
  const auto real = read_text(tag) ? parse_real(text_) : std::nullopt;
  if (real && place_value()) events_.real(events_.listener, *real, text_);
}

void LenientScanner::read_boolean(const Tag& tag) {
  if ((tag.empty || skip_close(tag)) && place_value()) {
    events_.boolean(events_.listener, tag.element == Element::true_value);
  }
}

void LenientScanner::read_date(const Tag& tag) {
  const auto text = read_raw_text(tag);
  const auto seconds = text ? parse_date(*text) : std::nullopt;
  if (seconds && place_value()) events_.date(events_.listener, *seconds, *text);
}

void LenientScanner::read_data(const Tag& tag) {
  const auto text = read_raw_text(tag);
  if (text && place_value()) events_.data(events_.listener, *text);
}

// The text of an element in which entities mean nothing; none when it is not closed.
std::optional<std::string_view> LenientScanner::read_raw_text(const Tag& tag) {
  if (tag.empty) return std::nullopt;
  const std::string_view text = cursor_.take(cursor_.find('<'));
  if (!skip_close(tag)) return std::nullopt;
  return text;
}

// Into text_; false when the element is not closed.
bool LenientScanner::read_text(const Tag& tag) {
  text_.clear();
  text_is_ascii_ = true;
  if (tag.empty) return true;
  if (!gather_text() || !skip_close(tag)) return false;
  const Utf8 kind = classify_utf8(text_);
  if (kind == Utf8::invalid) text_ = repair_utf8(text_);
  text_is_ascii_ = kind == Utf8::ascii;
  return true;
}

// Up to the next tag; a "<" that begins none is text. False at the end of the input.
bool LenientScanner::gather_text() {
  for (;;) {
    append_resolved(text_, cursor_.take(cursor_.find('<')));
    if (cursor_.at_end()) return false;
    if (cursor_.skip("<![CDATA[")) {
      const char* const section = cursor_.at;
      if (!cursor_.skip_past("]]>")) return false;
      text_.append(section, cursor_.at - 3);
    } else if (cursor_.skip("<!--")) {
      if (!cursor_.skip_past("-->")) return false;
    } else if (is_tag()) {
      return true;
    } else {
      text_ += *cursor_.at++;
    }
  }
}

// The element's close tag, or one whose name was damaged; any other tag stays unread.
bool LenientScanner::skip_close(const Tag& opened) {
  if (cursor_.at_end() || !is_tag()) return false;
  const Cursor before = cursor_;
  const Tag tag = read_tag();
  if (tag.closes && (tag.element == opened.element || tag.element == Element::unknown)) return true;
  cursor_ = before;
  return false;
}

}  // namespace

void scan_leniently(std::string_view list, const Events& events, size_t depth_limit) {
  LenientScanner(list, events, depth_limit).run();
}

}  // namespace plist
