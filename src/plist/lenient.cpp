#include <optional>
#include <string>
#include <vector>

#include "plist/damaged_input.h"
#include "plist/dates.h"
#include "plist/numbers.h"
#include "plist/scanner.h"
#include "plist/tags.h"
#include "plist/utf8.h"

namespace plist {
namespace {

// A container that is skipped with everything in it. Only tags of containers show where it ends.
class Dropped {
 public:
  bool active() const { return active_; }

  void begin(Element root) {
    active_ = true;
    root_ = root;
    arrays_ = dictionaries_ = 0;
    ++count(root);
  }

  // False when the tag closes something around the dropped container, which has then ended too.
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
      : input_(list), events_(events), depth_limit_(depth_limit) {}

  void run() {
    while (const std::optional<Tag> tag = input_.next_tag()) {
      if (!dropped_.active() || !dropped_.takes(*tag)) handle(*tag);
    }
    while (!frames_.empty()) end_container();
  }

 private:
  void handle(const Tag& tag);
  void open_container(const Tag& tag);
  bool is_damaged_close(const Tag& tag) const;
  void close_container(Element element);
  void end_container();
  bool place_value();

  void read_key(const Tag& tag);
  void read_value(const Tag& tag);
  bool read_text(const Tag& tag);
  bool read_raw_text(const Tag& tag);
  Characters text() const { return {text_, classify_utf8(text_) == Utf8::ascii}; }

  bool in_dictionary() const { return !frames_.empty() && frames_.back() == Element::dictionary; }

  DamagedInput input_;
  const Events& events_;
  const size_t depth_limit_;
  std::vector<Element> frames_;   // the open arrays and dictionaries whose begin was reported
  size_t open_dictionaries_ = 0;  // among them
  Dropped dropped_;
  std::string text_;  // of the element that is being read
  std::string key_;   // waits for its value
  bool key_is_ascii_ = true;
  bool has_key_ = false;
};

void LenientScanner::handle(const Tag& tag) {
  if (is_container(tag.element)) {
    tag.closes ? close_container(tag.element) : open_container(tag);
  } else if (tag.closes) {
    return;
  } else if (tag.element == Element::key && in_dictionary()) {
    read_key(tag);
  } else {
    read_value(tag);
    has_key_ = false;
  }
}

void LenientScanner::open_container(const Tag& tag) {
  if (is_damaged_close(tag)) return close_container(tag.element);
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

// "</dict>" that became "<<dict>": a dictionary has no value without a key, and the profiler never puts an
// array directly in an array.
bool LenientScanner::is_damaged_close(const Tag& tag) const {
  return input_.after_bracket() && !has_key_ && !frames_.empty() && frames_.back() == tag.element;
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

// Reports the key of the value that comes now; false where no value may be.
bool LenientScanner::place_value() {
  if (!in_dictionary()) return true;
  if (!has_key_) return false;
  has_key_ = false;
  events_.key(events_.listener, {key_, key_is_ascii_});
  return true;
}

void LenientScanner::read_key(const Tag& tag) {
  has_key_ = read_text(tag);
  key_is_ascii_ = text().ascii;
  std::swap(key_, text_);
}

// Reports the value when it can be read and there is a place for it.
void LenientScanner::read_value(const Tag& tag) {
  switch (tag.element) {
    case Element::integer:
      if (const auto integer = read_raw_text(tag) ? parse_integer(text_) : std::nullopt) {
        if (place_value()) events_.integer(events_.listener, *integer, text_);
      }
      break;
    case Element::real:
      if (const auto real = read_text(tag) ? parse_real(text_) : std::nullopt) {
        if (place_value()) events_.real(events_.listener, *real, text_);
      }
      break;
    case Element::date:
      if (const auto seconds = read_raw_text(tag) ? parse_date(text_) : std::nullopt) {
        if (place_value()) events_.date(events_.listener, *seconds, text_);
      }
      break;
    case Element::true_value:
    case Element::false_value:
      if (read_text(tag) && text_.empty() && place_value()) {
        events_.boolean(events_.listener, tag.element == Element::true_value);
      }
      break;
    case Element::data:
      if (read_raw_text(tag) && place_value()) events_.data(events_.listener, text_);
      break;
    default:
      if (read_text(tag) && place_value()) events_.string(events_.listener, text());
  }
}

// Of a key, string, real or boolean, for which an empty element is an empty text.
bool LenientScanner::read_text(const Tag& tag) {
  if (!tag.empty) return input_.read_text(tag.element, text_);
  text_.clear();
  return true;
}

// Of an integer, date or data element, in which entities mean nothing.
bool LenientScanner::read_raw_text(const Tag& tag) {
  return !tag.empty && input_.read_raw_text(tag.element, text_);
}

}  // namespace

void scan_leniently(std::string_view list, const Events& events, size_t depth_limit) {
  LenientScanner(list, events, depth_limit).run();
}

}  // namespace plist
