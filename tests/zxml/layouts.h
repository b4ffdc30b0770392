// All layouts of a tree, for tests that go through them.
#pragma once

#include "zxml/container.h"

constexpr Layout kLayouts[] = {Layout::whole_plain, Layout::whole_compressed, Layout::split_plain,
                               Layout::split_compressed};
