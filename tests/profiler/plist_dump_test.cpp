#include "profiler/plist_dump.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "profiler/plist_access.h"
#include "profiler/plist_helpers.h"

namespace {

// The whole tree as text, of a list of such elements.
std::string dump(CFArrayRef list) {
  InventoryTree tree(1, "Macintosh");
  dump_profiler(list, tree);
  std::string text(tree.top().text_size(), '\0');
  text.resize(tree.top().write_text(text.data(), 0));
  return text;
}

std::string dump(const std::string& elements) {
  const CFRef<CFArrayRef> list = parse_elements(elements);
  EXPECT_TRUE(list) << elements;
  return dump(list.get());
}

std::string key(const std::string& name, const std::string& value) {
  return "<key>" + name + "</key>" + value;
}

// What is below a data type with these keys and values, and below its item.
std::string dump_type(const std::string& keys) {
  return dump("<dict>" + key("_dataType", "<string>D</string>") + keys + "</dict>");
}

std::string dump_item(const std::string& keys) {
  const std::string text = dump_type(key("_items", "<array><dict>" + keys + "</dict></array>"));
  const std::string before = "+Macintosh=\n+D=\n+_items=\n";
  const std::string after = "-\n-\n-\n";
  EXPECT_EQ(text.substr(0, before.size()), before);
  return text.substr(before.size(), text.size() - before.size() - after.size());
}

TEST(DumpProfiler, NamesTheItemsOfADataTypeByTheirIndex) {
  const std::string item = "<dict><key>_name</key><string>N</string></dict>";
  EXPECT_EQ(dump_type(key("_items", "<array>" + item + item + item + "</array>")),
            "+Macintosh=\n+D=\n+_items=\n*item0=\n_name=N\n*item1=\n_name=N\n*item2=\n_name=N\n-\n-\n-\n");
}

TEST(DumpProfiler, KeepsDataTypesInTheirOrderAndMergesRepeatedOnes) {
  const auto type = [](const std::string& name, const std::string& value) {
    return "<dict>" + key("_dataType", "<string>" + name + "</string>") +
           key("k" + value, "<string>" + value + "</string>") + "</dict>";
  };
  EXPECT_EQ(dump(type("B", "1") + type("A", "2") + type("B", "3")),
            "+Macintosh=\n*B=\nk1=1\nk3=3\n*A=\nk2=2\n-\n");
}

TEST(DumpProfiler, LeavesOutFontsAndLogs) {
  for (const char* type : {"SPFontsDataType", "SPLogsDataType"}) {
    EXPECT_EQ(dump("<dict>" + key("_dataType", std::string("<string>") + type + "</string>") +
                   key("k", "<string>v</string>") + "</dict>"),
              "*Macintosh=\n");
  }
}

TEST(DumpProfiler, LeavesOutWhatDescribesTheProfilersRunAtTheTopOnly) {
  const std::string keys = key("_detailLevel", "<integer>1</integer>") +
                           key("_properties", "<dict><key>p</key><string>q</string></dict>");
  EXPECT_EQ(dump_type(keys + key("_dataTypes", "<string>kept</string>")),
            "+Macintosh=\n*D=\n_dataTypes=kept\n-\n");
  EXPECT_EQ(dump_item(keys), "+item0=\n_detailLevel=1\n*_properties=\np=q\n-\n");
}

TEST(DumpProfiler, SkipsWhatIsNotADataType) {
  EXPECT_EQ(dump("<string>s</string><array/><dict><key>_items</key><array/></dict><dict><key>_dataType</"
                 "key><integer>1</integer></dict>"),
            "*Macintosh=\n");
  EXPECT_EQ(dump(static_cast<CFArrayRef>(nullptr)), "*Macintosh=\n");
}

TEST(DumpProfiler, WritesDictionariesAndArraysAsTags) {
  EXPECT_EQ(dump_item(key("d", "<dict><key>k</key><string>v</string></dict>")), "+item0=\n*d=\nk=v\n-\n");
  EXPECT_EQ(dump_item(key("a", "<array><string>a</string><string>b</string></array>")),
            "+item0=\n*a=\nitem0=a\nitem1=b\n-\n");
  EXPECT_EQ(dump_item(key("a", "<array><array><integer>7</integer></array></array>")),
            "+item0=\n+a=\n*item0=\nitem0=7\n-\n-\n");
}

TEST(DumpProfiler, LeavesNoTraceOfBooleansDataAndEmptyContainers) {
  EXPECT_EQ(dump_type(key("t", "<true/>") + key("f", "<false/>") + key("d", "<data>AAEC</data>") +
                      key("e", "<dict/>") + key("a", "<array/>") +
                      key("n", "<dict><key>x</key><array><true/></array></dict>")),
            "*Macintosh=\n");
}

TEST(DumpProfiler, CountsSkippedElementsInTheIndex) {
  EXPECT_EQ(dump_item(key("a", "<array><true/><string>b</string></array>")), "+item0=\n*a=\nitem1=b\n-\n");
}

TEST(DumpProfiler, WritesStringsThroughTheLineEndAndBlankRule) {
  EXPECT_EQ(dump_item(key("s", "<string> a\nb </string>")), "*item0=\ns=a\rb\n");
  EXPECT_EQ(dump_item(key("s", "<string></string>")), "*item0=\ns=\n");
  EXPECT_EQ(dump_item(key("s", "<string>Zo\xC3\xAB \xE2\x80\x99</string>")),
            "*item0=\ns=Zo\xC3\xAB \xE2\x80\x99\n");
}

TEST(DumpProfiler, WritesNumbers) {
  EXPECT_EQ(dump_item(key("i", "<integer>-5</integer>")), "*item0=\ni=-5\n");
  EXPECT_EQ(dump_item(key("i", "<integer>9223372036854775807</integer>")),
            "*item0=\ni=9223372036854775807\n");
  EXPECT_EQ(dump_item(key("r", "<real>3.14159</real>")), "*item0=\nr=3.14\n");
}

TEST(DumpProfiler, WritesDatesInTheCimForm) {
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(dump_item(key("d", "<date>2012-01-18T15:30:45Z</date>")), "*item0=\nd=20120118153045.000000+0\n");
}

TEST(DumpProfiler, WritesEachDateOfARow) {
  setenv("TZ", "UTC", 1);
  tzset();
  const std::string first = "<date>2012-01-18T15:30:45Z</date>", second = "<date>2012-01-18T15:30:46Z</date>";
  EXPECT_EQ(dump_item(key("a", first) + key("b", first) + key("c", second) + key("d", first)),
            "*item0=\na=20120118153045.000000+0\nb=20120118153045.000000+0\n"
            "c=20120118153046.000000+0\nd=20120118153045.000000+0\n");
}

const Value* value_of_type_level_number(InventoryTree& tree, const std::string& number) {
  const CFRef<CFArrayRef> list =
      parse_elements("<dict>" + key("_dataType", "<string>D</string>") + key("n", number) +
                     key("_items", "<array><dict>" + key("n", number) + "</dict></array>") + "</dict>");
  dump_profiler(list.get(), tree);
  return &tree.top().find_child("D")->find_attribute("n")->value();
}

TEST(DumpProfiler, MakesWideIntegersTextDirectlyUnderADataTypeOnly) {
  InventoryTree tree(1, "Macintosh");
  const Value* value = value_of_type_level_number(tree, "<integer>5000000000</integer>");
  EXPECT_EQ(value->kind(), Value::Kind::text);
  EXPECT_STREQ(value->text(), "5000000000");
  const Tag* item = tree.top().find_child("D")->find_child("_items")->find_child("item0");
  EXPECT_EQ(item->find_attribute("n")->value().kind(), Value::Kind::int64);
  EXPECT_EQ(item->find_attribute("n")->value().int64(), 5000000000);
}

// CoreFoundation makes a zero a narrow number.
TEST(DumpProfiler, KeepsZerosIntegersAtBothLevels) {
  InventoryTree tree(1, "Macintosh");
  const Value* value = value_of_type_level_number(tree, "<integer>0</integer>");
  EXPECT_EQ(value->kind(), Value::Kind::int64);
  EXPECT_EQ(value->int64(), 0);
  const Tag* item = tree.top().find_child("D")->find_child("_items")->find_child("item0");
  EXPECT_EQ(item->find_attribute("n")->value().kind(), Value::Kind::int64);
  EXPECT_EQ(item->find_attribute("n")->value().int64(), 0);
}

TEST(DumpProfiler, KeepsRealNumbersRealAtBothLevels) {
  InventoryTree tree(1, "Macintosh");
  EXPECT_EQ(value_of_type_level_number(tree, "<real>1.5</real>")->kind(), Value::Kind::real);
}

// A data type whose item holds one number made in memory.
Value dump_number(CFNumberType type, const void* number) {
  const CFRef<CFNumberRef> object(CFNumberCreate(nullptr, type, number));
  const void* item_keys[] = {CFSTR("n")};
  const void* item_values[] = {object.get()};
  const CFRef<CFDictionaryRef> item(CFDictionaryCreate(
      nullptr, item_keys, item_values, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  const void* keys[] = {CFSTR("_dataType"), CFSTR("item")};
  const void* values[] = {CFSTR("D"), item.get()};
  const CFRef<CFDictionaryRef> data_type(CFDictionaryCreate(
      nullptr, keys, values, 2, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  const void* elements[] = {data_type.get()};
  const CFRef<CFArrayRef> list(CFArrayCreate(nullptr, elements, 1, &kCFTypeArrayCallBacks));
  InventoryTree tree(1, "Macintosh");
  dump_profiler(list.get(), tree);
  return tree.top().find_child("D")->find_child("item")->find_attribute("n")->value();
}

TEST(DumpProfiler, ExtendsNarrowIntegersWithZeros) {
  const int32_t number = -2;
  EXPECT_EQ(dump_number(kCFNumberSInt32Type, &number).int64(), 4294967294);
  const int16_t smaller = -2;
  EXPECT_EQ(dump_number(kCFNumberSInt16Type, &smaller).int64(), 65534);
  const int8_t small = -2;
  EXPECT_EQ(dump_number(kCFNumberSInt8Type, &small).int64(), 254);
}

// As Macs up to 10.6 read them from a list.
TEST(DumpProfiler, TreatsSmallNumbersOf32BitsAsUnsigned) {
  const int32_t minus_one = -1;
  EXPECT_EQ(dump_number(kCFNumberSInt32Type, &minus_one).int64(), 4294967295);
  for (int32_t number = 0; number <= 12; ++number) {
    const Value value = dump_number(kCFNumberSInt32Type, &number);
    EXPECT_EQ(value.kind(), Value::Kind::int64);
    EXPECT_EQ(value.int64(), number);
  }
}

TEST(DumpProfiler, WidensFloats) {
  const float number = 0.1f;
  const Value value = dump_number(kCFNumberFloat32Type, &number);
  EXPECT_EQ(value.kind(), Value::Kind::real);
  EXPECT_EQ(value.real(), static_cast<double>(0.1f));
}

TEST(DumpProfiler, ListsFirewallRulesByNameAndState) {
  const std::string rules = "<dict>" + key("com.apple.a", "<string>x</string>") + key("flag", "<true/>") +
                            key("File Sharing", "<string>y</string>") + "</dict>";
  for (const char* list : {"spfirewall_applications", "spfirewall_services"}) {
    EXPECT_EQ(dump_item(key(list, rules)), std::string("+item0=\n+") + list +
                                               "=\n*item0=\n_name=com.apple.a\nvalue=x\n"
                                               "*item2=\n_name=File Sharing\nvalue=y\n-\n-\n");
  }
  EXPECT_EQ(dump_item(key("spfirewall_services", "<string>none</string>")),
            "*item0=\nspfirewall_services=none\n");
}

TEST(DumpProfiler, TreatsAFirewallListDirectlyUnderADataTypeAsAnyDictionary) {
  for (const std::string list : {"spfirewall_applications", "spfirewall_services"}) {
    EXPECT_EQ(dump_type(key(list, "<dict>" + key("com.apple.a", "<string>x</string>") + "</dict>")),
              "+Macintosh=\n+D=\n*" + list + "=\ncom.apple.a=x\n-\n-\n");
  }
}

TEST(DumpProfiler, KnowsAFirewallListByItsKeyAsTheProfilerWritesIt) {
  EXPECT_EQ(dump_item(key("spfirewall services", "<dict>" + key("a", "<string>x</string>") + "</dict>")),
            "+item0=\n*spfirewall_services=\n~key=spfirewall services\na=x\n-\n");
}

TEST(DumpProfiler, KeepsAKeyThatCouldNotBeTheTagsName) {
  EXPECT_EQ(dump_item(key("First\u2019s Mouse", "<dict>" + key("k", "<string>v</string>") + "</dict>")),
            "+item0=\n*First_s_Mouse=\n~key=First\u2019s Mouse\nk=v\n-\n");
  EXPECT_EQ(dump_item(key("Mouse", "<dict>" + key("k", "<string>v</string>") + "</dict>")),
            "+item0=\n*Mouse=\nk=v\n-\n");
  EXPECT_EQ(dump_type(key("a b", "<array><string>1</string></array>")),
            "+Macintosh=\n+D=\n*a_b=\n~key=a b\nitem0=1\n-\n-\n");
}

TEST(DumpProfiler, MakesNoTagForAKeyThatLeavesNoTrace) {
  EXPECT_EQ(dump_item(key("a b", "<dict/>") + key("c d", "<array><true/></array>") +
                      key("k", "<string>v</string>")),
            "*item0=\nk=v\n");
}

TEST(DumpProfiler, JoinsKeysThatBecomeAlike) {
  EXPECT_EQ(dump_item(key("a b", "<string>1</string>") + key("a_b", "<string>2</string>")),
            "*item0=\na_b=2\n");
  EXPECT_EQ(dump_item(key("a b", "<array><string>1</string></array>") +
                      key("a_b", "<array><string>2</string></array>")),
            "+item0=\n*a_b=\n~key=a b\nitem0=2\n-\n");
}

// An empty segment of a path is a step into the first child, where there is one.
TEST(DumpProfiler, WritesBelowAnEmptyKeyIntoTheFirstChild) {
  const std::string inner = "<dict>" + key("k", "<string>v</string>") + "</dict>";
  EXPECT_EQ(dump_type(key("", inner)), "+Macintosh=\n-\n") << "no child to step into, so nothing is made";
  EXPECT_EQ(dump_item(key("a", "<dict>" + key("x", "<string>y</string>") + "</dict>") + key("", inner)),
            "+item0=\n*a=\nx=y\nk=v\n-\n");
  EXPECT_EQ(dump_item(key("", "<string>v</string>")), "*item0=\n=v\n");
}

TEST(DumpProfiler, TakesADataTypesNameAsAPath) {
  EXPECT_EQ(
      dump("<dict>" + key("_dataType", "<string>A/B</string>") + key("k", "<string>v</string>") + "</dict>"),
      "+Macintosh=\n+A=\n*B=\nk=v\n-\n-\n");
  EXPECT_EQ(
      dump("<dict>" + key("_dataType", "<string></string>") + key("k", "<string>v</string>") + "</dict>"),
      "*Macintosh=\n");
}

TEST(DumpProfiler, StopsAtTheDepthOfAPropertyList) {
  CFRef<CFArrayRef> nested(CFArrayCreate(nullptr, nullptr, 0, &kCFTypeArrayCallBacks));
  for (int i = 0; i < 100000; ++i) {
    const void* elements[] = {nested.get(), CFSTR("s")};
    nested = CFRef<CFArrayRef>(CFArrayCreate(nullptr, elements, 2, &kCFTypeArrayCallBacks));
  }
  const void* keys[] = {CFSTR("_dataType"), CFSTR("deep")};
  const void* values[] = {CFSTR("D"), nested.get()};
  const CFRef<CFDictionaryRef> data_type(CFDictionaryCreate(
      nullptr, keys, values, 2, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  const void* elements[] = {data_type.get()};
  const CFRef<CFArrayRef> list(CFArrayCreate(nullptr, elements, 1, &kCFTypeArrayCallBacks));
  const std::string text = dump(list.get());
  size_t strings = 0;
  for (size_t at = text.find("item1=s\n"); at != std::string::npos; at = text.find("item1=s\n", at + 1))
    ++strings;
  EXPECT_EQ(strings, 512u);
}

TEST(DumpProfiler, MergesNamesThatBecomeOneAmongMany) {
  std::string keys, expected;
  for (int i = 0; i < 100; ++i) {
    keys += key("k " + std::to_string(i), "<string>first</string>") +
            key("k_" + std::to_string(i), "<string>later</string>");
    expected += "k_" + std::to_string(i) + "=later\n";
  }
  EXPECT_EQ(dump_item(keys), "*item0=\n" + expected);
  EXPECT_EQ(dump_type(keys), "+Macintosh=\n*D=\n" + expected + "-\n");
}

// If every name were compared with all before it, this would take more than ten minutes.
TEST(DumpProfiler, WritesManyKeysInLinearTime) {
  constexpr int kCount = 400000;
  std::string keys;
  for (int i = 0; i < kCount; ++i) {
    keys += key("k" + std::to_string(i), "<string>v</string>") +
            key("d" + std::to_string(i), "<dict><key>k</key><string>v</string></dict>");
  }
  const CFRef<CFArrayRef> list =
      parse_elements("<dict>" + key("_dataType", "<string>D</string>") + keys + "</dict>");
  InventoryTree tree(1, "Macintosh");
  dump_profiler(list.get(), tree);
  EXPECT_EQ(tree.top().child_at(0)->attributes().size(), size_t{kCount});
  EXPECT_EQ(tree.top().child_at(0)->children().size(), size_t{kCount});
}

TEST(SanitizeKey, ReplacesWhatMeansSomethingInPathsAndQueries) {
  EXPECT_EQ(sanitize_key("Model Name, rev/2"), "Model_Name__rev_2");
  EXPECT_EQ(sanitize_key("plain-key_1"), "plain-key_1");
  EXPECT_EQ(sanitize_key("' /,"), "____");
  EXPECT_EQ(sanitize_key("a\u2018b\u2019c\u201Bd"), "a_b_c_d");
  EXPECT_EQ(sanitize_key("a\u201Ab\u201Cc\u00E9"), "a\u201Ab\u201Cc\u00E9");
  EXPECT_EQ(sanitize_key("\u2019\u2019 \u00E9\u2019"), "___\u00E9_");
  EXPECT_EQ(sanitize_key("a\xE2\x80"), "a\xE2\x80");
  EXPECT_EQ(sanitize_key(""), "");
}

TEST(LeavesNoTrace, IsTrueOfWhatTheTreeDoesNotShow) {
  const auto no_trace = [](const std::string& element) {
    return leaves_no_trace(CFArrayGetValueAtIndex(parse_elements(element).get(), 0));
  };
  for (const char* element :
       {"<true/>", "<data>AAEC</data>", "<array/>", "<dict/>", "<array><dict/><false/></array>",
        "<dict><key>k</key><array><true/></array></dict>"})
    EXPECT_TRUE(no_trace(element)) << element;
  for (const char* element : {"<string></string>", "<integer>0</integer>", "<real>0</real>",
                              "<date>2012-01-18T15:30:45Z</date>", "<array><true/><string></string></array>",
                              "<dict><key>k</key><array><integer>0</integer></array></dict>"})
    EXPECT_FALSE(no_trace(element)) << element;
}

TEST(FindHardwareSerial, IsTheFirstHardwareItems) {
  const auto type = [](const std::string& name, const std::string& serial) {
    return "<dict><key>_dataType</key><string>" + name +
           "</string><key>_items</key><array><dict><key>serial_number</key><string>" + serial +
           "</string></dict></array></dict>";
  };
  const auto serial = [](const std::string& elements) {
    const Text text = find_hardware_serial(parse_elements(elements).get());
    return std::string(text ? text.get() : "none");
  };
  EXPECT_EQ(serial(type("A", "1") + type("SPHardwareDataType", "2") + type("SPHardwareDataType", "3") +
                   type("B", "4")),
            "2");
  EXPECT_EQ(serial(type("A", "1") + type("B", "4")), "4") << "the last data type stands in for a missing one";
  EXPECT_EQ(serial("<dict><key>_dataType</key><string>SPHardwareDataType</string></dict>"), "none");
  EXPECT_EQ(serial(""), "none");
  EXPECT_EQ(find_hardware_serial(nullptr), nullptr);
}

TEST(CfstringToText, KeepsEveryByte) {
  CFIndex length = -1;
  EXPECT_STREQ(cfstring_to_text(CFSTR(""), &length).get(), "");
  EXPECT_EQ(length, 0);
  EXPECT_STREQ(cfstring_to_text(CFSTR("\xF0\x9F\x98\x80\xF0\x9F\x98\x80"), &length).get(),
               "\xF0\x9F\x98\x80\xF0\x9F\x98\x80");
  EXPECT_EQ(length, 8);
  EXPECT_STREQ(cfstring_to_text(CFSTR("\u30AB\u30AB"), &length).get(), "\u30AB\u30AB");
  EXPECT_EQ(length, 6);
}

TEST(CFStringText, IsTheTextThatACopyWouldBe) {
  for (const CFStringRef string : {CFSTR(""), CFSTR("plain"), CFSTR("caf\u00E9"), CFSTR("\xF0\x9F\x98\x80")})
    EXPECT_STREQ(CFStringText(string).get(), cfstring_to_text(string).get());
}

}  // namespace
