#include "zxml/place.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <string>

#include "zxml/outline.h"
#include "zxml/zXML.h"

namespace {

// Two trees that get the same writes, one through places and one through full paths.
class PlaceAndPath {
 public:
  explicit PlaceAndPath(unsigned seed) : random_(seed) {}

  void step() {
    switch (pick(13)) {
      case 0:
        return open_from_root();
      case 1:
        return open_below(Place::Names::may_repeat);
      case 2:
        return open_below(Place::Names::distinct);
      case 3:
        return open_below(Place::Names::unused);
      case 4:
        return add_twin();
      case 5:
        return write_by_path();
      default:
        return write_through_a_place();
    }
  }

  std::string through_places() const { return outline(by_place_.root()); }
  std::string through_paths() const { return outline(by_path_.root()); }
  const std::string& log() const { return log_; }

 private:
  struct Opened {
    Place place;
    std::string path;
  };

  size_t pick(size_t count) { return random_() % count; }
  template <size_t count>
  const char* pick(const char* const (&list)[count]) {
    return list[pick(count)];
  }
  const char* name() {
    constexpr const char* kNames[] = {"", "a", "b", "c"};
    return pick(kNames);
  }
  Value value() {
    Value text = text_value(pick(2) ? "text" : "");
    return pick(4) == 0 ? Value() : pick(2) ? Value(static_cast<int64_t>(pick(10))) : text;
  }
  const char* key() { return pick(2) ? "k" : nullptr; }

  void note(const std::string& what) { log_ += what + "\n"; }

  void open_from_root() {
    constexpr const char* kPaths[] = {"/a", "/a/b", "/b", "a", "", "/", "//", "/a//b", "/c/", "//c", "Top/b"};
    const char* path = pick(kPaths);
    opened_.push_back({Place(by_place_.root(), path), path});
    note(std::to_string(opened_.size() - 1) + " = place " + path);
  }

  void open_below(Place::Names names) {
    if (opened_.empty()) return;
    Opened& parent = opened_[pick(opened_.size())];
    // Only a fresh name keeps the promise that names are distinct, or unused.
    const std::string child =
        names == Place::Names::may_repeat ? std::string(name()) : "n" + std::to_string(opened_.size());
    opened_.push_back({Place(parent.place, child, names), parent.path + "/" + child});
    note(std::to_string(opened_.size() - 1) + " = place below: " + opened_.back().path);
  }

  // A second child of a name that may be there already.
  void add_twin() {
    const char* child = name();
    note(std::string("twin ") + child);
    by_place_.top().add_child(std::make_unique<Tag>(child));
    by_path_.top().add_child(std::make_unique<Tag>(child));
  }

  void write_by_path() {
    constexpr const char* kPaths[] = {"/a/x", "/b/c/x", "//x", "/a//x", "///x", "/a/", "/x"};
    const char* path = pick(kPaths);
    const Value written = value();
    const bool attribute = pick(2) == 0;
    note(std::string(attribute ? "attribute " : "tag ") + path);
    for (InventoryTree* tree : {&by_place_, &by_path_}) {
      attribute ? tree->set_attribute(path, written) : tree->set_tag_value(path, written);
    }
  }

  void write_through_a_place() {
    if (opened_.empty()) return;
    Opened& opened = opened_[pick(opened_.size())];
    const std::string attribute = name();
    const std::string path = opened.path + "/" + attribute;
    const Value written = value();
    switch (pick(6)) {
      case 0:
      case 1: {
        const char* annotation = key();
        note("set_attribute " + path);
        opened.place.set_attribute(attribute, written, annotation, "t");
        return by_path_.set_attribute(path.c_str(), written, annotation, "t");
      }
      case 2:
        note("set_value " + opened.path);
        opened.place.set_value(written);
        return by_path_.set_tag_value(opened.path.c_str(), written);
      case 3:
        note("annotate_attribute " + path);
        opened.place.annotate_attribute(attribute, "ka", "t");
        return by_path_.annotate_attribute(path.c_str(), "ka", "t");
      case 4:
        return write_distinct(opened);
      default:
        note("annotate " + opened.path);
        opened.place.annotate("kt", "t");
        return by_path_.root().annotate_tag(opened.path.c_str(), "kt", "t");
    }
  }

  // Only a fresh name keeps the promise that names are distinct.
  void write_distinct(Opened& opened) {
    const std::string name = "d" + std::to_string(log_.size());
    const Value written = value();
    const char* annotation = key();
    note("set_distinct_attribute " + opened.path + "/" + name);
    opened.place.set_distinct_attribute(name, written, annotation, "t");
    by_path_.set_attribute((opened.path + "/" + name).c_str(), written, annotation, "t");
  }

  std::mt19937 random_;
  InventoryTree by_place_{1, "Top"};
  InventoryTree by_path_{1, "Top"};
  std::deque<Opened> opened_;  // a deque: a place must not move while another builds on it
  std::string log_;
};

TEST(Place, GivesTheTreeThatFullPathsGive) {
  for (unsigned seed = 0; seed < 2000; ++seed) {
    PlaceAndPath writes(seed);
    for (int i = 0; i < 60; ++i) {
      writes.step();
      ASSERT_EQ(writes.through_places(), writes.through_paths()) << "seed " << seed << "\n" << writes.log();
    }
  }
}

TEST(Place, MakesNothingUntilTheFirstWrite) {
  InventoryTree tree(1, "Top");
  Place item(tree.root(), "/Items/item0");
  Place below(item, "below");
  below.annotate("k", "t");
  below.annotate_attribute("x", "k", "t");
  EXPECT_EQ(outline(tree.top()), "Top+");
  below.set_attribute("x", text_value("1"), "type", "bool");
  EXPECT_EQ(outline(tree.top()), "Top+{Items+{item0+{below*(x='1'~type:bool)}}}");
}

TEST(Place, GivesItsTagAValueWithoutMakingTheTagAboveABranch) {
  InventoryTree tree(1, "Top");
  Place variables(tree.root(), "/Environment");
  Place path(variables, "env-var:PATH");
  path.set_value(text_value("PATH"));
  EXPECT_EQ(outline(tree.top()), "Top+{Environment*{env-var:PATH*='PATH'}}");
  path.set_attribute("value", text_value("/bin"));
  EXPECT_EQ(outline(tree.top()), "Top+{Environment+{env-var:PATH*='PATH'(value='/bin')}}");
}

TEST(Place, FindsWhatOtherWritesMadeMeanwhile) {
  InventoryTree tree(1, "Top");
  Place place(tree.root(), "/a");
  place.annotate_attribute("x", "k", "lost");
  tree.set_attribute("/a/x", text_value("1"));
  place.annotate_attribute("x", "k", "t");
  place.set_attribute("x", text_value("2"));
  EXPECT_EQ(outline(tree.top()), "Top+{a*(x='2'~k:t)}");
}

TEST(Place, StartsFromAnyTag) {
  InventoryTree tree(1, "Top");
  Place place(tree.top(), "a/b");
  place.set_attribute("x", text_value("1"));
  EXPECT_EQ(outline(tree.top()), "Top+{a+{b*(x='1')}}");
}

TEST(Place, IgnoresWritesBelowAFirstChildThatIsMissing) {
  InventoryTree tree(1, "Top");
  Place place(tree.root(), "/a");
  Place first(place, "");
  first.set_attribute("x", text_value("1"));
  EXPECT_EQ(outline(tree.top()), "Top+");
}

TEST(Place, TakesAnEmptyNameAsFirstChildOnlyOnTheWayToSomethingBelow) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/first/x", text_value("1"));
  Place top(tree.root(), "");
  Place empty(top, "");
  empty.set_attribute("x", text_value("2"));
  empty.annotate("k", "lost");
  empty.set_value(text_value("v"));
  empty.annotate("k", "t");
  EXPECT_EQ(outline(tree.top()), "Top+{first*(x='2') *='v'~k:t}");
}

TEST(Place, AppendsDistinctNamesToWhatItMade) {
  InventoryTree tree(1, "Top");
  Place list(tree.root(), "/list");
  for (int i = 0; i < 3; ++i) {
    Place item(list, "item" + std::to_string(i), Place::Names::distinct);
    item.set_distinct_attribute("name", Value(int64_t{i}));
    item.set_distinct_attribute("size", Value());
  }
  EXPECT_EQ(outline(tree.top()),
            "Top+{list+{item0*(name=0, size=none) item1*(name=1, size=none) item2*(name=2, size=none)}}");
}

TEST(Place, SearchesForDistinctNamesInWhatItFound) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("/list/item0/name", text_value("old"));
  Place list(tree.root(), "/list");
  Place item(list, "item0", Place::Names::distinct);
  item.set_distinct_attribute("name", text_value("new"));
  EXPECT_EQ(outline(tree.top()), "Top+{list+{item0*(name='new')}}");
}

TEST(Place, HandsOutADistinctAttributeForFurtherAnnotations) {
  InventoryTree tree(1, "Top");
  Place made(tree.root(), "/made");
  made.set_distinct_attribute("name", Value(), "first", "1")->annotate("second", "2");
  // As everywhere, an attribute that exists keeps the annotations it has.
  Place found(tree.root(), "/made");
  found.set_distinct_attribute("name", Value(), "first", "3")->annotate("third", "4");
  const Attribute* attribute = tree.top().find_child("made")->find_attribute("name");
  ASSERT_EQ(attribute->annotations().size(), 3u);
  EXPECT_STREQ(attribute->find_annotation("first")->text.c_str(), "1");
  EXPECT_STREQ(attribute->find_annotation("second")->text.c_str(), "2");
  EXPECT_STREQ(attribute->find_annotation("third")->text.c_str(), "4");
  Place unreachable(tree.root(), "/made//below");
  EXPECT_EQ(unreachable.set_distinct_attribute("name", Value()), nullptr);
}

TEST(Place, ReturnsADistinctAttributeForMoreAnnotations) {
  InventoryTree tree(1, "Top");
  Place place(tree.root(), "/a");
  Attribute* attribute = place.set_distinct_attribute("x", text_value("1"), "type", "bool");
  ASSERT_NE(attribute, nullptr);
  attribute->annotate("units", "GB");
  EXPECT_EQ(outline(tree.top()), "Top+{a*(x='1'~type:bool~units:GB)}");
  Place again(tree.root(), "/a");
  EXPECT_EQ(again.set_distinct_attribute("x", text_value("2"), "type", "ignored"), attribute);
  EXPECT_EQ(outline(tree.top()), "Top+{a*(x='2'~type:bool~units:GB)}");
}

TEST(Place, ReturnsNoAttributeWhereNoneCanBe) {
  InventoryTree tree(1, "Top");
  Place place(tree.root(), "/a//b");
  EXPECT_EQ(place.set_distinct_attribute("x", text_value("1")), nullptr);
  EXPECT_EQ(outline(tree.top()), "Top+");
}

TEST(Place, WritesManyDistinctNamesInLinearTime) {
  constexpr size_t kCount = 200000;
  InventoryTree tree(1, "Top");
  Place list(tree.root(), "/list");
  for (size_t i = 0; i < kCount; ++i) {
    Place item(list, "item" + std::to_string(i), Place::Names::distinct);
    item.set_distinct_attribute("name", Value(static_cast<int64_t>(i)));
    list.set_distinct_attribute("name" + std::to_string(i), Value(static_cast<int64_t>(i)));
  }
  const Tag* made = tree.top().find_child("list");
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->children().size(), kCount);
  EXPECT_EQ(made->attributes().size(), kCount);
}

}  // namespace
