#include "driver/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

Options parse(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "velkaro-scanner");
  return parse_options(static_cast<int>(arguments.size()), arguments.data());
}

TEST(ParseOptions, WithoutArgumentsNothingIsSet) {
  const Options options = parse({});
  EXPECT_FALSE(options.silent || options.log || options.debug);
  EXPECT_EQ(options.ip, nullptr);
  EXPECT_STREQ(options.login.get(), "");
}

TEST(ParseOptions, IgnoresTheProgramsOwnName) {
  const char* const arguments[] = {"/silent"};
  EXPECT_FALSE(parse_options(1, arguments).silent);
}

TEST(ParseOptions, TakesBothPrefixes) {
  for (const bool slash : {true, false}) {
    const Options options = slash ? parse({"/silent", "/log", "/debug", "/ip:1.2.3.4", "/login:me"})
                                  : parse({"-silent", "-log", "-debug", "-ip:1.2.3.4", "-login:me"});
    EXPECT_TRUE(options.silent && options.log && options.debug);
    EXPECT_STREQ(options.ip.get(), "1.2.3.4");
    EXPECT_STREQ(options.login.get(), "me");
  }
}

TEST(ParseOptions, ExtendsTheScanByAWholeWord) {
  EXPECT_TRUE(parse({"/extended"}).extended);
  EXPECT_TRUE(parse({"/log", "-extended", "/silent"}).extended);
  EXPECT_FALSE(
      parse({"/Extended", "/extended:", "--extended", "extended", "/extend", "/extendedx"}).extended);
  EXPECT_FALSE(parse({"/debug", "/login:/extended"}).extended);
}

TEST(ParseOptions, RemembersWhatWasGivenExceptTheTextOfTheLogin) {
  EXPECT_EQ(parse({}).given, "");
  EXPECT_EQ(parse({"-extended"}).given, "-extended");
  EXPECT_EQ(parse({"/silent", "-log", "/ip:1.2.3.4", "/login:a:secret", "/extended", "/debug"}).given,
            "/silent -log /ip:1.2.3.4 /login: /extended /debug");
  EXPECT_EQ(parse({"secret", "/silent", "/password:x", "-login:"}).given, "/silent -login:");
}

std::string left_out(const std::vector<const char*>& arguments) {
  const Options options = parse(arguments);
  return options.refusal.empty() ? omitted_words(options.omitted) : "refused";
}

TEST(ParseOptions, LeavesNothingOutByDefault) { EXPECT_EQ(left_out({"/silent", "/extended"}), ""); }

TEST(ParseOptions, LeavesOutWhatTheListsName) {
  EXPECT_EQ(left_out({"/without:accounts"}), "accounts");
  EXPECT_EQ(left_out({"-without:environment,processes"}), "processes, environment");
  EXPECT_EQ(left_out({"/without:values", "/log", "-without:arguments,values"}), "arguments, values");
}

TEST(ParseOptions, RemembersWhatWasLeftOutAsItWasGiven) {
  EXPECT_EQ(parse({"/without:values,accounts", "-without:arguments"}).given,
            "/without:values,accounts -without:arguments");
}

TEST(ParseOptions, RefusesAnUnknownWord) {
  for (const char* argument :
       {"/without:argument", "/without:values,", "/without:,values", "/without:values,,accounts",
        "/without:Values", "/without: values", "/without:values;accounts", "-without:valuesaccounts"}) {
    EXPECT_EQ(left_out({argument}), "refused") << argument;
  }
}

TEST(ParseOptions, RefusesAListThatIsEmptyOrMissing) {
  for (const char* argument :
       {"/without:", "-without:", "/without", "-without", "/without=values", "/withouts:values"})
    EXPECT_EQ(left_out({argument, "values"}), "refused") << argument;
}

TEST(ParseOptions, RefusesOtherSignsBeforeAList) {
  for (const char* argument : {"--without:values", "//without:values", "/-without"})
    EXPECT_EQ(left_out({argument}), "refused") << argument;
}

TEST(ParseOptions, RefusesAListInCapitals) {
  for (const char* argument : {"/Without:values", "-WITHOUT:values", "/withouT", "--Without=values"})
    EXPECT_EQ(left_out({argument}), "refused") << argument;
  EXPECT_EQ(left_out({"/w\tthout:values", "/7ithout:values"}), "");
}

TEST(ParseOptions, RefusesSignsThatEditorsAndOtherSystemsHaveBeforeAList) {
  for (const char* argument : {"\\without:values", "\u2013without:values", "\u2014without:values"})
    EXPECT_EQ(left_out({argument}), "refused") << argument;
}

TEST(ParseOptions, IgnoresOtherOptionsInCapitals) {
  const Options options = parse({"/Silent", "-LOG", "/Ip:10.0.0.1", "/EXTENDED", "\\silent"});
  EXPECT_FALSE(options.silent || options.log || options.extended || options.ip);
  EXPECT_EQ(options.refusal, "");
}

TEST(ParseOptions, IgnoresWithoutElsewhere) {
  EXPECT_EQ(
      left_out({"without:values", "/login:/without:x", "/with:values", "/Withou", "//", "/not-without:x"}),
      "");
}

TEST(ParseOptions, RefusesToLeaveOutPeopleOfAScanThatIsNotExtended) {
  EXPECT_EQ(left_out({"/without:people"}), "refused");
  EXPECT_EQ(left_out({"/without:people", "/extended"}), "people");
  EXPECT_EQ(left_out({"-extended", "-without:accounts,people"}), "accounts, people");
}

TEST(ParseOptions, NamesTheFirstReasonToRefuseInOneLine) {
  EXPECT_EQ(parse({"/without:a\nb\x7F", "/without:c", "/without:people"}).refusal,
            "/without:a?b?: can leave out processes, arguments, environment, values, accounts and, with "
            "/extended, people, with commas between");
  EXPECT_EQ(parse({"/without:people"}).refusal,
            "/without:people: needs /extended; an ordinary scan has people in its accounts, processes and "
            "environment");
}

TEST(ParseOptions, DistinguishesAnEmptyAddressFromAMissingOne) { EXPECT_STREQ(parse({"-ip:"}).ip.get(), ""); }

TEST(ParseOptions, TakesALoginFromItsFirstColonOn) {
  EXPECT_STREQ(parse({"/login:"}).login.get(), "");
  EXPECT_STREQ(parse({"/login:a:b"}).login.get(), "a:b");
}

TEST(ParseOptions, TakesTheLastOfRepeatedValues) {
  EXPECT_STREQ(parse({"/ip:1", "/log", "-ip:2"}).ip.get(), "2");
  EXPECT_STREQ(parse({"-login:a", "/login:b"}).login.get(), "b");
}

TEST(ParseOptions, KeepsLogAndLoginApart) {
  EXPECT_FALSE(parse({"/login:log"}).log);
  EXPECT_STREQ(parse({"/log"}).login.get(), "");
}

TEST(ParseOptions, RecognisesAQuestionAboutTheProgramByItsWholeWord) {
  for (const char* word : {"/help", "/?", "--help", "-h"}) {
    EXPECT_TRUE(parse({"/log", word, "-debug"}).help) << word;
    EXPECT_FALSE(parse({word}).version) << word;
  }
  for (const char* word : {"/version", "--version"}) {
    EXPECT_TRUE(parse({"/log", word, "-debug"}).version) << word;
    EXPECT_FALSE(parse({word}).help) << word;
  }
  const Options neither = parse({"/login:--help", "-ip:--version", "-help", "-version", "/h", "-?", "?",
                                 "--help ", "/helpless", "--versions", "/HELP", "--Version"});
  EXPECT_FALSE(neither.help || neither.version);
  EXPECT_STREQ(neither.login.get(), "--help");
  EXPECT_STREQ(neither.ip.get(), "--version");
}

TEST(ParseOptions, IgnoresWhatItDoesNotKnow) {
  const Options options = parse({"", "/", "-", ":", "/login", "/log:", "/Silent", "/SILENT", "--silent",
                                 "silent", "/silent ", "/ip", "/ip=1", "/debug:", "/lo"});
  EXPECT_FALSE(options.silent || options.log || options.debug);
  EXPECT_EQ(options.ip, nullptr);
  EXPECT_STREQ(options.login.get(), "");
}

}  // namespace
