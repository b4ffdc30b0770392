#include "platform/sysctl_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using testing::IsEmpty;
using testing::SizeIs;

struct KernelRecord {
  int32_t pid;
  char padding[60];
};

ProcessRecord record_of(const KernelRecord& record) {
  return {record.pid, 1, "p" + std::to_string(record.pid)};
}

// A kernel as Macs have had it since 10.7: it reports a size with room for five more processes, and copies
// nothing and reports 0 when the table does not fit.
class Kernel {
 public:
  explicit Kernel(int32_t processes) : processes_(processes) {}

  // This many processes start each time between reading the size and copying.
  void start_meanwhile(int32_t processes) { started_meanwhile_ = processes; }
  void refuse_size(int error) { size_error_ = error; }
  void refuse_copy(int error) { copy_error_ = error; }
  void report_size(size_t size) { reported_size_ = size; }
  void copy_what_fits() { copies_what_fits_ = true; }
  void tell_what_it_wanted_to_copy() { tells_wanted_ = true; }

  ProcessTable read() {
    return read_sysctl_table<KernelRecord>(
        [this](void* records, size_t* size) { return records ? copy(records, size) : ask(size); }, record_of);
  }
  size_t sizes_asked() const { return sizes_asked_; }

 private:
  static int fail(int error) {
    errno = error;
    return -1;
  }
  int ask(size_t* size) {
    ++sizes_asked_;
    if (size_error_) return fail(size_error_);
    *size = reported_size_ ? reported_size_ : static_cast<size_t>(processes_ + 5) * sizeof(KernelRecord);
    processes_ += started_meanwhile_;
    return 0;
  }
  int copy(void* records, size_t* size) const {
    if (copy_error_) return fail(copy_error_);
    const size_t room = *size / sizeof(KernelRecord), wanted = static_cast<size_t>(processes_);
    const size_t copied = wanted <= room ? wanted : copies_what_fits_ ? room : 0;
    for (size_t i = 0; i < copied; ++i) {
      KernelRecord record = {};
      record.pid = static_cast<int32_t>(i);
      std::memcpy(static_cast<char*>(records) + i * sizeof record, &record, sizeof record);
    }
    *size = (tells_wanted_ ? wanted : copied) * sizeof(KernelRecord);
    return wanted <= room ? 0 : fail(ENOMEM);
  }

  int32_t processes_;
  int32_t started_meanwhile_ = 0;
  int size_error_ = 0;
  int copy_error_ = 0;
  size_t reported_size_ = 0;
  bool copies_what_fits_ = false;
  bool tells_wanted_ = false;
  size_t sizes_asked_ = 0;
};

// Options for AddressSanitizer, whose operator new would otherwise end the program if there is not enough
// memory.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }

TEST(SysctlTable, HoldsEveryProcessInTheKernelsOrder) {
  Kernel kernel(3);
  const ProcessTable table = kernel.read();
  EXPECT_EQ(table.status, ProcessTableStatus::complete);
  ASSERT_THAT(table.records, SizeIs(3));
  for (int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(table.records[static_cast<size_t>(i)].pid, i);
    EXPECT_EQ(table.records[static_cast<size_t>(i)].ppid, 1);
    EXPECT_EQ(table.records[static_cast<size_t>(i)].name, "p" + std::to_string(i));
  }
}

TEST(SysctlTable, HasRoomForAnEighthMoreAndAtLeastSixtyFour) {
  EXPECT_EQ(with_spare(0), 64u);
  EXPECT_EQ(with_spare(512), 512u + 64);
  EXPECT_EQ(with_spare(519), 519u + 64);
  EXPECT_EQ(with_spare(520), 520u + 65);
  EXPECT_EQ(with_spare(8000), 9000u);
}

TEST(SysctlTable, IsCompleteThoughProcessesAreStartedWhileItIsCopied) {
  Kernel kernel(100);
  kernel.start_meanwhile(5 + 64);
  const ProcessTable table = kernel.read();
  EXPECT_EQ(table.status, ProcessTableStatus::complete);
  EXPECT_THAT(table.records, SizeIs(169));
}

TEST(SysctlTable, GrewWithoutARecordWhenTheKernelCopiesNone) {
  Kernel kernel(100);
  kernel.start_meanwhile(5 + 64 + 1);
  const ProcessTable table = kernel.read();
  EXPECT_EQ(table.status, ProcessTableStatus::grew);
  EXPECT_THAT(table.records, IsEmpty());
}

TEST(SysctlTable, GrewWithTheRecordsThatTheKernelCopies) {
  Kernel kernel(100);
  kernel.copy_what_fits();
  kernel.start_meanwhile(5 + 64 + 1);
  const ProcessTable table = kernel.read();
  EXPECT_EQ(table.status, ProcessTableStatus::grew);
  EXPECT_THAT(table.records, SizeIs(169));
}

TEST(SysctlTable, HasNoMoreRecordsThanThereWasRoomFor) {
  Kernel kernel(100);
  kernel.copy_what_fits();
  kernel.tell_what_it_wanted_to_copy();
  kernel.start_meanwhile(1000);
  EXPECT_THAT(kernel.read().records, SizeIs(169));
}

TEST(SysctlTable, AsksForTheSizeAgainInEachReading) {
  Kernel kernel(100);
  kernel.start_meanwhile(1000);
  EXPECT_EQ(kernel.read().status, ProcessTableStatus::grew);
  kernel.start_meanwhile(0);
  EXPECT_THAT(kernel.read().records, SizeIs(1100));
  EXPECT_EQ(kernel.sizes_asked(), 2u);
}

TEST(SysctlTable, IsUnavailableWhenTheKernelRefuses) {
  Kernel sizeless(3), copyless(3);
  sizeless.refuse_size(EPERM);
  copyless.refuse_copy(EPERM);
  for (Kernel* kernel : {&sizeless, &copyless}) {
    const ProcessTable table = kernel->read();
    EXPECT_EQ(table.status, ProcessTableStatus::unavailable);
    EXPECT_THAT(table.records, IsEmpty());
  }
}

TEST(SysctlTable, IsUnavailableWithoutTheMemoryForIt) {
  Kernel kernel(3);
  kernel.report_size(size_t{1} << 62);
  EXPECT_EQ(kernel.read().status, ProcessTableStatus::unavailable);
}

}  // namespace
