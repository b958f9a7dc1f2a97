// Programs that work for this one.
#include "toolkit/childprocess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "support/support.h"

namespace {

struct End {
  std::string told;
  int status;
};

End EndOf(const std::string& script, const std::string& directory = "/",
          const std::string& input = "") {
  ChildProcess child({"sh", "-c", script}, directory, input);
  EXPECT_EQ(child.Failure(), "");
  End end;
  while (child.Listen(1000, end.told)) {
  }
  end.status = child.ExitStatus();
  return end;
}

TEST(ChildProcess, ReadsAndTellsAndEnds) {
  const TempDir folder;
  std::string much;
  for (int k = 0; k < 100000; ++k) much += std::to_string(k) + "\n";
  const End end = EndOf("echo lost; cat >&2; exit 3", "/", much);
  EXPECT_EQ(end.told, much);
  EXPECT_EQ(end.status, 3);
  // Read again by its name, as a program does that is told to.
  EXPECT_EQ(EndOf("cat /dev/stdin >&2", "/", "again").told, "again");
  EXPECT_EQ(EndOf("pwd >&2", folder.path()).told,
            std::filesystem::canonical(folder.path()).string() + "\n");
}

// In a transcript that starts programs nobody waits for ends of others.
TEST(ChildProcess, IsWaitedForWhereOthersAreNot) {
  std::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(EndOf("true; exit 5").status, 5);
  EXPECT_EQ(std::signal(SIGCHLD, SIG_DFL), SIG_IGN);
}

TEST(ChildProcess, IsStoppedOrIsNotThere) {
  ChildProcess child({"sleep", "60"}, "/", "");
  std::string told;
  EXPECT_TRUE(child.Listen(1, told));
  child.Stop();
  while (child.Listen(1000, told)) {
  }
  EXPECT_EQ(child.ExitStatus(), -1);
  EXPECT_NE(ChildProcess({"no such program"}, "/", "").Failure(), "");
  EXPECT_NE(ChildProcess({"true"}, "/no such place", "").Failure(), "");
}

}  // namespace
