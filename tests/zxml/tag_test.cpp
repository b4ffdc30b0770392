#include "zxml/tag.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "zxml/layouts.h"
#include "zxml/outline.h"
#include "zxml/zXML.h"

namespace {

const Value kOne(int64_t{1});

// A tree with one of everything a path can meet: two levels, a leaf, and a name that occurs twice.
InventoryTree furnished() {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/a/b/old", Value(int64_t{0}));
  tree.set_attribute("/c/old", Value(int64_t{0}));
  tree.top().add_child(std::make_unique<Tag>("a"));
  return tree;
}

TEST(Furnished, IsTheTreeThatThePathTablesStartFrom) {
  EXPECT_EQ(outline(furnished().root()), ".{Top+{a+{b*(old=0)} c*(old=0) a*}}");
}

struct PathCase {
  const char* name;
  const char* path;
  const char* in_fresh_tree;
  const char* in_furnished_tree;
};

void set_attribute(InventoryTree& tree, const char* path) { tree.set_attribute(path, kOne); }
void set_tag_value(InventoryTree& tree, const char* path) { tree.set_tag_value(path, kOne); }
void annotate_attribute(InventoryTree& tree, const char* path) { tree.annotate_attribute(path, "k", "t"); }
void annotate_tag(InventoryTree& tree, const char* path) { tree.root().annotate_tag(path, "k", "t"); }

using Write = void (*)(InventoryTree& tree, const char* path);

struct PathTest {
  Write write;
  PathCase path;
};

template <size_t count>
std::vector<PathTest> table_for(Write write, const PathCase (&cases)[count]) {
  std::vector<PathTest> tests;
  for (const PathCase& path : cases) tests.push_back({write, path});
  return tests;
}

class PathWrite : public testing::TestWithParam<PathTest> {
 protected:
  static std::string written(InventoryTree tree) {
    GetParam().write(tree, GetParam().path.path);
    return outline(tree.root());
  }
};

TEST_P(PathWrite, InAFreshTree) {
  EXPECT_EQ(written(InventoryTree(1, "Top")), GetParam().path.in_fresh_tree);
}

TEST_P(PathWrite, InAFurnishedTree) { EXPECT_EQ(written(furnished()), GetParam().path.in_furnished_tree); }

std::string case_name(const testing::TestParamInfo<PathTest>& test) { return test.param.path.name; }

constexpr PathCase kAttributePaths[] = {
    {"OfTheTop", "/x", ".{Top*(x=1)}", ".{Top+(x=1){a+{b*(old=0)} c*(old=0) a*}}"},
    {"OfAChild", "/a/x", ".{Top+{a*(x=1)}}", ".{Top+{a+(x=1){b*(old=0)} c*(old=0) a*}}"},
    {"OfAGrandchild", "/a/b/x", ".{Top+{a+{b*(x=1)}}}", ".{Top+{a+{b*(old=0, x=1)} c*(old=0) a*}}"},
    {"BelowALeaf", "/c/d/x", ".{Top+{c+{d*(x=1)}}}", ".{Top+{a+{b*(old=0)} c+(old=0){d*(x=1)} a*}}"},
    {"Existing", "/c/old", ".{Top+{c*(old=1)}}", ".{Top+{a+{b*(old=0)} c*(old=1) a*}}"},
    {"NumberedElement", "/P/P:3/x", ".{Top+{P+{P:3*(x=1)}}}",
     ".{Top+{a+{b*(old=0)} c*(old=0) a* P+{P:3*(x=1)}}}"},
    {"AnotherCase", "/A/x", ".{Top+{A*(x=1)}}", ".{Top+{a+{b*(old=0)} c*(old=0) a* A*(x=1)}}"},
    {"LongerName", "/aa/x", ".{Top+{aa*(x=1)}}", ".{Top+{a+{b*(old=0)} c*(old=0) a* aa*(x=1)}}"},
    {"NameWithABlank", "/a /x", ".{Top+{a *(x=1)}}", ".{Top+{a+{b*(old=0)} c*(old=0) a* a *(x=1)}}"},
    {"WithoutALeadingSlash", "x", ".(x=1){Top*}", ".(x=1){Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"OfATagBesideTheTop", "a/x", ".{Top* a*(x=1)}", ".{Top+{a+{b*(old=0)} c*(old=0) a*} a*(x=1)}"},
    {"OfTheTopByItsName", "Top/x", ".{Top*(x=1)}", ".{Top+(x=1){a+{b*(old=0)} c*(old=0) a*}}"},
    {"EmptyPath", "", ".(=1){Top*}", ".(=1){Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"OnlyASlash", "/", ".{Top*(=1)}", ".{Top+(=1){a+{b*(old=0)} c*(old=0) a*}}"},
    {"TrailingSlash", "/a/", ".{Top+{a*(=1)}}", ".{Top+{a+(=1){b*(old=0)} c*(old=0) a*}}"},
    {"FirstChildOfTheTop", "//x", ".{Top*}", ".{Top+{a+(x=1){b*(old=0)} c*(old=0) a*}}"},
    {"FirstChildOfTheFirstChild", "///x", ".{Top*}", ".{Top+{a+{b*(old=0, x=1)} c*(old=0) a*}}"},
    {"OneFirstChildTooMany", "////x", ".{Top*}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"FirstChildOfAChild", "/a//x", ".{Top+}", ".{Top+{a+{b*(old=0, x=1)} c*(old=0) a*}}"},
    {"FirstChildOfALeaf", "/c//x", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"FirstChildOfAMissingTag", "/n/m//x", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"NameBelowAFirstChild", "//b/x", ".{Top*}", ".{Top+{a+{b*(old=0, x=1)} c*(old=0) a*}}"},
    {"DoubledTrailingSlash", "/a//", ".{Top+}", ".{Top+{a+{b*(old=0, =1)} c*(old=0) a*}}"},
};

INSTANTIATE_TEST_SUITE_P(SetAttribute, PathWrite,
                         testing::ValuesIn(table_for(set_attribute, kAttributePaths)), case_name);

constexpr PathCase kTagPaths[] = {
    {"ChildOfTheTopLeavesItALeaf", "/t", ".{Top*{t*=1}}", ".{Top+{a+{b*(old=0)} c*(old=0) a* t*=1}}"},
    {"ChildOfALeafLeavesItALeaf", "/c/t", ".{Top+{c*{t*=1}}}", ".{Top+{a+{b*(old=0)} c*(old=0){t*=1} a*}}"},
    {"PassingThroughALeaf", "/c/d/t", ".{Top+{c+{d*{t*=1}}}}",
     ".{Top+{a+{b*(old=0)} c+(old=0){d*{t*=1}} a*}}"},
    {"ExistingKeepsItsParts", "/a/b", ".{Top+{a*{b*=1}}}", ".{Top+{a+{b*=1(old=0)} c*(old=0) a*}}"},
    {"FirstOfTwo", "/a", ".{Top*{a*=1}}", ".{Top+{a+=1{b*(old=0)} c*(old=0) a*}}"},
    {"TopByItsName", "Top", ".{Top*=1}", ".{Top+=1{a+{b*(old=0)} c*(old=0) a*}}"},
    {"BesideTheTop", "t", ".{Top* t*=1}", ".{Top+{a+{b*(old=0)} c*(old=0) a*} t*=1}"},
    {"EmptyPath", "", ".{Top* *=1}", ".{Top+{a+{b*(old=0)} c*(old=0) a*} *=1}"},
    {"OnlyASlash", "/", ".{Top*{*=1}}", ".{Top+{a+{b*(old=0)} c*(old=0) a* *=1}}"},
    {"FirstChild", "//t", ".{Top*}", ".{Top+{a+{b*(old=0) t*=1} c*(old=0) a*}}"},
    {"FirstChildOfALeaf", "/c//t", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
};

INSTANTIATE_TEST_SUITE_P(SetTagValue, PathWrite, testing::ValuesIn(table_for(set_tag_value, kTagPaths)),
                         case_name);

constexpr PathCase kAnnotatedAttributePaths[] = {
    {"Existing", "/a/b/old", ".{Top+}", ".{Top+{a+{b*(old=0~k:t)} c*(old=0) a*}}"},
    {"ExistingOfALeaf", "/c/old", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0~k:t) a*}}"},
    {"MissingAttribute", "/c/x", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"MissingTagMakesThePassedOneABranch", "/c/d/x", ".{Top+}", ".{Top+{a+{b*(old=0)} c+(old=0) a*}}"},
    {"MissingAttributeOfTheTop", "/x", ".{Top*}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"BelowTheFirstChild", "//b/old", ".{Top*}", ".{Top+{a+{b*(old=0~k:t)} c*(old=0) a*}}"},
    {"FirstChildOfALeaf", "/c//old", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
};

INSTANTIATE_TEST_SUITE_P(AnnotateAttribute, PathWrite,
                         testing::ValuesIn(table_for(annotate_attribute, kAnnotatedAttributePaths)),
                         case_name);

constexpr PathCase kAnnotatedTagPaths[] = {
    {"Existing", "/a/b", ".{Top+}", ".{Top+{a+{b*~k:t(old=0)} c*(old=0) a*}}"},
    {"FirstOfTwo", "/a", ".{Top*}", ".{Top+{a+~k:t{b*(old=0)} c*(old=0) a*}}"},
    {"TopByItsName", "Top", ".{Top*~k:t}", ".{Top+~k:t{a+{b*(old=0)} c*(old=0) a*}}"},
    {"Missing", "/x", ".{Top*}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"AnAttributeIsNoTag", "/c/old", ".{Top+}", ".{Top+{a+{b*(old=0)} c*(old=0) a*}}"},
    {"MissingTagMakesThePassedOneABranch", "/c/d/e", ".{Top+}", ".{Top+{a+{b*(old=0)} c+(old=0) a*}}"},
};

INSTANTIATE_TEST_SUITE_P(AnnotateTag, PathWrite,
                         testing::ValuesIn(table_for(annotate_tag, kAnnotatedTagPaths)), case_name);

TEST(SetAttribute, ReplacesTheValueWithoutASecondAttribute) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/Processors/Processor:1/core-count", Value(int64_t{1}));
  tree.set_attribute("/Processors/Processor:1/core-count", text_value("2"));
  EXPECT_EQ(outline(tree.top()), "Top+{Processors+{Processor:1*(core-count='2')}}");
}

TEST(SetAttribute, KeepsTheFirstAnnotationWhenSetTwice) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/x", text_value("1"), "type", "bool");
  tree.set_attribute("/x", text_value("0"), "units", "GB");
  EXPECT_EQ(outline(tree.top()), "Top*(x='0'~type:bool)");
}

TEST(SetAttribute, AttachesNoAnnotationToAnExistingAttribute) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/x", text_value("1"));
  tree.set_attribute("/x", text_value("0"), "type", "bool");
  EXPECT_EQ(outline(tree.top()), "Top*(x='0')");
}

TEST(SetAttribute, TakesAnnotationPartsThatAreEmptyOrNull) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/x", kOne, "", "text");
  tree.set_attribute("/y", kOne, "complex", nullptr);
  tree.set_attribute("/z", kOne, nullptr, "unused");
  EXPECT_EQ(outline(tree.top()), "Top*(x=1~:text, y=1~complex:, z=1)");
}

TEST(SetAttribute, KeepsTheOldValueWhenGivenAnEmptyOne) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/x", text_value("kept"));
  tree.set_attribute("/x", Value());
  tree.set_attribute("/y", Value());
  EXPECT_EQ(outline(tree.top()), "Top*(x='kept', y=none)");
}

TEST(SetTagValue, ReplacesTheOldValueEvenByAnEmptyOne) {
  InventoryTree tree(1, "Top");
  tree.set_tag_value("/x", text_value("lost"));
  tree.set_tag_value("/x", Value());
  EXPECT_EQ(outline(tree.top()), "Top*{x*=none}");
}

TEST(SetTagValue, LeavesTheTagAboveALeafUntilSomethingIsSetBelow) {
  InventoryTree tree(1, "Top");
  tree.set_tag_value("/Environment/env-var:PATH", text_value("PATH"));
  EXPECT_EQ(outline(tree.top()), "Top+{Environment*{env-var:PATH*='PATH'}}");
  tree.set_attribute("/Environment/env-var:PATH/value", text_value("/bin"));
  EXPECT_EQ(outline(tree.top()), "Top+{Environment+{env-var:PATH*='PATH'(value='/bin')}}");
}

TEST(Annotate, AppendsEvenWithTheSameKey) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/x", kOne, "k", "first");
  tree.annotate_attribute("/x", "k", "second");
  tree.annotate_attribute("/x", "other", nullptr);
  EXPECT_EQ(outline(tree.top()), "Top*(x=1~k:first~k:second~other:)");
  const Attribute* attribute = tree.top().find_attribute("x");
  ASSERT_NE(attribute, nullptr);
  EXPECT_EQ(attribute->find_annotation("k")->text, "first");
  EXPECT_EQ(attribute->find_annotation("other")->text, "");
  EXPECT_EQ(attribute->find_annotation("K"), nullptr);
}

TEST(Annotate, WorksRelativeToAnyTag) {
  InventoryTree tree = furnished();
  tree.top().annotate_tag("a/b", "k", "t");
  tree.top().annotate_attribute("c/old", "k", "t");
  tree.top().annotate("own", "t");
  EXPECT_EQ(outline(tree.root()), ".{Top+~own:t{a+{b*~k:t(old=0)} c*(old=0~k:t) a*}}");
}

TEST(Lookup, FindsTheFirstExactMatch) {
  const InventoryTree tree = furnished();
  const Tag& top = tree.top();
  EXPECT_EQ(top.find_child("a"), top.child_at(0));
  EXPECT_EQ(top.find_child("c"), top.child_at(1));
  EXPECT_EQ(top.find_child("A"), nullptr);
  EXPECT_EQ(top.find_child(""), nullptr);
  EXPECT_EQ(top.find_child("a/b"), nullptr);
  const Tag& c = *top.child_at(1);
  EXPECT_EQ(c.find_attribute("old"), c.attribute_at(0));
  EXPECT_EQ(c.find_attribute("ol"), nullptr);
}

TEST(Lookup, ReturnsNoneBeyondTheEnd) {
  const InventoryTree tree = furnished();
  EXPECT_NE(tree.top().child_at(2), nullptr);
  EXPECT_EQ(tree.top().child_at(3), nullptr);
  EXPECT_EQ(tree.top().child_at(SIZE_MAX), nullptr);
  EXPECT_EQ(tree.top().attribute_at(0), nullptr);
}

TEST(AddChild, MakesTheTagABranch) {
  Tag tag("t");
  EXPECT_EQ(tag.kind(), Tag::Kind::leaf);
  tag.add_child(std::make_unique<Tag>("child"));
  EXPECT_EQ(outline(tag), "t+{child*}");
}

int next_free(const std::vector<std::string>& names, const char* prefix) {
  Tag tag("t");
  for (const std::string& name : names) tag.add_child(std::make_unique<Tag>(name));
  return tag.next_free_index(prefix);
}

TEST(NextFreeIndex, IsTheSmallestThatNoChildCarries) {
  EXPECT_EQ(next_free({}, "Disk:"), 1);
  EXPECT_EQ(next_free({"Disk:1", "Disk:2"}, "Disk:"), 3);
  EXPECT_EQ(next_free({"Disk:2"}, "Disk:"), 1);
  EXPECT_EQ(next_free({"Disk:3", "Disk:1"}, "Disk:"), 2);
  EXPECT_EQ(next_free({"Disk:1", "Disk:1", "Disk:1"}, "Disk:"), 2);
  EXPECT_EQ(next_free({"1", "2"}, ""), 3);
}

TEST(NextFreeIndex, TakesNamesLiterally) {
  for (const char* name : {"Disk:01", "Disk:+1", "Disk: 1", "Disk:1 ", "disk:1", "Disk:1a", "Disk:", "Disk:0",
                           "Disk:-1", "Disk:18446744073709551617", "1"}) {
    EXPECT_EQ(next_free({name}, "Disk:"), 1) << name;
  }
}

TEST(NextFreeIndex, FindsTheGapAmongManyInOnePass) {
  Tag tag("t");
  for (int i = 200000; i > 0; --i) {
    if (i != 12345) tag.add_child(std::make_unique<Tag>("Disk:" + std::to_string(i)));
  }
  EXPECT_EQ(tag.next_free_index("Disk:"), 12345);
}

TEST(TagCopy, CopiesEveryPartAndSharesNothing) {
  InventoryTree tree = furnished();
  tree.set_tag_value("/a/b", text_value("text"));
  tree.set_tag_value("/c/hidden", Value(2.5));
  tree.set_tag_value("/none", Value());
  tree.set_attribute("/a/empty", Value());
  tree.annotate_attribute("/c/old", "k", "t");
  tree.root().annotate_tag("/a/b", "k1", "t1");
  tree.root().annotate_tag("/a/b", "k2", "t2");
  const std::string before = outline(tree.root());

  const Tag copy(tree.root());
  const InventoryTree tree_copy(tree);
  EXPECT_EQ(outline(copy), before);
  tree.set_attribute("/a/b/old", text_value("changed"));
  tree.top().child_at(0)->child_at(0)->value()->text()[0] = 'X';
  tree.annotate_attribute("/c/old", "k", "changed");
  EXPECT_EQ(outline(copy), before);
  EXPECT_EQ(outline(tree_copy.root()), before);
}

// A chain this deep exhausts the stack as soon as anything recurses along it.
constexpr int kDepth = 100000;

std::string deep_path() {
  std::string path;
  for (int i = 0; i < kDepth; ++i) path += "/d";
  return path;
}

size_t depth(const Tag& tag) {
  size_t levels = 1;
  for (const Tag* below = tag.child_at(0); below; below = below->child_at(0)) ++levels;
  return levels;
}

TEST(DeepTree, IsMadeCopiedAndDestroyed) {
  InventoryTree tree(1, "Top");
  tree.set_attribute((deep_path() + "/x").c_str(), kOne);
  EXPECT_EQ(depth(tree.top()), size_t{kDepth} + 1);
  const InventoryTree copy(tree);
  EXPECT_EQ(depth(copy.top()), size_t{kDepth} + 1);
}

TEST(DeepTree, IsReachedByFirstChildSteps) {
  InventoryTree tree(1, "Top");
  tree.set_attribute((deep_path() + "/x").c_str(), kOne);
  tree.set_attribute((std::string(kDepth + 1, '/') + "x").c_str(), Value(int64_t{2}));
  const Tag* last = &tree.top();
  while (last->child_at(0)) last = last->child_at(0);
  EXPECT_EQ(outline(*last), "d*(x=2)");
}

TEST(DeepTree, IsMeasuredAndWrittenInEveryForm) {
  InventoryTree tree(1, "Top");
  tree.set_attribute((deep_path() + "/x").c_str(), kOne);
  std::string text = "\xEF\xBB\xBF?zxml\n+Top=\n";
  for (int i = 1; i < kDepth; ++i) text += "+d=\n";
  text += "*d=\nx=1\n";
  for (int i = 0; i < kDepth; ++i) text += "-\n";

  EXPECT_EQ(tree.root().text_size(), text.size());
  std::string written(text.size(), '\0');
  EXPECT_EQ(tree.root().write_text(written.data(), 0), text.size());
  EXPECT_TRUE(written == text);
  for (const Layout layout : kLayouts) EXPECT_FALSE(tree.serialize(layout).empty());
}

}  // namespace
