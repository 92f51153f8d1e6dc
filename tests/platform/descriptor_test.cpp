#include "platform/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace merlane {
namespace {

TEST(Descriptor, ClosesItsFile) {
  int fd = -1;
  {
    const Descriptor file(::open("/dev/null", O_RDONLY));
    fd = file.Get();
    ASSERT_NE(::fcntl(fd, F_GETFD), -1);
  }
  EXPECT_EQ(::fcntl(fd, F_GETFD), -1);
}

TEST(Descriptor, MoreThanAPipeHoldsIsWrittenAndReadWhole) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const std::string sent(1'000'000, 'x');
  std::thread writer([&] {
    EXPECT_TRUE(WriteAll(ends[1], sent));
    ::close(ends[1]);
  });
  const Descriptor reading(ends[0]);
  std::string received = "before ";
  EXPECT_TRUE(ReadAll(reading.Get(), received));
  writer.join();
  EXPECT_EQ(received, "before " + sent);
}

TEST(Descriptor, AFailureIsToldWithItsReason) {
  const Descriptor full(::open("/dev/full", O_WRONLY));
  EXPECT_FALSE(WriteAll(full.Get(), "x"));
  EXPECT_EQ(errno, ENOSPC);
  const Descriptor folder(::open("/", O_RDONLY));
  std::string bytes;
  EXPECT_FALSE(ReadAll(folder.Get(), bytes));
  EXPECT_EQ(errno, EISDIR);
}

}  // namespace
}  // namespace merlane
