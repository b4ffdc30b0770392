#include "platform/corefoundation/character_set.h"

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <string_view>

#include "platform/corefoundation/string.h"
#include "plist/utf8.h"

CFTypeID CFCharacterSetGetTypeID() { return static_cast<CFTypeID>(cf::Kind::character_set); }

CFCharacterSetRef CFCharacterSetCreateWithCharactersInString(CFAllocatorRef, CFStringRef characters) {
  std::vector<UTF32Char> members;
  for (std::string_view rest = cf::text_of(characters); !rest.empty();) {
    const plist::Utf8Sequence character = plist::first_sequence(rest);
    members.push_back(character.code_point);
    rest.remove_prefix(character.length);
  }
  std::sort(members.begin(), members.end());
  return cf::create<CFCharacterSetObject>(std::move(members));
}

Boolean CFCharacterSetIsLongCharacterMember(CFCharacterSetRef set, UTF32Char character) {
  return std::binary_search(set->characters.begin(), set->characters.end(), character);
}

Boolean CFStringFindCharacterFromSet(CFStringRef string, CFCharacterSetRef set, CFRange range,
                                     CFStringCompareFlags, CFRange* result) {
  const cf::Position end = cf::position_at(string, range.location + range.length);
  cf::Position at = cf::position_at(string, range.location);
  while (at.offset < end.offset) {
    const plist::Utf8Sequence character = plist::first_sequence(cf::text_of(string).substr(at.offset));
    const CFIndex units = character.code_point < 0x10000 ? 1 : 2;
    if (CFCharacterSetIsLongCharacterMember(set, character.code_point)) {
      if (result) *result = CFRangeMake(at.units, units);
      return true;
    }
    at.offset += character.length;
    at.units += units;
  }
  return false;
}
