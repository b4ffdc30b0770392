// How CoreFoundation reads a property list, as one line of text.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <vector>

// "NULL", or the tree: string "a", number isFloat=0 sint64=5 double=5, true, date abs=0.000000, data 2
// <0001>, array 1 / ELEMENT, dict 1 / key "k" / VALUE, with keys in the order of their bytes, since
// dictionaries have none of their own. "(lossy)" follows a number that CFNumberGetValue reports as not exact.
std::string outcome_of(std::string_view list);

std::string description_of_tree(CFTypeRef object);

struct Expectation {
  std::string_view list;
  std::string_view outcome;
};
// Whole lists, and values for document().
void expect_outcomes_of_lists(const std::vector<Expectation>& expectations);
void expect_outcomes(const std::vector<Expectation>& expectations);
void expect_refused(const std::vector<std::string_view>& values);

// The value between the lines around each list that the profiler prints.
std::string document(std::string_view value);
