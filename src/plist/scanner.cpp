#include "plist/scanner.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "plist/cursor.h"
#include "plist/dates.h"
#include "plist/entities.h"
#include "plist/numbers.h"
#include "plist/tags.h"
#include "plist/utf8.h"

namespace plist {
namespace {

constexpr const char* kUnexpectedEnd = "unexpected end";

// What is open, and what may come next in it.
enum class Frame : uint8_t { empty_list, full_list, array, dictionary_key, dictionary_value };

Element element_of(Frame frame) {
  if (frame == Frame::array) return Element::array;
  return frame == Frame::empty_list || frame == Frame::full_list ? Element::plist : Element::dictionary;
}

class Scanner {
 public:
  Scanner(std::string_view list, const Events& events) : cursor_(list), events_(events) {}

  // True when the list's value was read; otherwise error() says why not.
  bool run() {
    if (!check_encoding()) return false;
    do {
      if (!step()) return false;
    } while (!done_);
    return true;
  }
  const char* error() const { return error_; }
  const char* at() const { return cursor_.at; }

 private:
  bool fail(const char* error) {
    error_ = error;
    return false;
  }

  bool check_encoding();
  bool step();
  bool skip_declaration();
  bool open_element();
  bool open_container(Element element);
  bool close_container();
  bool end_container();
  bool read_key(bool empty);
  bool read_value(const Tag& tag);
  bool finish_value();

  bool read_tag(Tag& tag);
  bool expect_close(Element element);
  bool read_raw_text(std::string_view& text);
  bool read_characters(const Tag& tag, Characters& characters);
  bool resolve_text();
  bool read_string(const Tag& tag);
  bool read_integer();
  bool read_real(const Tag& tag);
  bool read_boolean(const Tag& tag);
  bool read_date();
  bool read_data();

  Cursor cursor_;
  const Events& events_;
  std::vector<Frame> frames_;
  size_t depth_ = 0;      // arrays and dictionaries among the frames
  std::string resolved_;  // the text that is being read, when it is not the input's own bytes
  bool done_ = false;
  const char* error_ = nullptr;
};

bool is_utf8(std::string_view name) {
  return name.size() == 5 && (name[0] | 0x20) == 'u' && (name[1] | 0x20) == 't' && (name[2] | 0x20) == 'f' &&
         name.substr(3) == "-8";
}

// The encoding is what the XML declaration says, which counts only as the very first thing.
bool Scanner::check_encoding() {
  cursor_.skip("\xEF\xBB\xBF");
  if (!cursor_.sees("<?xml")) return true;
  Cursor declaration(cursor_.rest().substr(0, cursor_.rest().find("?>")));
  if (!declaration.skip_past("encoding=") || declaration.at_end()) return true;
  const char quote = *declaration.at++;
  return is_utf8(declaration.take(declaration.find(quote))) || fail("only UTF-8 can be read");
}

// One tag, comment or the like, with the white space before it.
bool Scanner::step() {
  cursor_.skip_white();
  if (cursor_.at_end()) return fail(kUnexpectedEnd);
  if (!cursor_.skip('<')) return fail("unexpected text between elements");
  if (cursor_.skip('?')) return cursor_.skip_past("?>") || fail("unterminated processing instruction");
  if (cursor_.skip('!')) return skip_declaration();
  if (cursor_.sees('/')) return close_container();
  return open_element();
}

bool Scanner::skip_declaration() {
  if (cursor_.skip("--")) return cursor_.skip_past("-->") || fail("unterminated comment");
  if (!frames_.empty() || !cursor_.skip("DOCTYPE")) return fail("unexpected declaration");
  const std::string_view declaration = cursor_.take(cursor_.find('>'));
  if (declaration.find('[') != declaration.npos) return fail("document type with declarations of its own");
  return cursor_.skip('>') || fail(kUnexpectedEnd);
}

bool Scanner::open_element() {
  Tag tag;
  if (!read_tag(tag)) return false;
  if (tag.element == Element::unknown) return fail("unknown element");
  if (!frames_.empty()) {
    if (frames_.back() == Frame::full_list) return fail("more than one value");
    if (frames_.back() == Frame::dictionary_key) {
      return tag.element == Element::key ? read_key(tag.empty) : fail("value without a key");
    }
  }
  if (tag.element != Element::plist && !is_container(tag.element)) return read_value(tag) && finish_value();
  if (!open_container(tag.element)) return false;
  return !tag.empty || end_container();
}

bool Scanner::open_container(Element element) {
  if (element == Element::plist) {
    frames_.push_back(Frame::empty_list);
    return true;
  }
  if (++depth_ > kMaximumDepth) return fail("nested too deeply");
  const bool is_array = element == Element::array;
  frames_.push_back(is_array ? Frame::array : Frame::dictionary_key);
  (is_array ? events_.begin_array : events_.begin_dictionary)(events_.listener);
  return true;
}

bool Scanner::close_container() {
  if (frames_.empty()) return fail("close tag without its open tag");
  --cursor_.at;
  return expect_close(element_of(frames_.back())) && end_container();
}

bool Scanner::end_container() {
  const Frame frame = frames_.back();
  if (frame == Frame::empty_list) return fail("empty list");
  if (frame == Frame::dictionary_value) return fail("key without a value");
  frames_.pop_back();
  if (frame == Frame::full_list) return finish_value();
  --depth_;
  (frame == Frame::array ? events_.end_array : events_.end_dictionary)(events_.listener);
  return finish_value();
}

bool Scanner::read_key(bool empty) {
  Characters key;
  if (!read_characters({Element::key, false, empty}, key)) return false;
  events_.key(events_.listener, key);
  frames_.back() = Frame::dictionary_value;
  return true;
}

bool Scanner::finish_value() {
  if (frames_.empty()) {
    done_ = true;
  } else if (frames_.back() == Frame::empty_list) {
    frames_.back() = Frame::full_list;
  } else if (frames_.back() == Frame::dictionary_value) {
    frames_.back() = Frame::dictionary_key;
  }
  return true;
}

// After the "<". The name ends at the first white space; attributes are skipped.
bool Scanner::read_tag(Tag& tag) {
  const char* const name = cursor_.at;
  while (!cursor_.at_end() && *cursor_.at != '>' && !is_white(*cursor_.at)) ++cursor_.at;
  const char* name_end = cursor_.at;
  cursor_.at = cursor_.find('>');
  if (cursor_.at_end()) return fail(kUnexpectedEnd);
  tag.empty = cursor_.at > name && cursor_.at[-1] == '/';
  if (tag.empty && name_end == cursor_.at) --name_end;
  ++cursor_.at;
  tag.element = element_named({name, static_cast<size_t>(name_end - name)});
  return true;
}

bool Scanner::expect_close(Element element) {
  if (!cursor_.skip("</") || !cursor_.skip(name_of(element))) {
    return fail(cursor_.at_end() ? kUnexpectedEnd : "close tag does not match its open tag");
  }
  cursor_.skip_white();
  return cursor_.skip('>') || fail("close tag does not match its open tag");
}

bool Scanner::read_value(const Tag& tag) {
  switch (tag.element) {
    case Element::key:
    case Element::string:
      return read_string(tag);
    case Element::real:
      return read_real(tag);
    case Element::true_value:
    case Element::false_value:
      return read_boolean(tag);
    default:
      break;
  }
  if (tag.empty) return fail("empty number, date or data");
  if (tag.element == Element::integer) return read_integer();
  return tag.element == Element::date ? read_date() : read_data();
}

// Up to the next tag, whatever it is.
bool Scanner::read_raw_text(std::string_view& text) {
  text = cursor_.take(cursor_.find('<'));
  return !cursor_.at_end() || fail(kUnexpectedEnd);
}

bool Scanner::read_characters(const Tag& tag, Characters& characters) {
  characters = {std::string_view(), true};
  if (tag.empty) return true;
  const Cursor start = cursor_;
  if (!read_raw_text(characters.bytes)) return false;
  if (cursor_.sees("<!") || characters.bytes.find('&') != std::string_view::npos) {
    cursor_ = start;
    if (!resolve_text()) return false;
    characters.bytes = resolved_;
  }
  const Utf8 kind = classify_utf8(characters.bytes);
  if (kind == Utf8::invalid) return fail("text is not valid UTF-8");
  characters.ascii = kind == Utf8::ascii;
  return expect_close(tag.element);
}

// Entities and CDATA sections are replaced by their text.
bool Scanner::resolve_text() {
  resolved_.clear();
  std::string_view run;
  while (read_raw_text(run)) {
    if (!append_resolved(resolved_, run)) return fail("unknown entity");
    if (!cursor_.sees("<!")) return true;
    if (!cursor_.skip("<![CDATA[")) return fail("declaration in a text");
    const char* const section = cursor_.at;
    if (!cursor_.skip_past("]]>")) return fail("unterminated CDATA section");
    resolved_.append(section, cursor_.at - 3);
  }
  return false;
}

bool Scanner::read_string(const Tag& tag) {
  Characters characters;
  if (!read_characters(tag, characters)) return false;
  events_.string(events_.listener, characters);
  return true;
}

bool Scanner::read_integer() {
  std::string_view text;
  if (!read_raw_text(text)) return false;
  const std::optional<Integer> integer = parse_integer(text);
  if (!integer) return fail("malformed integer");
  events_.integer(events_.listener, *integer, text);
  return expect_close(Element::integer);
}

bool Scanner::read_real(const Tag& tag) {
  Characters characters;
  if (!read_characters(tag, characters)) return false;
  const std::optional<double> real = parse_real(characters.bytes);
  if (!real) return fail("malformed real");
  events_.real(events_.listener, *real, characters.bytes);
  return true;
}

bool Scanner::read_boolean(const Tag& tag) {
  if (!tag.empty && !expect_close(tag.element)) return false;
  events_.boolean(events_.listener, tag.element == Element::true_value);
  return true;
}

bool Scanner::read_date() {
  std::string_view text;
  if (!read_raw_text(text)) return false;
  const std::optional<double> seconds = parse_date(text);
  if (!seconds) return fail("malformed date");
  events_.date(events_.listener, *seconds, text);
  return expect_close(Element::date);
}

bool Scanner::read_data() {
  std::string_view text;
  if (!read_raw_text(text)) return false;
  events_.data(events_.listener, text);
  return expect_close(Element::data);
}

}  // namespace

ScanResult scan(std::string_view list, const Events& events) {
  Scanner scanner(list, events);
  scanner.run();
  return {scanner.error(), static_cast<size_t>(scanner.at() - list.data())};
}

}  // namespace plist
