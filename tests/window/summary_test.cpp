// The summary file: picked under a new name, and again when it is there.
#include <gtest/gtest.h>

#include <QFile>

#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

TEST(Summary, OneThatIsThereIsOpenedWithoutAQuestion) {
  RunOn("page.xy", []() -> Script {
    const std::string table = Place() + "/all.sum";
    for (const char* name : {"all", "all.sum", "all"}) {
      Pick(MenuOpenSum);
      co_await Shown("selector");
      Type(QString::fromStdString(Place() + "/" + name));
      Press("Return");
      co_await Until{[] { return ws.sumopen == 1; }, "the summary"};
      co_await Idle();
      EXPECT_EQ(ws.sumfile, table);
      Pick(MenuAddSum);
      co_await Idle();
      Pick(MenuCloseSum);
      co_await Idle();
    }
    QFile file(QString::fromStdString(table));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readLine(), "     tth     page     page     page\n");
  });
}

}  // namespace
