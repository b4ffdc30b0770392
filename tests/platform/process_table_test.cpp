#include "platform/process_table.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace {

const ProcessRecord* find(const ProcessTable& table, pid_t pid) {
  const auto record = std::find_if(table.records.begin(), table.records.end(),
                                   [pid](const ProcessRecord& candidate) { return candidate.pid == pid; });
  return record == table.records.end() ? nullptr : &*record;
}

TEST(ProcessTable, HoldsThisProcess) {
  const ProcessTable table = read_process_table();
  EXPECT_EQ(table.status, ProcessTableStatus::complete);
  const ProcessRecord* const self = find(table, getpid());
  ASSERT_NE(self, nullptr);
  EXPECT_EQ(self->ppid, getppid());
  EXPECT_EQ(self->name, std::string("platform_tests").substr(0, 16));
}

TEST(ProcessTable, HasShortNamesOnly) {
  for (const ProcessRecord& record : read_process_table().records)
    EXPECT_LE(record.name.size(), 16u) << record.name;
}

TEST(ProcessTable, DoesNotHoldAProcessThatHasEnded) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_EQ(find(read_process_table(), child), nullptr);
}

}  // namespace
