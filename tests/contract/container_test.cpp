#include <gtest/gtest.h>

#include <cstdlib>

#include "contract/objects.h"
#include "contract/outcome.h"

namespace {

CFRef<CFArrayRef> array_of(CFTypeRef element) {
  return CFRef<CFArrayRef>(CFArrayCreate(nullptr, &element, 1, &kCFTypeArrayCallBacks));
}

// Keys "key 0", "key 1", ... with the keys themselves as values.
CFRef<CFDictionaryRef> dictionary_of(size_t count) {
  std::vector<CFRef<CFStringRef>> strings;
  std::vector<const void*> keys;
  for (size_t i = 0; i < count; ++i) {
    strings.push_back(string_of("key " + std::to_string(i)));
    keys.push_back(strings.back().get());
  }
  return CFRef<CFDictionaryRef>(
      CFDictionaryCreate(nullptr, keys.data(), keys.data(), static_cast<CFIndex>(count),
                         &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

TEST(Arrays, HoldTheirElementsInOrder) {
  const void* elements[] = {CFSTR("a"), kCFBooleanTrue, CFSTR("b")};
  const CFRef<CFArrayRef> array(CFArrayCreate(nullptr, elements, 3, &kCFTypeArrayCallBacks));
  EXPECT_EQ(description_of_tree(array.get()), R"(array 3 / string "a" / true / string "b")");
}

TEST(Arrays, RetainTheirElements) {
  const CFRef<CFStringRef> element = string_of("an element of its own");
  {
    const CFRef<CFArrayRef> array = array_of(element.get());
    EXPECT_EQ(CFGetRetainCount(element.get()), 2);
  }
  EXPECT_EQ(CFGetRetainCount(element.get()), 1);
}

TEST(Arrays, AreReleasedAtAnyDepth) {
  CFRef<CFArrayRef> array = array_of(kCFBooleanTrue);
  for (int depth = 0; depth < 100000; ++depth) array = array_of(array.get());
  EXPECT_EQ(CFArrayGetCount(array.get()), 1);
}

TEST(Dictionaries, FindEveryKeyAndNoOther) {
  for (const size_t count : {size_t{0}, size_t{1}, size_t{16}, size_t{17}, size_t{1000}}) {
    const CFRef<CFDictionaryRef> dictionary = dictionary_of(count);
    EXPECT_EQ(CFDictionaryGetCount(dictionary.get()), static_cast<CFIndex>(count));
    for (size_t i = 0; i < count; ++i) {
      const CFRef<CFStringRef> key = string_of("key " + std::to_string(i));
      const void* value = CFDictionaryGetValue(dictionary.get(), key.get());
      ASSERT_NE(value, nullptr) << i;
      EXPECT_TRUE(CFEqual(value, key.get())) << i;
    }
    const void* value = nullptr;
    EXPECT_FALSE(CFDictionaryGetValueIfPresent(dictionary.get(), CFSTR("key"), &value));
    EXPECT_FALSE(CFDictionaryContainsKey(dictionary.get(), CFSTR("key 9999")));
    EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), CFSTR("")), nullptr);
  }
}

TEST(Dictionaries, OfManyRepeatedKeysHoldTheLastValues) {
  std::string pairs;
  for (int i = 0; i < 3000; ++i) {
    pairs += "<key>" + std::to_string(i % 100) + "</key><integer>" + std::to_string(i) + "</integer>";
  }
  const std::string outcome = outcome_of(document("<dict>" + pairs + "</dict>"));
  EXPECT_EQ(outcome.substr(0, 10), "dict 100 /");
  EXPECT_NE(outcome.find("key \"7\" / number isFloat=0 sint64=2907 double=2907"), std::string::npos);
}

TEST(Dictionaries, OfFewKeysRepeatedOftenStaySmall) {
  std::string pairs;
  for (int i = 0; i < 40; ++i) pairs += i % 2 ? "<key>a</key><true/>" : "<key>b</key><false/>";
  EXPECT_EQ(outcome_of(document("<dict>" + pairs + "</dict>")),
            R"(dict 2 / key "a" / true / key "b" / false)");
}

TEST(Dictionaries, RetainTheirKeysAndValues) {
  const CFRef<CFStringRef> key = string_of("a key of its own"), value = string_of("a value of its own");
  {
    const void *keys[] = {key.get()}, *values[] = {value.get()};
    const CFRef<CFDictionaryRef> dictionary(CFDictionaryCreate(
        nullptr, keys, values, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    EXPECT_EQ(CFGetRetainCount(key.get()), 2);
    EXPECT_EQ(CFGetRetainCount(value.get()), 2);
  }
  EXPECT_EQ(CFGetRetainCount(key.get()), 1);
  EXPECT_EQ(CFGetRetainCount(value.get()), 1);
}

TEST(Equality, LooksIntoContainers) {
  const CFRef<CFDictionaryRef> dictionary = dictionary_of(20);
  EXPECT_TRUE(CFEqual(dictionary.get(), dictionary_of(20).get()));
  EXPECT_FALSE(CFEqual(dictionary.get(), dictionary_of(21).get()));
  EXPECT_TRUE(CFEqual(array_of(CFSTR("a")).get(), array_of(string_of("a").get()).get()));
  EXPECT_FALSE(CFEqual(array_of(CFSTR("a")).get(), array_of(CFSTR("b")).get()));
  EXPECT_FALSE(CFEqual(array_of(CFSTR("a")).get(), CFSTR("a")));
}

TEST(Equality, ComparesDictionariesWithoutTheirOrder) {
  const void *keys[] = {CFSTR("a"), CFSTR("b")}, *values[] = {kCFBooleanTrue, kCFBooleanFalse};
  const void *other_keys[] = {CFSTR("b"), CFSTR("a")}, *other_values[] = {kCFBooleanFalse, kCFBooleanTrue};
  const auto create = [](const void** its_keys, const void** its_values) {
    return CFRef<CFDictionaryRef>(CFDictionaryCreate(
        nullptr, its_keys, its_values, 2, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  };
  EXPECT_TRUE(CFEqual(create(keys, values).get(), create(other_keys, other_values).get()));
  EXPECT_FALSE(CFEqual(create(keys, values).get(), create(keys, other_values).get()));
}

TEST(Data, HoldsItsBytesOrPointsToThem) {
  const UInt8 bytes[] = {0, 1, 2};
  const CFRef<CFDataRef> copy(CFDataCreate(nullptr, bytes, 3));
  const CFRef<CFDataRef> pointer(CFDataCreateWithBytesNoCopy(nullptr, bytes, 3, kCFAllocatorNull));
  EXPECT_NE(CFDataGetBytePtr(copy.get()), bytes);
  EXPECT_EQ(CFDataGetBytePtr(pointer.get()), bytes);
  EXPECT_EQ(CFDataGetLength(copy.get()), 3);
  EXPECT_TRUE(CFEqual(copy.get(), pointer.get()));
}

TEST(Data, FreesBytesThatItWasGiven) {
  UInt8* const bytes = static_cast<UInt8*>(std::calloc(3, 1));
  const CFRef<CFDataRef> data(CFDataCreateWithBytesNoCopy(nullptr, bytes, 3, kCFAllocatorMalloc));
  EXPECT_EQ(CFDataGetBytePtr(data.get()), bytes);
}

}  // namespace
