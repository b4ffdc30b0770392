// Sets of characters to search strings for.
#pragma once

#include <CoreFoundation/CFCharacterSet.h>

#include <vector>

#include "platform/corefoundation/object.h"

struct CFCharacterSetObject : cf::Object {
  explicit CFCharacterSetObject(std::vector<UTF32Char> its_characters)
      : Object(cf::Kind::character_set), characters(std::move(its_characters)) {}

  const std::vector<UTF32Char> characters;  // in ascending order
};
