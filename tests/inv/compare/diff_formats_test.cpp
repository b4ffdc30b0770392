#include "inv/compare/diff_formats.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "inv/maker.h"

namespace {

struct Compared {
  std::unique_ptr<inv::Inventory> old_inventory, new_inventory;
  inv::ChangeSentences sentences;
};

Compared compared(const std::string& old_lines, const std::string& new_lines) {
  const auto open = [](const std::string& lines) {
    return maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n"));
  };
  auto old_inventory = open(old_lines);
  auto new_inventory = open(new_lines);
  inv::ChangeSentences sentences(inv::diff(*old_inventory, *new_inventory, inv::Facts::lasting));
  return {std::move(old_inventory), std::move(new_inventory), std::move(sentences)};
}

std::string text_of(const Compared& both, const inv::Terminal& terminal) {
  return maker::written(
      [&](const inv::TextSink& sink) { inv::changes_text(both.sentences, terminal, sink); });
}

std::string json_of(const Compared& both) {
  return maker::written([&](const inv::TextSink& sink) { inv::changes_json(both.sentences, sink); });
}

std::string markdown_of(const Compared& both) {
  return maker::written([&](const inv::TextSink& sink) {
    inv::changes_markdown(*both.old_inventory, *both.new_inventory, both.sentences, sink);
  });
}

constexpr char kTwoApplications[] =
    "+Software=\n*Soft:1=Safari\nversion=5\nlocation=/Applications/Safari.app\n"
    "*Soft:2=Mail\nversion=4\nlocation=/Applications/Mail.app\n-\n";
constexpr char kNewMail[] = "+Software=\n*Soft:1=Mail\nversion=5\nlocation=/Applications/Mail.app\n-\n";

TEST(DiffFormats, TextHasASentenceALine) {
  const Compared both = compared(kTwoApplications, kNewMail);
  EXPECT_EQ(text_of(both, inv::Terminal()),
            "Application removed: Safari 5 (/Applications/Safari.app)\nMail 4 to 5\n");
}

TEST(DiffFormats, TextIsColouredByWhatHappened) {
  inv::Terminal terminal;
  terminal.colour = true;
  const Compared both = compared(kTwoApplications, kNewMail);
  const std::string text = text_of(both, terminal);
  EXPECT_EQ(text.substr(0, 5), "\x1B[31m");
  EXPECT_NE(text.find("\n\x1B[33mMail 4 to 5\x1B[0m\n"), std::string::npos);
  EXPECT_EQ(text_of(compared(kNewMail, kTwoApplications), terminal).find("\x1B[31m"), std::string::npos);
}

TEST(DiffFormats, JsonHasEveryChangeWithItsSentenceAndMembers) {
  const Compared both = compared(kTwoApplications, kNewMail);
  EXPECT_EQ(nlohmann::json::parse(json_of(both)), nlohmann::json::parse(R"json([
    {"change": "removed", "path": "/Software/Soft:1", "old_path": "/Software/Soft:1",
     "identity": "/Applications/Safari.app", "label": "Safari", "name": "", "old": "Safari", "new": "",
     "thing": "Application", "sentence": "Application removed: Safari 5 (/Applications/Safari.app)",
     "old_members": {"version": "5", "location": "/Applications/Safari.app"}, "new_members": {}
},
    {"change": "changed", "path": "/Software/Soft:1/version", "old_path": "/Software/Soft:2/version",
     "identity": "/Applications/Mail.app", "label": "Mail", "name": "version", "old": "4", "new": "5",
     "thing": "Application", "sentence": "Mail 4 to 5", "old_members": {}, "new_members": {}}])json"));
}

TEST(DiffFormats, MembersOfPartsHaveTheirNamesBeforeThem) {
  const Compared both = compared("", "+Video=\n+Monitors=\n+Monitor:1=\nid=X\n*h-freq=\nmax=80\n-\n-\n-\n");
  const auto list = nlohmann::json::parse(json_of(both));
  EXPECT_EQ(list.at(0).at("sentence"), "Display added");
  const Compared inner =
      compared("+Later=\n*y=\nz=1\n-\n", "+Later=\n*y=\nz=1\n+x=\nid=X\n*h-freq=\nmax=80\n-\n-\n");
  EXPECT_EQ(nlohmann::json::parse(json_of(inner)).at(0).at("new_members"),
            nlohmann::json::parse(R"({"id": "X", "h-freq/max": "80"})"));
}

TEST(DiffFormats, AListThatCameHasTheSentencesOfAllInIt) {
  const Compared both =
      compared("", "+Peripherals=\n+Printers=\n*Printer:1=Laser\nuri=x\n*Printer:2=Ink\nuri=y\n-\n-\n");
  const auto list = nlohmann::json::parse(json_of(both));
  EXPECT_EQ(list.at(0).at("sentence"), "Printer added: Laser (x); Printer added: Ink (y)");
  EXPECT_EQ(list.at(0).at("thing"), "Printer");
}

TEST(DiffFormats, WhatFollowsAnotherFactHasNoSentence) {
  const Compared both = compared("+Memory=\n*Memory-slot:1=\nused=1\n*General-info=\nphysical-memory=2\n-\n",
                                 "+Memory=\n*Memory-slot:1=\nused=0\n*General-info=\nphysical-memory=1\n-\n");
  const auto list = nlohmann::json::parse(json_of(both));
  EXPECT_EQ(list.at(0).at("sentence"), "Memory removed: slot 1");
  EXPECT_EQ(list.at(1).at("sentence"), "");
  EXPECT_EQ(list.at(1).at("old"), "2");
}

TEST(DiffFormats, MarkdownIsAHeadingAndAList) {
  const Compared both = compared("timestamp=20120118153045.000000+120\nhostname=A\n",
                                 "timestamp=20120119153045.000000+120\nhostname=B_*\n");
  EXPECT_EQ(
      markdown_of(both),
      "## What changed on B\\_\\*\n\nFrom 2012-01-18 15:30:45 +02:00 to 2012-01-19 15:30:45 +02:00\n\n"
      "**Note:** these are two different machines: A and B\\_\\*\n\n- Snapshot: hostname A to B\\_\\*\n");
}

TEST(DiffFormats, MarkdownSaysWhenNothingChanged) {
  const Compared both = compared("hostname=A\n", "hostname=A\n");
  const std::string text = markdown_of(both);
  EXPECT_NE(text.find("\n\nNothing.\n"), std::string::npos) << text;
  EXPECT_EQ(text.find("**Note:**"), std::string::npos) << text;
}

TEST(DiffFormats, NothingFromAFileIsTakenForMarkup) {
  const Compared both = compared("+Later=\n*x=\ny=1\n-\n",
                                 "+Later=\n*x=\ny=[a](http://b) <b> @everyone `c` & | ~ \\\\ #1\n-\n");
  const std::string text = markdown_of(both);
  EXPECT_NE(text.find("y 1 to \\[a\\](http\\://b) &lt;b> &#64;everyone \\`c\\` &amp; \\| \\~ "),
            std::string::npos)
      << text;
}

TEST(DiffFormats, MarkdownOfANameThatLooksLikeAList) {
  const Compared both = compared("+Software=\n*Soft:1=# X\nversion=1\nlocation=/X\n-\n",
                                 "+Software=\n*Soft:1=# X\nversion=2\nlocation=/X\n-\n");
  const std::string text = markdown_of(both);
  EXPECT_NE(text.find("\n- \\# X 1 to 2\n"), std::string::npos) << text;
}

TEST(DiffFormats, WarnsOfTwoMachines) {
  const Compared both = compared("hostname=A\n", "hostname=B\n");
  EXPECT_EQ(inv::machine_warning(*both.old_inventory, *both.new_inventory),
            "these are two different machines: A and B");
  EXPECT_EQ(inv::machine_warning(*both.old_inventory, *both.old_inventory), "");
}

}  // namespace
