// The shapes that recur in the collectors: how they read an item of the profiler tree, and how they write a
// fact into the snapshot.
#pragma once

#include <string>
#include <vector>

#include "zxml/place.h"
#include "zxml/zXML.h"

// ---- Reading. In the profiler tree a data type is a child of the top element, its items are the children of
// its child "_items", and an item's keys are attributes (texts, numbers) or children (dictionaries, arrays).
// A key with a value of another kind than the one asked for counts as missing.

// The tag of an array; null for a dictionary. It holds tags and attributes named "item" and their index.
const Tag* find_list(const Tag& item, const char* key);
// The tag that holds the items of a data type ("SPHardwareDataType"), or the items of an item; null when
// there is none.
const Tag* find_items(const InventoryTree& profiler, const char* data_type);
const Tag* find_items(const Tag& item);
// The first item of a data type, or null.
const Tag* first_item(const InventoryTree& profiler, const char* data_type);

// A value to be copied: a text, a number or a date, whichever the profiler gives.
const Value* find_value(const Tag& item, const char* key);
// A value as a text; null for a number, and for a date, which the tree holds as a text too.
char* text_of(Value& value);
// The text in the profiler tree itself; size parsing changes it there (see units.h).
char* find_text(const Tag& item, const char* key);
bool text_is(const Tag& item, const char* key, const char* expected);
// The text of a date, or the text in its place.
char* find_date(const Tag& item, const char* key);
// The integer, or 0.
int64_t find_integer(const Tag& item, const char* key);
// The texts among the elements of an array; empty for null.
std::vector<const char*> texts_in(const Tag* list);

// ---- Writing.

// A key of an item, and the name of the attribute that it is copied to.
struct CopiedField {
  const char* key;
  const char* name;
};

// A copy of the value, kind included; an empty value when the key is missing.
Value copied_value(const Tag& item, const char* key);
// The same as an attribute; nothing when the key is missing.
void copy_field(Place& element, const char* name, const Tag& item, const char* key);
template <size_t count>
void copy_fields(Place& element, const Tag& item, const CopiedField (&fields)[count]) {
  for (const CopiedField& field : fields) copy_field(element, field.name, item, field.key);
}
// The copy of a key's value as the value of the element itself; an element without value when the key is
// missing.
void copy_element_value(Place& element, const Tag& item, const char* key);

// Yes and no are the texts "1" and "0".
Value yes_no(bool yes);
// A switch for which only `no` means no and any other text means yes; nothing when the key is missing.
void set_switch(Place& element, const char* name, const Tag& item, const char* key, const char* no);

// The texts in one, as "10.0.0.5, 169.254.3.1"; nothing for no text.
void set_joined(Place& element, const char* name, const std::vector<const char*>& texts);

// A byte count as the annotation "base-value" has it.
Text byte_count_text(int64_t bytes);

// A fact with members: an attribute with empty text, annotated "complex", and a child tag of the same name
// that holds the members. `name` is relative to the element; the element must outlive this.
class CompoundField {
 public:
  // `distinct` as in place.h: for long lists of such facts.
  CompoundField(Place& element, const std::string& name, Place::Names names = Place::Names::may_repeat);
  // The value of the child tag itself.
  void set_value(Value value);
  void set_member(const char* name, Value value, const char* annotation_key = nullptr,
                  const char* annotation_text = nullptr);
  // Marks the child tag with "field-source", where the console expects that; call it after the last member.
  void finish();

 private:
  Place members_;
};
