// The programs from outside: options, exit statuses, signals.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <csignal>

namespace {

struct Outcome {
  int status;
  std::string out, err;
};

QProcessEnvironment Environment() {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("ASAN_OPTIONS", "detect_leaks=0");
  return environment;
}

// Without a display.
Outcome Start(const char* program, const QStringList& arguments) {
  QProcess process;
  QProcessEnvironment environment = Environment();
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    environment.remove(name);
  process.setProcessEnvironment(environment);
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(-1));
  return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
          process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

}  // namespace

TEST(Program, OptionsWorkWithoutADisplay) {
  for (const char* program : {QUILLAGRAM_PROGRAM, QUILLAGRAM_EDIT}) {
    const Outcome help = Start(program, {"--help"}), version = Start(program, {"--version"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Usage: quillagram"), std::string::npos);
    EXPECT_EQ(version.status, 0);
    EXPECT_NE(version.out.find("1.0"), std::string::npos);
    const Outcome incomplete = Start(program, {"-platform", "offscreen", "--style"});
    EXPECT_EQ(incomplete.status, 2);
    EXPECT_NE(incomplete.err.find("no value behind --style"), std::string::npos);
    const Outcome unknown = Start(program, {"--nosuch", "file.xy"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("--nosuch"), std::string::npos);
    EXPECT_EQ(unknown.out, "");
  }
}

TEST(Program, SaysThatThereIsNoDisplay) {
  const Outcome window = Start(QUILLAGRAM_PROGRAM, {});
  EXPECT_EQ(window.status, 1);
  EXPECT_NE(window.err.find("quillagram-replay"), std::string::npos);
  EXPECT_EQ(Start(QUILLAGRAM_EDIT, {"new.txt"}).status, 1);
}

TEST(Program, TakesOptionsOfQtAndEndsNormallyWhenAskedTo) {
  QTemporaryDir home;
  QProcess process;
  QProcessEnvironment environment = Environment();
  environment.insert("QUILLAGRAM_HOME", home.path());
  environment.remove("QT_QPA_PLATFORM");
  process.setProcessEnvironment(environment);
  process.setWorkingDirectory(home.path());
  QFile pattern(home.filePath("-x.xy"));
  ASSERT_TRUE(pattern.open(QIODevice::WriteOnly));
  pattern.write("1 2\n2 3\n3 4\n");
  pattern.close();
  process.start(QUILLAGRAM_PROGRAM,
                {"--platform=offscreen", "-style", "fusion", "-session", "1_2", "--", "-x.xy"});
  ASSERT_TRUE(process.waitForStarted());
  // The configuration file has the pattern once the window stands.
  const auto told = [&] {
    QFile settings(home.filePath("quillagram.ini"));
    return settings.open(QIODevice::ReadOnly) && settings.readAll().contains("/-x.xy\n");
  };
  while (!told() && process.state() == QProcess::Running) process.waitForFinished(20);
  EXPECT_TRUE(told());
  kill(static_cast<pid_t>(process.processId()), SIGTERM);
  ASSERT_TRUE(process.waitForFinished(-1));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process.exitCode(), 0);
}
