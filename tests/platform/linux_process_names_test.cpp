// How the names that processes give themselves are read from /proc.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "platform/process_table.h"

namespace {

std::vector<ProcessRecord> records_of(pid_t pid) {
  std::vector<ProcessRecord> own;
  for (const ProcessRecord& record : read_process_table().records) {
    if (record.pid == pid) own.push_back(record);
  }
  return own;
}

// What the table says of a process that calls itself this.
ProcessRecord record_of_process_named(const char* name) {
  int ready[2];
  EXPECT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    prctl(PR_SET_NAME, name);
    close(ready[1]);
    pause();
    _exit(0);
  }
  close(ready[1]);
  char byte = 0;
  EXPECT_EQ(read(ready[0], &byte, 1), 0);  // the end of the pipe: the child has its name
  close(ready[0]);
  const std::vector<ProcessRecord> records = records_of(child);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(records.size(), 1u);
  return records.empty() ? ProcessRecord{} : records.front();
}

TEST(LinuxProcessNames, MayHoldParenthesesAndBlanks) {
  const ProcessRecord record = record_of_process_named("a) S 1 (b");
  EXPECT_EQ(record.name, "a) S 1 (b");
  EXPECT_EQ(record.ppid, getpid());
}

// Linux cuts after 15 bytes by itself.
TEST(LinuxProcessNames, AreWholeUpToTheLongest) {
  EXPECT_EQ(record_of_process_named("fifteen bytes.").name, "fifteen bytes.");
  EXPECT_EQ(record_of_process_named("fifteen bytes..").name, "fifteen bytes..");
}

// /proc has further names for the process that reads it.
TEST(LinuxProcessNames, AreOfProcessesOnly) { EXPECT_EQ(records_of(getpid()).size(), 1u); }

}  // namespace
