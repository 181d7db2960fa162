#include "shell/class_interface_dbus.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

#include "shell_gui/gui_support.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

// A session bus of the test's own.
class TestBus {
 public:
  TestBus() {
    daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    if (!daemon_.waitForStarted()) return;
    while (!daemon_.canReadLine() && daemon_.waitForReadyRead(10000)) {
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
  }
  ~TestBus() { Stop(); }
  void Stop() {
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.terminate();
    daemon_.waitForFinished(5000);
  }
  const QString& Address() const { return address_; }

 private:
  QProcess daemon_;
  QString address_;
};

// Boxes during which events come in, as those of the window.
class LiveDialogs : public testing::ScriptedDialogs {
 public:
  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override {
    if (during) during();
    return ScriptedDialogs::Ask(text, title, buttons, icon);
  }
  std::function<void()> during;
};

struct Reply {
  QDBusMessage::MessageType type = QDBusMessage::InvalidMessage;
  std::string error;
  std::string text;
  bool Done() const { return type == QDBusMessage::ReplyMessage; }
};

struct ClassInterfaceBusTest : ::testing::Test {
  void SetUp() override {
    ASSERT_FALSE(bus.Address().isEmpty()) << "dbus-daemon does not start";
    caller = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(bus.Address(), "caller"));
    ASSERT_TRUE(caller->isConnected());
  }
  void TearDown() override {
    caller.reset();
    QDBusConnection::disconnectFromBus("caller");
  }

  // One call from outside, while this program goes on.
  Reply Call(const char* method, const QVariantList& arguments, const QString& service = kInterfaceService,
             const QString& interface = kInterfaceService) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, kInterfacePath, interface, method);
    message.setArguments(arguments);
    QDBusPendingCall pending = caller->asyncCall(message);
    Reply reply;
    if (!testing::WaitFor([&] { return pending.isFinished(); })) return reply;
    reply.type = pending.reply().type();
    reply.error = pending.reply().errorName().toStdString();
    reply.text = reply.Done() ? pending.reply().arguments().value(0).toString().toStdString()
                              : pending.reply().errorMessage().toStdString();
    return reply;
  }
  // Runs a program beside this one with the test's bus as its session bus; what it writes.
  std::string Output(const QString& program, const QStringList& arguments, int& exitCode) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", bus.Address());
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(testing::WaitFor([&] { return process.state() == QProcess::NotRunning; })) << program.toStdString();
    exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return process.readAll().toStdString();
  }

  TestBus bus;
  std::unique_ptr<QDBusConnection> caller;
  LiveDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  PointLists lists;
  int paints = 0;
  int ends = 0;
  bool busy = false;
  ClassInterface view{lists, reader, [this] { ++paints; }};
  ClassInterfaceBus object{view, [this] { return busy; }, [this] { ++ends; }};
};

TEST_F(ClassInterfaceBusTest, TakesTheFourOperations) {
  ASSERT_TRUE(object.Register(bus.Address()));
  EXPECT_EQ(object.Service(), "org.orvvalis.ClassInterface");
  EXPECT_TRUE(Call("InterFaceXls", {"=MAX(A2:C60)", 1}).Done());
  EXPECT_TRUE(Call("GlrayonXls", {"1\t2\t3\r\n4\t5\t6", 2.0}).Done());
  EXPECT_TRUE(Call("GlrayonXlsT", {"10\r\n20", 1}).Done());
  EXPECT_TRUE(Call("GlEventsXls", {"10\tS\r\n15\tE", 1.0}).Done());
  EXPECT_EQ(lists.Title, "=MAX(A2:C60)");
  EXPECT_TRUE(lists.TimePlot);
  EXPECT_EQ(lists.NumberPoints, 1);
  EXPECT_EQ(lists.PointList(3, 1), 12);
  EXPECT_EQ(lists.PointList(0, 1), 20);
  EXPECT_EQ(lists.EventCount, 1);
  EXPECT_EQ(lists.EventList(1, 0), 1);
  EXPECT_EQ(paints, 4);
}

TEST_F(ClassInterfaceBusTest, IntrospectionTellsTheOperations) {
  ASSERT_TRUE(object.Register(bus.Address()));
  const Reply reply = Call("Introspect", {}, kInterfaceService, "org.freedesktop.DBus.Introspectable");
  ASSERT_TRUE(reply.Done());
  const QString text = QString::fromStdString(reply.text);
  EXPECT_TRUE(text.contains("<interface name=\"org.orvvalis.ClassInterface\">"));
  for (const char* const part :
       {"<method name=\"InterFaceXls\">", "<method name=\"GlrayonXls\">", "<method name=\"GlrayonXlsT\">",
        "<method name=\"GlEventsXls\">", "name=\"Selection\"", "name=\"FlagOptionToPlot\"", "name=\"text\"",
        "name=\"FactorScale\"", "name=\"flag\"", "type=\"s\"", "type=\"i\"", "type=\"d\""}) {
    EXPECT_TRUE(text.contains(part)) << part << "\n" << reply.text;
  }
  const qsizetype own = text.indexOf("org.orvvalis.ClassInterface\">");
  EXPECT_EQ(text.mid(own, text.indexOf("</interface>", own) - own).count("<method "), 4) << "and no others";
}

TEST_F(ClassInterfaceBusTest, ARunKeepsCallsOut) {
  ASSERT_TRUE(object.Register(bus.Address()));
  busy = true;
  for (const char* const method : {"GlrayonXls", "GlEventsXls"}) {
    const Reply reply = Call(method, {"1\t2\t3", 1.0});
    EXPECT_EQ(reply.error, "org.orvvalis.ClassInterface.Error.Busy") << method;
    EXPECT_EQ(reply.text, "A run is going on.");
  }
  EXPECT_EQ(Call("InterFaceXls", {"a", 0}).error, "org.orvvalis.ClassInterface.Error.Busy");
  EXPECT_EQ(Call("GlrayonXlsT", {"a", 0}).error, "org.orvvalis.ClassInterface.Error.Busy");
  EXPECT_EQ(paints, 0);
  EXPECT_EQ(lists.NumberPoints, kNoEntry);
  busy = false;
  EXPECT_TRUE(Call("GlrayonXls", {"1\t2\t3", 1.0}).Done());
}

TEST_F(ClassInterfaceBusTest, WrongCallsAreRefused) {
  ASSERT_TRUE(object.Register(bus.Address()));
  EXPECT_EQ(Call("GlrayonXls", {"1", std::numeric_limits<double>::quiet_NaN()}).error,
            "org.orvvalis.ClassInterface.Error.InvalidArgs");
  EXPECT_FALSE(Call("GlrayonXls", {"1"}).Done()) << "an argument is missing";
  EXPECT_FALSE(Call("GlrayonXls", {"1", "2"}).Done()) << "a text for a number";
  EXPECT_FALSE(Call("deleteLater", {}).Done()) << "nothing else can be called";
  EXPECT_EQ(paints, 0);
  EXPECT_TRUE(Call("GlrayonXls", {"1", 1.0}).Done());
}

TEST_F(ClassInterfaceBusTest, ABoxKeepsFurtherCallsOutAndItsOwnWaits) {
  ASSERT_TRUE(object.Register(bus.Address()));
  Reply inside;
  dialogs.during = [&] {
    if (inside.error.empty()) inside = Call("GlrayonXls", {"7\t7\t7", 1.0});
  };
  QString text = "5\t6\t7\r\n";
  text += QString(65000, ' ');
  const Reply reply = Call("GlrayonXls", {text, 1.0});
  EXPECT_TRUE(reply.Done()) << reply.error;
  EXPECT_EQ(inside.error, "org.orvvalis.ClassInterface.Error.Busy");
  EXPECT_EQ(dialogs.Count("Overflow"), 1);
  EXPECT_EQ(lists.PointList(1, 0), 5);
}

TEST_F(ClassInterfaceBusTest, AnAbortAnswerEndsTheProgramInOrder) {
  ASSERT_TRUE(object.Register(bus.Address()));
  dialogs.answers = {Answer::Abort};
  const Reply reply = Call("GlrayonXlsT", {QString(65001, '1'), 0});
  EXPECT_EQ(reply.error, "org.orvvalis.ClassInterface.Error.Ended");
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(paints, 0);
}

TEST_F(ClassInterfaceBusTest, ASecondWindowHasANameOfItsOwn) {
  ASSERT_TRUE(object.Register(bus.Address()));
  PointLists otherLists;
  ClassInterface otherView(otherLists, reader, {});
  auto second = std::make_unique<ClassInterfaceBus>(otherView, nullptr, nullptr);
  ASSERT_TRUE(second->Register(bus.Address()));
  const QString name = QString("org.orvvalis.ClassInterface.window_%1_1").arg(QCoreApplication::applicationPid());
  EXPECT_EQ(second->Service(), name);
  ClassInterfaceBus third(otherView, nullptr, nullptr);
  ASSERT_TRUE(third.Register(bus.Address()));
  EXPECT_TRUE(third.Service().endsWith("_2"));

  EXPECT_TRUE(Call("GlrayonXls", {"1\t2\t3", 1.0}, name).Done());
  EXPECT_EQ(otherLists.NumberPoints, 0);
  EXPECT_EQ(lists.NumberPoints, kNoEntry) << "each window has its own plot";
  second.reset();
  EXPECT_FALSE(Call("GlrayonXls", {"1\t2\t3", 1.0}, name).Done()) << "the name went with its window";
  EXPECT_TRUE(Call("GlrayonXls", {"1\t2\t3", 1.0}).Done());
}

TEST_F(ClassInterfaceBusTest, WithoutABusNothingHappens) {
  EXPECT_FALSE(object.Register(""));
  EXPECT_FALSE(object.Register("unix:path=/nowhere/bus"));
  EXPECT_FALSE(object.Register("no address"));
  EXPECT_EQ(object.Service(), "");
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(ClassInterfaceBusTest, FindsTheUsersBus) {
  const QByteArray addressBefore = qgetenv("DBUS_SESSION_BUS_ADDRESS");
  const QByteArray folderBefore = qgetenv("XDG_RUNTIME_DIR");
  const QTemporaryDir folder;
  qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/some/bus");
  EXPECT_EQ(ClassInterfaceBus::SessionBusAddress(), "unix:path=/some/bus");
  qunsetenv("DBUS_SESSION_BUS_ADDRESS");
  qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
  EXPECT_EQ(ClassInterfaceBus::SessionBusAddress(), "") << "none is started";
  QFile socket(folder.filePath("bus"));
  ASSERT_TRUE(socket.open(QIODevice::WriteOnly));
  EXPECT_EQ(ClassInterfaceBus::SessionBusAddress(), "unix:path=" + folder.filePath("bus"));
  const auto restore = [](const char* name, const QByteArray& value) {
    value.isNull() ? qunsetenv(name) : qputenv(name, value);
  };
  restore("DBUS_SESSION_BUS_ADDRESS", addressBefore);
  restore("XDG_RUNTIME_DIR", folderBefore);
}

TEST_F(ClassInterfaceBusTest, ABusThatEndsTakesNothingWithIt) {
  ASSERT_TRUE(object.Register(bus.Address()));
  bus.Stop();
  QTest::qWait(100);
  view.GlrayonXls("1\t2\t3", 1);
  EXPECT_EQ(lists.NumberPoints, 0);
  TestBus next;
  EXPECT_TRUE(object.Register(next.Address()));
  EXPECT_EQ(object.Service(), kInterfaceService);
}

TEST_F(ClassInterfaceBusTest, OtherProgramsReachIt) {
  ASSERT_TRUE(object.Register(bus.Address()));
  int exitCode = 0;
  const QStringList target = {"--session", "--print-reply", "--dest=org.orvvalis.ClassInterface", "/ClassInterface"};
  std::string output =
      Output("dbus-send", target + QStringList{"org.freedesktop.DBus.Introspectable.Introspect"}, exitCode);
  EXPECT_EQ(exitCode, 0) << output;
  EXPECT_NE(output.find("GlEventsXls"), std::string::npos) << output;
  output = Output("dbus-send",
                  target + QStringList{"org.orvvalis.ClassInterface.GlrayonXls", "string:1\t2\t3\n4\t5\t6", "double:1"},
                  exitCode);
  EXPECT_EQ(exitCode, 0) << output;
  EXPECT_EQ(lists.NumberPoints, 1);
  busy = true;
  output = Output("dbus-send", target + QStringList{"org.orvvalis.ClassInterface.GlrayonXlsT", "string:1", "int32:0"},
                  exitCode);
  EXPECT_NE(exitCode, 0);
  EXPECT_NE(output.find("Error.Busy"), std::string::npos) << output;
}

TEST_F(ClassInterfaceBusTest, SixtyThousandPointsArriveAtOnce) {
  ASSERT_TRUE(object.Register(bus.Address()));
  QString text;
  for (int n = 0; n < 64000; ++n) text += QString("%1\t2.5\t-3\r\n").arg(n);
  dialogs.answers = {Answer::Ignore};
  EXPECT_TRUE(Call("GlrayonXls", {text, 1.0}).Done());
  EXPECT_EQ(lists.NumberPoints, 63999);
  EXPECT_EQ(lists.PointList(1, 63999), 63999);
}

}  // namespace
}  // namespace orv
